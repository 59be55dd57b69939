#include "platform/dispatch/EndListeners.h"

#include <utility>

namespace kovalin::platform {

EndListener::~EndListener() = default;

void EndListeners::add(std::weak_ptr<EndListener> listener)
{
    const std::lock_guard lock(_mutex);
    std::erase_if(_listeners, [](const auto& known) { return known.expired(); });
    _listeners.push_back(std::move(listener));
}

void EndListeners::tell()
{
    std::vector<std::weak_ptr<EndListener>> listeners;
    {
        const std::lock_guard lock(_mutex);
        listeners = _listeners;
    }
    for (const auto& weak : listeners) {
        if (const auto listener = weak.lock()) {
            listener->applicationWillEnd();
        }
    }
}

} // namespace kovalin::platform
