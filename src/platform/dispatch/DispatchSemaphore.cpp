#include "platform/dispatch/DispatchSemaphore.h"

#include "platform/dispatch/WaitClock.h"

namespace kovalin::platform {

DispatchSemaphore::DispatchSemaphore(std::size_t count)
    : _point(std::make_shared<WaitPoint>())
    , _count(count)
{
}

DispatchSemaphore::~DispatchSemaphore() = default;

void DispatchSemaphore::signal()
{
    // Held for itself: a waiter that sees the signal may destroy the semaphore before this call has ended.
    const std::shared_ptr<WaitPoint> point = _point;
    const std::lock_guard lock(point->mutex);
    ++_count;
    // All, since a replaced wait clock may leave a waiter at the point whose time has just run out.
    point->changed.notify_all();
}

bool DispatchSemaphore::wait(std::chrono::nanoseconds timeout)
{
    std::unique_lock lock(_point->mutex);
    const auto isOver = [this] {
        return _count > 0;
    };
    const bool isSignalled =
        isOver() || (timeout > std::chrono::nanoseconds::zero() && waitClock()->wait(_point, lock, timeout, isOver));
    if (isSignalled) {
        --_count;
    }
    return isSignalled;
}

} // namespace kovalin::platform
