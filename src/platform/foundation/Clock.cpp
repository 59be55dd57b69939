#include "platform/foundation/Clock.h"

#include "platform/foundation/SharedSlot.h"

#include <utility>

namespace kovalin::platform {

namespace {

class SystemClock final : public Clock {
public:
    [[nodiscard]] std::chrono::microseconds timeSinceEpoch() const override
    {
        return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now().time_since_epoch());
    }
};

struct InstalledClock {
    SharedSlot<const Clock> clock; // null while it is the system's
    const std::shared_ptr<const Clock> systemClock = std::make_shared<SystemClock>();
};

InstalledClock& installed()
{
    // Never destroyed: threads may still ask for the time while the process ends.
    static auto& state = *new InstalledClock;
    return state;
}

std::shared_ptr<const Clock> installedClock()
{
    const InstalledClock& state = installed();
    auto clock = state.clock.load();
    return clock ? clock : state.systemClock;
}

} // namespace

Clock::~Clock() = default;

qint64 Clock::currentTimeMillis() const
{
    return std::chrono::floor<std::chrono::milliseconds>(timeSinceEpoch()).count();
}

double Clock::currentTimeSeconds() const
{
    return std::chrono::duration<double>(timeSinceEpoch()).count();
}

qint64 currentTimeMillis()
{
    return installedClock()->currentTimeMillis();
}

double currentTimeSeconds()
{
    return installedClock()->currentTimeSeconds();
}

std::shared_ptr<const Clock> setClock(std::shared_ptr<const Clock> clock)
{
    return installed().clock.exchange(std::move(clock));
}

} // namespace kovalin::platform
