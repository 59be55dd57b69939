#pragma once

#include <chrono>
#include <memory>

namespace kovalin::platform {
class Clock;
} // namespace kovalin::platform

namespace kovalin::test {

/// A clock that stands still until it is moved. It is the installed clock from its making to its end, which brings back
/// what was installed before; so nested ones end in the reverse order. Any thread may move and read it.
class ManualClock final {
public:
    /// `start` is the time since 1970; the default is some moment of the year 2020.
    explicit ManualClock(std::chrono::milliseconds start = std::chrono::milliseconds(1'600'000'000'000));
    ~ManualClock();

    ManualClock(const ManualClock&) = delete;
    ManualClock& operator=(const ManualClock&) = delete;

    void advance(std::chrono::milliseconds duration);

    /// Sets the time since 1970, forwards or backwards.
    void set(std::chrono::milliseconds sinceEpoch);

private:
    class Hand;

    std::shared_ptr<Hand> _hand;
    std::shared_ptr<const platform::Clock> _previous;
};

} // namespace kovalin::test
