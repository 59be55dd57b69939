#include "platform/dispatch/ThreadQueueCore.h"

#include "platform/dispatch/DispatchState.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QEventLoop>
#include <QtCore/QThread>

#include <utility>

namespace kovalin::platform {

// The thread's end of the queue. As on the main queue, each event says no more than "run the next", and the job travels
// in a deque of ours: a thread sanitizer that Qt wasn't built with sees our mutex.
class ThreadQueueCore::Receiver final : public QObject {
public:
    Receiver(ThreadQueueCore& core, QEventLoop& loop)
        : _core(core)
        , _loop(loop)
    {
    }

    static QEvent::Type eventType()
    {
        static const int type = QEvent::registerEventType();
        return static_cast<QEvent::Type>(type);
    }

    bool event(QEvent* event) override
    {
        if (event->type() != eventType()) {
            return QObject::event(event);
        }
        if (!_core._runNext()) {
            _loop.quit();
        }
        return true;
    }

private:
    ThreadQueueCore& _core;
    QEventLoop& _loop;
};

class ThreadQueueCore::Thread final : public QThread {
public:
    explicit Thread(ThreadQueueCore& core)
        : _core(core)
    {
    }

private:
    void run() override { _core._runThread(); }

    ThreadQueueCore& _core;
};

thread_local const ThreadQueueCore* ThreadQueueCore::_current = nullptr;

ThreadQueueCore::ThreadQueueCore(QString label, ThreadQueueEvents events)
    : _label(std::move(label))
    , _events(std::move(events))
{
}

ThreadQueueCore::~ThreadQueueCore() = default;

void ThreadQueueCore::add(std::function<void()> job)
{
    const std::lock_guard lock(_mutex);
    const QueuePhase phase = DispatchState::shared().threads.phase();
    if (_isClosing || phase == QueuePhase::Closed) {
        return; // The job goes after the lock, so that its captures may come back here.
    }
    _jobs.push_back(std::move(job));
    if (_thread != nullptr) {
        _askToRun();
    } else if (phase == QueuePhase::Open) {
        _startThread();
    }
}

void ThreadQueueCore::retire()
{
    const std::lock_guard lock(_mutex);
    _isRetired = true;
    _askToRun();
}

void ThreadQueueCore::open()
{
    const std::lock_guard lock(_mutex);
    _isClosing = false;
    if (!_jobs.empty() && _thread == nullptr) {
        _startThread();
    }
}

void ThreadQueueCore::announceEnd()
{
    const std::lock_guard lock(_mutex);
    if (_thread != nullptr && !_hasEnded) {
        _jobs.push_front([this] { _tellOfTheEnd(); });
        _askToRun();
    }
}

void ThreadQueueCore::close()
{
    std::unique_ptr<Thread> thread;
    {
        std::unique_lock lock(_mutex);
        _isClosing = true;
        if (_thread == nullptr) {
            return;
        }
        _askToRun();
        // QThread::wait() waits too, but a thread sanitizer that Qt wasn't built with sees only this wait.
        _ended.wait(lock, [this] { return _hasEnded; });
        thread = std::move(_thread);
        _hasEnded = false;
        _isTold = false;
    }
    thread->wait();
}

bool ThreadQueueCore::isDone() const
{
    const std::lock_guard lock(_mutex);
    return _isRetired && _jobs.empty() && (_thread == nullptr || _hasEnded);
}

void ThreadQueueCore::_startThread()
{
    _thread = std::make_unique<Thread>(*this);
    _thread->setObjectName(_label);
    _thread->start();
}

void ThreadQueueCore::_askToRun() const
{
    // Before its event loop runs, the thread asks itself.
    if (_receiver != nullptr) {
        QCoreApplication::postEvent(_receiver, new QEvent(Receiver::eventType()));
    }
}

void ThreadQueueCore::_runThread() noexcept
{
    _current = this;
    if (DispatchState::shared().threads.isEnding()) {
        _tellOfTheEnd();
    }
    {
        QEventLoop loop;
        Receiver receiver(*this, loop);
        {
            const std::lock_guard lock(_mutex);
            _receiver = &receiver;
            // One for each job, and one for an end that came before the loop.
            for (std::size_t i = 0; i <= _jobs.size(); ++i) {
                _askToRun();
            }
        }
        loop.exec();
        const std::lock_guard lock(_mutex);
        _receiver = nullptr;
    }
    if (_events.threadWillEnd) {
        _events.threadWillEnd();
    }
    _current = nullptr;
    const std::lock_guard lock(_mutex);
    _hasEnded = true;
    _ended.notify_all();
}

bool ThreadQueueCore::_runNext() noexcept
{
    std::function<void()> job;
    {
        const std::lock_guard lock(_mutex);
        if (!_jobs.empty()) {
            job = std::move(_jobs.front());
            _jobs.pop_front();
        }
    }
    if (job) {
        job();
        job = nullptr;
    }
    const std::lock_guard lock(_mutex);
    return !_jobs.empty() || !(_isRetired || _isClosing);
}

void ThreadQueueCore::_tellOfTheEnd() noexcept
{
    {
        const std::lock_guard lock(_mutex);
        if (std::exchange(_isTold, true)) {
            return;
        }
    }
    if (_events.applicationWillEnd) {
        _events.applicationWillEnd();
    }
}

} // namespace kovalin::platform
