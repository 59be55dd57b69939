#pragma once

#include "platform/dispatch/QueuePhase.h"

#include <QtCore/QRunnable>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>

namespace kovalin::platform {

/// The jobs of the global queue. It is itself what Qt's global pool runs: each start of it carries out the next job.
/// Private to this folder; any thread.
class GlobalQueueState final : private QRunnable {
public:
    GlobalQueueState();

    /// The application object is there: starts what came before it.
    void open();

    /// The application object is about to go: drops what is pending and all that comes from now on.
    void close();

    /// After `close`, not from a job of this queue: returns once no job runs any more.
    void waitForRunningJobs();

    /// See `dispatchGlobal`.
    void post(std::function<void()> job);

private:
    void run() noexcept override;

    std::mutex _mutex;
    std::condition_variable _idle;
    QueuePhase _phase = QueuePhase::Early;   // guarded by _mutex
    std::deque<std::function<void()>> _jobs; // guarded by _mutex
    std::size_t _running = 0;                // guarded by _mutex
};

} // namespace kovalin::platform
