#include "kovalin-backend/RequestRecord.h"

#include <utility>

namespace kovalin::backend {

void RequestRecord::add(Request request)
{
    const std::lock_guard lock(_mutex);
    _bodyBytes += request.body.size();
    _requests.push_back(std::move(request));
    while (_requests.size() > kMostKept || _bodyBytes > kMostBodyBytesKept) {
        _bodyBytes -= _requests.front().body.size();
        _requests.pop_front();
    }
    ++_count;
    _changed.notify_all();
}

std::vector<Request> RequestRecord::requests() const
{
    const std::lock_guard lock(_mutex);
    return {_requests.begin(), _requests.end()};
}

void RequestRecord::waitFor(std::size_t count) const
{
    std::unique_lock lock(_mutex);
    _changed.wait(lock, [this, count] { return _count >= count; });
}

} // namespace kovalin::backend
