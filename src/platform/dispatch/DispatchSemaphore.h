#pragma once

#include <chrono>
#include <cstddef>
#include <memory>

namespace kovalin::platform {

struct WaitPoint;

/// Counts signals, for threads that wait for one each. Any thread; jobs that use one hold it by `std::shared_ptr`.
///
/// Who waited sees what the signaller wrote before `signal`. Which of several waiters a signal wakes isn't said. It may
/// be destroyed with signals left over, and as soon as nobody is inside a call of it.
class DispatchSemaphore final {
public:
    /// `count` signals are there from the start.
    explicit DispatchSemaphore(std::size_t count = 0);
    ~DispatchSemaphore();
    DispatchSemaphore(const DispatchSemaphore&) = delete;
    DispatchSemaphore& operator=(const DispatchSemaphore&) = delete;

    /// Adds a signal. Never blocks; a signal that nobody waits for is kept.
    void signal();

    /// Blocks until there is a signal and takes it, or until `timeout` has passed on the installed `WaitClock`; a
    /// time-out of zero or less takes one only if it is there. True if a signal was taken.
    bool wait(std::chrono::nanoseconds timeout);

private:
    const std::shared_ptr<WaitPoint> _point;
    std::size_t _count; // guarded by the mutex of _point
};

} // namespace kovalin::platform
