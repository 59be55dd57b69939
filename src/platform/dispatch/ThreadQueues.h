#pragma once

#include "platform/dispatch/QueuePhase.h"

#include <QtCore/QtGlobal>

#include <memory>
#include <mutex>
#include <vector>

namespace kovalin::platform {

class ThreadQueueCore;

/// All queues with a thread of their own. Private to this folder; any thread.
class ThreadQueues final {
public:
    ThreadQueues() = default;
    ~ThreadQueues() = default;
    Q_DISABLE_COPY_MOVE(ThreadQueues)

    /// A queue was made. Lets go of those whose queue and thread are gone.
    void add(std::shared_ptr<ThreadQueueCore> core);

    /// The application object is there: starts what came before it.
    void open();

    /// The application object is about to go: has all queues told. Jobs still run and come.
    void announceEnd();

    /// After `announceEnd`, not from a queue's thread: returns once what is pending has run and the threads have ended.
    /// Jobs are refused from now on.
    void close();

    [[nodiscard]] QueuePhase phase() const;

    /// From `announceEnd` until there is an application object again.
    [[nodiscard]] bool isEnding() const;

private:
    [[nodiscard]] std::vector<std::shared_ptr<ThreadQueueCore>> _takeDone(); // with _mutex not held

    mutable std::mutex _mutex;
    QueuePhase _phase = QueuePhase::Early;                // guarded by _mutex
    bool _isEnding = false;                               // guarded by _mutex
    std::vector<std::shared_ptr<ThreadQueueCore>> _cores; // guarded by _mutex
};

} // namespace kovalin::platform
