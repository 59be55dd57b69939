#pragma once

#include "platform/dispatch/ThreadQueue.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace kovalin::platform {

/// The jobs of a ThreadQueue and the thread that runs them. It outlives its queue for as long as there are jobs. Private
/// to this folder; any thread unless a member says otherwise.
class ThreadQueueCore final : public std::enable_shared_from_this<ThreadQueueCore> {
public:
    ThreadQueueCore(QString label, ThreadQueueEvents events);
    ~ThreadQueueCore();
    Q_DISABLE_COPY_MOVE(ThreadQueueCore)

    [[nodiscard]] const QString& label() const { return _label; }
    [[nodiscard]] bool isCurrent() const { return _current == this; }

    /// See `ThreadQueue::async`.
    void add(std::function<void()> job);

    /// The queue is gone: no job comes any more, and the thread ends with the last one.
    void retire();

    /// The application object is there: starts what came before it.
    void open();

    /// The application object is about to go: has the thread, if there is one, told so.
    void announceEnd();

    /// The application object goes: refuses jobs, waits for those that are there, and for the end of the thread.
    void close();

    /// Whether it is retired and its thread has ended, or never was: then only `close` is left to be called.
    [[nodiscard]] bool isDone() const;

private:
    class Receiver;
    class Thread;

    void _startThread();                    // with _mutex held
    void _askToRun() const;                 // with _mutex held
    void _runThread() noexcept;             // the thread from its start to its end
    [[nodiscard]] bool _runNext() noexcept; // on the thread; false when it has to end
    void _tellOfTheEnd() noexcept;          // on the thread

    static thread_local const ThreadQueueCore* _current;

    const QString _label;
    const ThreadQueueEvents _events;
    mutable std::mutex _mutex; // taken before that of ThreadQueues
    std::condition_variable _ended;
    std::deque<std::function<void()>> _jobs; // guarded by _mutex
    std::unique_ptr<Thread> _thread;         // guarded by _mutex; null while there is none
    Receiver* _receiver = nullptr;           // guarded by _mutex; null unless the thread runs its event loop
    bool _isTold = false;                    // guarded by _mutex; this thread was told of the application's end
    bool _isClosing = false;                 // guarded by _mutex
    bool _isRetired = false;                 // guarded by _mutex
    bool _hasEnded = false;                  // guarded by _mutex; the thread there is has run its last
};

} // namespace kovalin::platform
