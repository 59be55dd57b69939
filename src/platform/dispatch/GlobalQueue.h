#pragma once

#include <functional>

namespace kovalin::platform {

/// Any thread. Runs `job` on a thread of `QThreadPool::globalInstance()`, the queue of default priority for work that
/// needs no order, and returns at once.
///
/// - Order: jobs start first in, first out; as many as the pool has threads for run side by side.
/// - A job sees what its poster wrote before the call. Nothing holds between two jobs.
/// - It runs exactly once, or is dropped: when the last application object is gone and no new one is there, or when the
///   application object dies before the job starts. That death waits for the jobs that run. Before the first
///   application object jobs are kept, and start once there is one.
/// - `job` and its captures are destroyed on the thread where it ran, right after it. Dropped, they are destroyed on
/// the
///   calling thread before the call returns to its caller, or on the main thread while the application object dies.
///
/// Requires: `job` can be called and doesn't throw; otherwise the program ends in `std::terminate` at its turn.
void dispatchGlobal(std::function<void()> job);

} // namespace kovalin::platform
