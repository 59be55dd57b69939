#pragma once

#include <chrono>
#include <functional>

namespace kovalin::host {

// The main thread's event loop, run from inside a script. Main thread.

/// Runs what is due, deletions included, without waiting.
void runDueEvents();

/// Runs the event loop until the condition holds; false where it doesn't in time.
[[nodiscard]] bool runUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);

} // namespace kovalin::host
