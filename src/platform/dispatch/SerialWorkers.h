#pragma once

#include "platform/dispatch/QueuePhase.h"

#include <QtCore/QThreadPool>

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

QT_BEGIN_NAMESPACE
class QRunnable;
QT_END_NAMESPACE

namespace kovalin::platform {

/// The threads that all serial queues share. They carry no jobs, only the news that a queue has some. Private to this
/// folder; any thread.
class SerialWorkers final {
public:
    SerialWorkers() = default;
    ~SerialWorkers() = default;
    Q_DISABLE_COPY_MOVE(SerialWorkers)

    /// The application object is there: runs the queues that were woken before it.
    void open();

    /// The application object is about to go: `wake` refuses and `areOpen` is false from now on.
    void close();

    /// After `close`, not from a worker: returns once every woken queue has said `finished` and the threads have ended.
    void waitForRunningJobs();

    /// Has a worker run `queue` once; before the first application object, as soon as there is one. `queue` must stay
    /// alive until it runs, and must call `finished` as its last act. False, and nothing happens, when closed.
    [[nodiscard]] bool wake(QRunnable& queue);

    /// After `close` and before `waitForRunningJobs`: has a worker run `queue` once all the same, for its last job.
    void wakeForTheEnd(QRunnable& queue);

    /// A woken queue has run.
    void finished();

    /// Whether a job may still start.
    [[nodiscard]] bool areOpen() const;

private:
    mutable std::mutex _mutex;
    std::condition_variable _idle;
    QueuePhase _phase = QueuePhase::Early; // guarded by _mutex
    std::vector<QRunnable*> _early;        // guarded by _mutex; woken before the first application object
    std::size_t _active = 0;               // guarded by _mutex; woken and not finished
    std::unique_ptr<QThreadPool> _pool;    // guarded by _mutex; null unless open
};

} // namespace kovalin::platform
