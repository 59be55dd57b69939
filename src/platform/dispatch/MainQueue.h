#pragma once

#include <functional>

namespace kovalin::platform {

/// Any thread. Runs `job` on the main thread, the one that the application object lives on, in a later turn of its
/// event loop: it always posts, also from the main thread and from inside a job, and returns at once.
///
/// - Order: first in, first out, over all threads that post. Each job has a turn of its own, so a nested event loop
/// inside
///   one job runs the later ones.
/// - A job sees what its poster and the jobs before it wrote.
/// - It runs exactly once, or is dropped: when there is no application object at the time of the call, or when that
/// object
///   dies before the job's turn. A later application object's event loop runs only what is posted from then on.
/// - `job` and its captures are destroyed on the main thread right after it ran. Dropped, they are destroyed on the
/// calling
///   thread before the call returns to its caller, or on the main thread while the application object dies.
///
/// Requires: `job` can be called and doesn't throw; otherwise the program ends in `std::terminate` at its turn.
void dispatchMain(std::function<void()> job);

} // namespace kovalin::platform
