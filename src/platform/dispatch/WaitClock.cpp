#include "platform/dispatch/WaitClock.h"

#include <algorithm>
#include <utility>

namespace kovalin::platform {

namespace {

// A deadline further off would overflow the steady clock.
constexpr std::chrono::nanoseconds kLongestWait = std::chrono::days(365);

class SystemWaitClock final : public WaitClock {
public:
    bool wait(const std::shared_ptr<WaitPoint>& point, std::unique_lock<std::mutex>& lock,
              std::chrono::nanoseconds timeout, const std::function<bool()>& isOver) override
    {
        return point->changed.wait_for(lock, std::min(timeout, kLongestWait), isOver);
    }
};

struct InstalledWaitClock {
    std::mutex mutex;
    std::shared_ptr<WaitClock> clock; // guarded by mutex; null while it is the system's
    const std::shared_ptr<WaitClock> systemClock = std::make_shared<SystemWaitClock>();
};

InstalledWaitClock& installed()
{
    // Never destroyed: threads may still wait while the process ends.
    static auto& state = *new InstalledWaitClock;
    return state;
}

} // namespace

WaitClock::~WaitClock() = default;

std::shared_ptr<WaitClock> waitClock()
{
    InstalledWaitClock& state = installed();
    const std::lock_guard lock(state.mutex);
    return state.clock ? state.clock : state.systemClock;
}

std::shared_ptr<WaitClock> setWaitClock(std::shared_ptr<WaitClock> clock)
{
    InstalledWaitClock& state = installed();
    const std::lock_guard lock(state.mutex);
    return std::exchange(state.clock, std::move(clock));
}

} // namespace kovalin::platform
