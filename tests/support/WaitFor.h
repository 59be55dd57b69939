#pragma once

#include <functional>

namespace kovalin::test {

/// Runs the main thread's event loop until `condition` holds. Main thread only. False when it still doesn't hold after a
/// minute: the cap is there for a hang alone, no test may rely on its length.
[[nodiscard]] bool waitFor(const std::function<bool()>& condition);

/// Runs what is due on the main thread's event loop, deferred deletions included, without waiting. Main thread only.
void drainMainQueue();

} // namespace kovalin::test
