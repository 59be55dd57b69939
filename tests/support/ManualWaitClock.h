#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <vector>

namespace kovalin::platform {
class WaitClock;
} // namespace kovalin::platform

namespace kovalin::test {

/// A clock for the timed waits of groups and semaphores that stands still until it is moved: a wait of ten seconds ends
/// when its condition holds or when the test says that ten seconds have passed. It is the installed one from its making
/// to its end, by which no wait may be under way. Any thread.
class ManualWaitClock final {
public:
    ManualWaitClock();
    ~ManualWaitClock();

    ManualWaitClock(const ManualWaitClock&) = delete;
    ManualWaitClock& operator=(const ManualWaitClock&) = delete;

    /// Blocks until `count` waits or more are under way.
    void waitForWaits(std::size_t count);

    /// The time-outs of all waits that had to block, over and done ones too, in the order in which they began.
    [[nodiscard]] std::vector<std::chrono::nanoseconds> timeouts() const;

    /// Lets time pass: the waits under way whose time is up end.
    void advance(std::chrono::nanoseconds duration);

private:
    class Hand;

    std::shared_ptr<Hand> _hand;
    std::shared_ptr<platform::WaitClock> _previous;
};

} // namespace kovalin::test
