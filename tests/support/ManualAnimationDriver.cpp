#include "support/ManualAnimationDriver.h"

#include "support/WaitFor.h"

namespace kovalin::test {

ManualAnimationDriver::ManualAnimationDriver()
{
    // Qt adds what it counted itself before.
    connect(this, &QAnimationDriver::started, this, [this] { _elapsed = {}; });
    install();
}

ManualAnimationDriver::~ManualAnimationDriver()
{
    uninstall();
}

void ManualAnimationDriver::step(std::chrono::milliseconds time)
{
    // An animation registers in one turn of the event loop, and the driver starts in another.
    drainMainQueue();
    drainMainQueue();
    _elapsed += time;
    if (isRunning()) {
        advanceAnimation();
    }
}

qint64 ManualAnimationDriver::elapsed() const
{
    return _elapsed.count();
}

} // namespace kovalin::test
