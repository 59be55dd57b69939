#pragma once

#include "platform/dispatch/DelayedJob.h"
#include "platform/dispatch/SourceLocation.h"

#include <QtCore/QString>

#include <chrono>
#include <functional>
#include <memory>

namespace kovalin::platform {

/// What a `SerialQueue` tells, in a job of its own. It may be empty; it must not throw.
struct SerialQueueEvents {
    /// The application object is about to go, and this is the queue's last job under it: what was pending has been dropped,
    /// and what is added from now on is dropped too. The end of the application waits for it, so it has to be short. Not
    /// told of a queue that was destroyed before.
    std::function<void()> applicationWillEnd;
};

/// Runs jobs one after the other on a background thread: what only jobs of one queue touch needs no lock.
///
/// Any thread, also from inside a job. Which thread a job runs on may change from job to job; the queues share their
/// threads, and a job that blocks keeps no other queue from running.
///
/// - Order: first in, first out, over all threads that add jobs. One job at a time.
/// - Each job sees what its poster wrote before `async`, and what the jobs before it wrote.
/// - A job runs exactly once, or is dropped (below).
/// - A job and its captures are destroyed on the queue right after it ran, before the next one starts.
///
/// Lifetime: the queue may be destroyed on any thread, in a job of its own too, with work pending: all that was added
/// still runs, in order.
///
/// Shutdown: while the application object dies, running jobs are waited for and pending ones dropped, and a queue with an
/// `applicationWillEnd` runs that last. From then on
/// `async` drops, until there is an application object again. Dropped jobs are destroyed without having run: on the
/// queue, after the running job, or on the calling thread before `async` returns to its caller. Before the first
/// application object jobs are kept, and start once there is one.
class SerialQueue final {
public:
    /// `label` names the queue to people, no more; two queues may share one.
    explicit SerialQueue(QString label, SerialQueueEvents events = {});
    ~SerialQueue();
    Q_DISABLE_COPY_MOVE(SerialQueue)

    [[nodiscard]] const QString& label() const;

    /// Adds `job` and returns at once.
    /// Requires: `job` can be called and doesn't throw; otherwise the program ends in `std::terminate` at its turn.
    void async(std::function<void()> job);

    /// Adds `job` once `delay`, which is clamped to 0 … 365 days, has passed on the installed `DelayClock`; returns at once.
    ///
    /// - Order: jobs are added in the order of their due times; those due at one time in the order of the calls.
    /// - `job` runs exactly once, or never: after it was cancelled through what this returns or that was destroyed; where
    ///   the queue is gone when it is due, since a delay holds it weakly; and when the application object dies first.
    ///   Without one, before the first, the delay runs all the same, and the job is kept like others.
    /// - `job` and its captures are destroyed on the queue right after it ran; cancelled, on the thread that cancels it;
    ///   dropped, on any thread.
    /// Requires: as `async`.
    [[nodiscard]] DelayedJob asyncAfter(std::chrono::nanoseconds delay, std::function<void()> job);

    /// True inside a job of this queue, and while the captures of one are destroyed on it.
    [[nodiscard]] bool isCurrent() const;

    /// Where `isCurrent()` is false this is a clean stop, in every build type, with a line on standard error that names
    /// the caller and the label.
    void assertOnQueue(const SourceLocation& where = SourceLocation::current()) const;

private:
    class Core;

    const std::shared_ptr<Core> _core;
};

} // namespace kovalin::platform
