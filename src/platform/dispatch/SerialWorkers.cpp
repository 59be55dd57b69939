#include "platform/dispatch/SerialWorkers.h"

#include <QtCore/QRunnable>

#include <utility>

namespace kovalin::platform {

// A job may block for seconds (a search waits for two, a model update for ten), and its queue then holds a thread
// without using a processor. So the limit isn't the number of processors but far more than there are queues: no blocked
// queue can keep another from running. Threads are made when needed and end when idle. For the same reason this isn't
// Qt's global pool, in which such queues would take the threads of the host's own work.
constexpr int kMaxSerialWorkers = 64;

void SerialWorkers::open()
{
    auto pool = std::make_unique<QThreadPool>();
    pool->setMaxThreadCount(kMaxSerialWorkers);

    const std::lock_guard lock(_mutex);
    _phase = QueuePhase::Open;
    _pool = std::move(pool);
    for (QRunnable* const queue : std::exchange(_early, {})) {
        _pool->start(queue);
    }
}

void SerialWorkers::close()
{
    const std::lock_guard lock(_mutex);
    _phase = QueuePhase::Closed;
}

void SerialWorkers::waitForRunningJobs()
{
    std::unique_ptr<QThreadPool> pool;
    {
        // The pool waits for its threads too, but a thread sanitizer that Qt wasn't built with sees only this wait, and
        // would report what the jobs wrote and the main thread reads next.
        std::unique_lock lock(_mutex);
        _idle.wait(lock, [this] { return _active == 0; });
        pool = std::move(_pool);
    }
    // The pool's destructor joins its threads.
}

bool SerialWorkers::wake(QRunnable& queue)
{
    const std::lock_guard lock(_mutex);
    if (_phase == QueuePhase::Closed) {
        return false;
    }
    ++_active;
    if (_phase == QueuePhase::Open) {
        _pool->start(&queue);
    } else {
        _early.push_back(&queue);
    }
    return true;
}

void SerialWorkers::wakeForTheEnd(QRunnable& queue)
{
    const std::lock_guard lock(_mutex);
    ++_active;
    _pool->start(&queue);
}

void SerialWorkers::finished()
{
    const std::lock_guard lock(_mutex);
    if (--_active == 0) {
        _idle.notify_all();
    }
}

bool SerialWorkers::areOpen() const
{
    const std::lock_guard lock(_mutex);
    return _phase == QueuePhase::Open;
}

} // namespace kovalin::platform
