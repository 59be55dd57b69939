#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace kovalin::platform {

/// What the waits of one group or semaphore meet at. Shared, so that who notifies late never meets a dead mutex.
struct WaitPoint {
    std::mutex mutex;
    std::condition_variable changed;
};

/// Decides when a timed wait of a `DispatchGroup` or `DispatchSemaphore` has lasted long enough. Used from any thread,
/// so an implementation has to be thread-safe. A test installs its own and lets ten seconds pass at once.
class WaitClock {
public:
    virtual ~WaitClock();

    /// Blocks until `isOver` or until `timeout` has passed, and gives what `isOver` says at its end.
    ///
    /// `lock` holds the mutex of `point`, on entry, on return and whenever `isOver` is called; while it blocks it is let
    /// go of. `point.changed` is notified, under the mutex, whenever what `isOver` looks at has changed.
    virtual bool wait(const std::shared_ptr<WaitPoint>& point, std::unique_lock<std::mutex>& lock,
                      std::chrono::nanoseconds timeout, const std::function<bool()>& isOver) = 0;
};

/// The installed clock; at the start the system's, which no change of the time of day moves. Never null. Any thread.
[[nodiscard]] std::shared_ptr<WaitClock> waitClock();

/// Installs `clock` for the whole process; null brings back the system's. Gives what was installed before, null for the
/// system's. Any thread; a wait under way ends by the clock that it began with.
std::shared_ptr<WaitClock> setWaitClock(std::shared_ptr<WaitClock> clock);

} // namespace kovalin::platform
