#include "support/ManualWaitClock.h"

#include "platform/dispatch/WaitClock.h"

#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>
#include <utility>

namespace kovalin::test {

// Apart from the ManualWaitClock, since a waiter in another thread holds it. A point's mutex is taken before its own.
class ManualWaitClock::Hand final : public platform::WaitClock {
public:
    bool wait(const std::shared_ptr<platform::WaitPoint>& point, std::unique_lock<std::mutex>& lock,
              std::chrono::nanoseconds timeout, const std::function<bool()>& isOver) override
    {
        const auto [place, deadline] = _begin(point, timeout);
        point->changed.wait(lock, [this, &isOver, end = deadline] { return isOver() || _now() >= end; });
        const std::lock_guard ownLock(_mutex);
        _waiting.erase(place);
        return isOver();
    }

    void waitForWaits(std::size_t count)
    {
        std::unique_lock lock(_mutex);
        _began.wait(lock, [this, count] { return _waiting.size() >= count; });
    }

    [[nodiscard]] std::vector<std::chrono::nanoseconds> timeouts() const
    {
        const std::lock_guard lock(_mutex);
        return _timeouts;
    }

    void advance(std::chrono::nanoseconds duration)
    {
        std::list<std::shared_ptr<platform::WaitPoint>> points;
        {
            const std::lock_guard lock(_mutex);
            _time += duration;
            points = _waiting;
        }
        for (const auto& point : points) {
            const std::lock_guard lock(point->mutex);
            point->changed.notify_all();
        }
    }

private:
    using Points = std::list<std::shared_ptr<platform::WaitPoint>>;

    std::pair<Points::iterator, std::chrono::nanoseconds> _begin(const std::shared_ptr<platform::WaitPoint>& point,
                                                                 std::chrono::nanoseconds timeout)
    {
        const std::lock_guard lock(_mutex);
        _timeouts.push_back(timeout);
        _began.notify_all();
        return {_waiting.insert(_waiting.end(), point), _time + timeout};
    }

    std::chrono::nanoseconds _now() const
    {
        const std::lock_guard lock(_mutex);
        return _time;
    }

    mutable std::mutex _mutex;
    std::condition_variable _began;
    std::chrono::nanoseconds _time{0};               // guarded by _mutex
    Points _waiting;                                 // guarded by _mutex
    std::vector<std::chrono::nanoseconds> _timeouts; // guarded by _mutex
};

ManualWaitClock::ManualWaitClock()
    : _hand(std::make_shared<Hand>())
    , _previous(platform::setWaitClock(_hand))
{
}

ManualWaitClock::~ManualWaitClock()
{
    platform::setWaitClock(_previous);
}

void ManualWaitClock::waitForWaits(std::size_t count)
{
    _hand->waitForWaits(count);
}

std::vector<std::chrono::nanoseconds> ManualWaitClock::timeouts() const
{
    return _hand->timeouts();
}

void ManualWaitClock::advance(std::chrono::nanoseconds duration)
{
    _hand->advance(duration);
}

} // namespace kovalin::test
