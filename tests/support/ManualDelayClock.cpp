#include "support/ManualDelayClock.h"

#include "platform/dispatch/DelayClock.h"

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

namespace kovalin::test {

// Apart from the ManualDelayClock, since the holder of a delayed job holds it.
class ManualDelayClock::Hand final : public platform::DelayClock {
public:
    Id schedule(std::chrono::nanoseconds delay, std::function<void()> due) override
    {
        const std::lock_guard lock(_mutex);
        const Id id = ++_lastId;
        _pending.emplace(std::pair(_time + delay, id), std::move(due));
        _changed.notify_all();
        return id;
    }

    void cancel(Id id) override
    {
        std::function<void()> cancelled; // goes after the lock
        const std::lock_guard lock(_mutex);
        const auto found = std::ranges::find(_pending, id, [](const auto& entry) { return entry.first.second; });
        if (found != _pending.end()) {
            cancelled = std::move(found->second);
            _pending.erase(found);
            _changed.notify_all();
        }
    }

    [[nodiscard]] std::vector<std::chrono::nanoseconds> pending() const
    {
        const std::lock_guard lock(_mutex);
        std::vector<std::chrono::nanoseconds> delays;
        for (const auto& [key, due] : _pending) {
            delays.push_back(key.first - _time);
        }
        return delays;
    }

    void waitForPending(std::size_t count) const
    {
        std::unique_lock lock(_mutex);
        _changed.wait(lock, [this, count] { return _pending.size() == count; });
    }

    void advance(std::chrono::nanoseconds duration)
    {
        std::unique_lock lock(_mutex);
        _time += duration;
        while (!_pending.empty() && _pending.begin()->first.first <= _time) {
            std::function<void()> due = std::move(_pending.begin()->second);
            _pending.erase(_pending.begin());
            _changed.notify_all();
            lock.unlock();
            due();
            due = nullptr;
            lock.lock();
        }
    }

    void dropAll()
    {
        decltype(_pending) dropped; // goes after the lock
        const std::lock_guard lock(_mutex);
        dropped.swap(_pending);
    }

private:
    mutable std::mutex _mutex;
    mutable std::condition_variable _changed;
    std::chrono::nanoseconds _time{0};                                                 // guarded by _mutex
    std::map<std::pair<std::chrono::nanoseconds, Id>, std::function<void()>> _pending; // guarded by _mutex
    Id _lastId = 0;                                                                    // guarded by _mutex
};

ManualDelayClock::ManualDelayClock()
    : _hand(std::make_shared<Hand>())
    , _previous(platform::setDelayClock(_hand))
{
}

ManualDelayClock::~ManualDelayClock()
{
    platform::setDelayClock(_previous);
    _hand->dropAll();
}

std::vector<std::chrono::nanoseconds> ManualDelayClock::pending() const
{
    return _hand->pending();
}

void ManualDelayClock::waitForPending(std::size_t count) const
{
    _hand->waitForPending(count);
}

void ManualDelayClock::advance(std::chrono::nanoseconds duration)
{
    _hand->advance(duration);
}

} // namespace kovalin::test
