#include "support/ManualAnimationDriver.h"

#include "support/WaitFor.h"

#include <QtGui/QGuiApplication>

#include <gtest/gtest.h>

namespace kovalin::test {

namespace {

void skipTest()
{
    GTEST_SKIP() << "the renderer of windows on a display brings its own clock";
}

} // namespace

ManualAnimationDriver::ManualAnimationDriver()
    : _isPossible(QGuiApplication::platformName() == QStringLiteral("offscreen"))
{
    if (!_isPossible) {
        skipTest();
        return;
    }
    // Qt adds what it counted itself before.
    connect(this, &QAnimationDriver::started, this, [this] { _elapsed = {}; });
    install();
}

ManualAnimationDriver::~ManualAnimationDriver()
{
    if (_isPossible) {
        uninstall();
    }
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
