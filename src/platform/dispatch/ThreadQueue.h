#pragma once

#include "platform/dispatch/SourceLocation.h"

#include <QtCore/QString>

#include <functional>
#include <memory>

namespace kovalin::platform {

class ThreadQueueCore;

/// What a `ThreadQueue` tells, on its own thread. Any of them may be empty; none may throw.
struct ThreadQueueEvents {
    /// The application object is about to go. What waits for something outside should end now, since jobs that wait for
    /// it are waited for; jobs still come and run until they have ended. It overtakes the jobs that are pending. At most
    /// once in the life of each thread.
    std::function<void()> applicationWillEnd;

    /// The thread ends: the last moment for objects that live on it. After all jobs, once in the life of each thread.
    std::function<void()> threadWillEnd;
};

/// Runs jobs one after the other on one thread of its own, with an event loop: for objects that live on a thread, such
/// as sockets. The thread starts with the first job. Work that needs no event loop belongs on a `SerialQueue`.
///
/// Any thread, also from inside a job.
///
/// - Order: first in, first out, over all threads that add jobs. Each job has a turn of the event loop of its own, so a
///   nested event loop inside one job runs the later ones.
/// - A job sees what its poster and the jobs before it wrote.
/// - A job runs exactly once, or is dropped (below). It and its captures are destroyed on the queue right after it ran.
///
/// Lifetime: the queue may be destroyed on any thread, in a job of its own too, with work pending: all that was added
/// still runs, in order, and then the thread ends.
///
/// Shutdown: while the application object dies the queue is told `applicationWillEnd`, keeps running jobs until the jobs
/// of serial queues and the global queue have ended, runs what is pending by then, and its thread ends. From then on
/// `async` drops: the job is destroyed, without having run, on the calling thread before `async` returns to its caller.
/// Under a later application object a new thread starts. Before the first one jobs are kept.
class ThreadQueue final {
public:
    /// `label` names the queue and its thread to people, no more.
    explicit ThreadQueue(QString label, ThreadQueueEvents events = {});
    ~ThreadQueue();
    Q_DISABLE_COPY_MOVE(ThreadQueue)

    [[nodiscard]] const QString& label() const;

    /// Adds `job` and returns at once.
    /// Requires: `job` can be called and doesn't throw; otherwise the program ends in `std::terminate` at its turn.
    void async(std::function<void()> job);

    /// True on the queue's thread.
    [[nodiscard]] bool isCurrent() const;

    /// Where `isCurrent()` is false this is a clean stop, in every build type, with a line on standard error that names
    /// the caller and the label.
    void assertOnQueue(const SourceLocation& where = SourceLocation::current()) const;

private:
    const std::shared_ptr<ThreadQueueCore> _core;
};

} // namespace kovalin::platform
