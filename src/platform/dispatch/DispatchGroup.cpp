#include "platform/dispatch/DispatchGroup.h"

#include "platform/dispatch/CleanStop.h"
#include "platform/dispatch/WaitClock.h"

namespace kovalin::platform {

DispatchGroup::DispatchGroup()
    : _point(std::make_shared<WaitPoint>())
{
}

DispatchGroup::~DispatchGroup() = default;

void DispatchGroup::enter()
{
    const std::lock_guard lock(_point->mutex);
    ++_entered;
}

void DispatchGroup::leave(const SourceLocation& where)
{
    // Held for itself: a waiter that sees the count fall may destroy the group before this call has ended.
    const std::shared_ptr<WaitPoint> point = _point;
    const std::lock_guard lock(point->mutex);
    if (_entered == 0) {
        cleanStop("A group was left more often than entered", where);
    }
    if (--_entered == 0) {
        point->changed.notify_all();
    }
}

bool DispatchGroup::wait(std::chrono::nanoseconds timeout)
{
    std::unique_lock lock(_point->mutex);
    const auto isOver = [this] {
        return _entered == 0;
    };
    if (isOver() || timeout <= std::chrono::nanoseconds::zero()) {
        return isOver();
    }
    return waitClock()->wait(_point, lock, timeout, isOver);
}

} // namespace kovalin::platform
