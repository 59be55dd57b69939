#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <vector>

namespace kovalin::platform {
class DelayClock;
} // namespace kovalin::platform

namespace kovalin::test {

/// A clock for the delays of queues that stands still until it is moved: what is to run in an hour is added to its queue
/// when the test says that an hour has passed. It is the installed one from its making to its end, which drops what is
/// pending and brings back what was installed before. Any thread.
class ManualDelayClock final {
public:
    ManualDelayClock();
    ~ManualDelayClock();

    ManualDelayClock(const ManualDelayClock&) = delete;
    ManualDelayClock& operator=(const ManualDelayClock&) = delete;

    /// How long the pending delays have still to go, the shortest first.
    [[nodiscard]] std::vector<std::chrono::nanoseconds> pending() const;

    /// Blocks until `count` delays are pending, no more and no less.
    void waitForPending(std::size_t count) const;

    /// Lets time pass: what is due is added to its queue, on the calling thread and in order.
    void advance(std::chrono::nanoseconds duration);

private:
    class Hand;

    std::shared_ptr<Hand> _hand;
    std::shared_ptr<platform::DelayClock> _previous;
};

} // namespace kovalin::test
