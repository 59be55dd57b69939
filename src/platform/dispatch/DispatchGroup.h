#pragma once

#include "platform/dispatch/SourceLocation.h"

#include <chrono>
#include <cstddef>
#include <memory>

namespace kovalin::platform {

struct WaitPoint;

/// Counts work under way, for a thread that waits until all of it is done. Any thread; jobs that use one hold it by
/// `std::shared_ptr`.
///
/// Who waits sees what every leaver wrote before `leave`. Any number of threads may wait, and the group may be entered
/// again afterwards. It may be destroyed entered, and as soon as nobody is inside a call of it.
class DispatchGroup final {
public:
    DispatchGroup();
    ~DispatchGroup();
    DispatchGroup(const DispatchGroup&) = delete;
    DispatchGroup& operator=(const DispatchGroup&) = delete;

    void enter();

    /// Undoes one `enter`; the last one ends the waits. Without an `enter` this is a clean stop that names the caller.
    void leave(const SourceLocation& where = SourceLocation::current());

    /// Blocks until everybody has left, at once if nobody has entered, or until `timeout` has passed on the installed
    /// `WaitClock`; a time-out of zero or less only looks. True if everybody has left in time.
    bool wait(std::chrono::nanoseconds timeout);

private:
    const std::shared_ptr<WaitPoint> _point;
    std::size_t _entered = 0; // guarded by the mutex of _point
};

} // namespace kovalin::platform
