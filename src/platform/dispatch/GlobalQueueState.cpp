#include "platform/dispatch/GlobalQueueState.h"

#include <QtCore/QThreadPool>

#include <utility>

namespace kovalin::platform {

GlobalQueueState::GlobalQueueState()
{
    setAutoDelete(false);
}

void GlobalQueueState::open()
{
    const std::lock_guard lock(_mutex);
    _phase = QueuePhase::Open;
    for (std::size_t i = 0; i < _jobs.size(); ++i) {
        QThreadPool::globalInstance()->start(this);
    }
}

void GlobalQueueState::close()
{
    std::deque<std::function<void()>> dropped;
    {
        const std::lock_guard lock(_mutex);
        _phase = QueuePhase::Closed;
        dropped.swap(_jobs);
    }
    // Unlocked, since the captures of a dropped job may use any queue as they go.
}

void GlobalQueueState::waitForRunningJobs()
{
    // Not QThreadPool::waitForDone(): the pool is the host's too, and its work isn't ours to wait for.
    std::unique_lock lock(_mutex);
    _idle.wait(lock, [this] { return _running == 0; });
}

void GlobalQueueState::post(std::function<void()> job)
{
    const std::lock_guard lock(_mutex);
    if (_phase == QueuePhase::Closed) {
        return; // The job goes after the lock, so that its captures may come back here.
    }
    _jobs.push_back(std::move(job));
    if (_phase == QueuePhase::Open) {
        QThreadPool::globalInstance()->start(this);
    }
}

void GlobalQueueState::run() noexcept
{
    std::function<void()> job;
    {
        const std::lock_guard lock(_mutex);
        if (_jobs.empty()) {
            return; // Dropped since this start was asked for.
        }
        job = std::move(_jobs.front());
        _jobs.pop_front();
        ++_running;
    }
    job();
    job = nullptr;

    const std::lock_guard lock(_mutex);
    if (--_running == 0) {
        _idle.notify_all();
    }
}

} // namespace kovalin::platform
