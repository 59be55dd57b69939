#pragma once

#include <QtCore/QPointer>

#include <chrono>
#include <functional>

QT_BEGIN_NAMESPACE
class QTimer;
QT_END_NAMESPACE

namespace kovalin::platform {

/// A block that runs on the main thread after a delay, unless it is cancelled before.
///
/// Main thread only: a call on another one is a clean stop while the task is pending, and so is making one there.
///
/// - The block runs exactly once, from the event loop and never in the constructor, or never: after `cancel`, after the
///   task's destruction, and when the application object dies first. Without an application object it never runs.
/// - Blocks run in the order of their due times.
/// - The block may cancel, replace or destroy its own task. It and its captures are destroyed on the main thread: right
///   after it ran; in `cancel`; while the application object dies; or, without one, in the constructor's call.
class DelayedTask final {
public:
    /// Starts the delay, which is clamped to 0 ms … 24 days.
    /// Requires: `block` can be called and doesn't throw; otherwise the program ends in `std::terminate` at its time.
    DelayedTask(std::chrono::milliseconds delay, std::function<void()> block);

    /// Cancels.
    ~DelayedTask();
    Q_DISABLE_COPY_MOVE(DelayedTask)

    /// Makes sure that the block doesn't start any more. Does nothing when it has started or was cancelled already.
    void cancel();

    /// True until the block starts or can't start any more; false inside the block.
    [[nodiscard]] bool isPending() const;

private:
    QPointer<QTimer> _timer;
};

} // namespace kovalin::platform
