#pragma once

#include <QtCore/QtGlobal>

#include <chrono>
#include <memory>

namespace kovalin::platform {

/// A source of the time of day. Used from any thread, so an implementation has to be thread-safe.
class Clock {
public:
    virtual ~Clock();

    /// The time since 1970 (UTC, no leap seconds); may jump when the user sets the clock. Milliseconds and seconds are
    /// both derived from it.
    [[nodiscard]] virtual std::chrono::microseconds timeSinceEpoch() const = 0;

    /// Whole milliseconds since 1970, rounded down.
    [[nodiscard]] qint64 currentTimeMillis() const;

    /// Seconds since 1970, with their fraction.
    [[nodiscard]] double currentTimeSeconds() const;
};

/// Whole milliseconds since 1970 by the installed clock. Any thread.
[[nodiscard]] qint64 currentTimeMillis();

/// Seconds since 1970 by the installed clock, with their fraction. Any thread.
[[nodiscard]] double currentTimeSeconds();

/// Installs `clock` for the whole process; null brings back the system's clock, which is installed at the start. Gives
/// what was installed before, null for the system's clock. Any thread; a reading under way in another thread ends on
/// the clock that it began with.
std::shared_ptr<const Clock> setClock(std::shared_ptr<const Clock> clock);

} // namespace kovalin::platform
