#include "platform/dispatch/DelayClock.h"

#include "platform/dispatch/DispatchState.h"

#include <mutex>
#include <utility>

namespace kovalin::platform {

namespace {

class SystemDelayClock final : public DelayClock {
public:
    Id schedule(std::chrono::nanoseconds delay, std::function<void()> due) override
    {
        return DispatchState::shared().timer.schedule(delay, std::move(due));
    }
    void cancel(Id id) override { DispatchState::shared().timer.cancel(id); }
};

struct InstalledDelayClock {
    std::mutex mutex;
    std::shared_ptr<DelayClock> clock; // guarded by mutex; null while it is the system's
    const std::shared_ptr<DelayClock> systemClock = std::make_shared<SystemDelayClock>();
};

InstalledDelayClock& installed()
{
    // Never destroyed: threads may still ask while the process ends.
    static auto& state = *new InstalledDelayClock;
    return state;
}

} // namespace

DelayClock::~DelayClock() = default;

std::shared_ptr<DelayClock> delayClock()
{
    InstalledDelayClock& state = installed();
    const std::lock_guard lock(state.mutex);
    return state.clock ? state.clock : state.systemClock;
}

std::shared_ptr<DelayClock> setDelayClock(std::shared_ptr<DelayClock> clock)
{
    InstalledDelayClock& state = installed();
    const std::lock_guard lock(state.mutex);
    return std::exchange(state.clock, std::move(clock));
}

} // namespace kovalin::platform
