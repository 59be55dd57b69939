#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace kovalin::platform {

/// Decides when the delay of a `DelayedJob` has passed. Used from any thread, so an implementation has to be thread-safe.
/// A test installs its own and lets a quarter of an hour pass at once.
class DelayClock {
public:
    using Id = std::uint64_t;

    virtual ~DelayClock();

    /// Calls `due` once, when `delay` has passed, never inside this call: in the order of the due times, and where these
    /// are equal in the order of the calls. `due` doesn't throw and returns soon.
    virtual Id schedule(std::chrono::nanoseconds delay, std::function<void()> due) = 0;

    /// Makes sure that what has this id isn't called any more, and destroys it on the calling thread; does nothing when it
    /// was called already.
    virtual void cancel(Id id) = 0;
};

/// The installed clock; at the start the system's, which no change of the time of day moves: one thread for all delays,
/// which sleeps while there are none and ends with the application object. Never null. Any thread.
[[nodiscard]] std::shared_ptr<DelayClock> delayClock();

/// Installs `clock` for the whole process; null brings back the system's. Gives what was installed before, null for the
/// system's. Any thread; a delay under way ends by the clock that it began with.
std::shared_ptr<DelayClock> setDelayClock(std::shared_ptr<DelayClock> clock);

} // namespace kovalin::platform
