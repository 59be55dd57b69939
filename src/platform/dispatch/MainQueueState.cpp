#include "platform/dispatch/MainQueueState.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

#include <utility>

namespace kovalin::platform {

// Each posted job has one event, which says no more than "run the next". The job itself must not travel in the event: a
// Qt library that wasn't built with the thread sanitizer hides that posting comes before delivery, and what the job
// carries would be reported as raced for. Our mutex shows it.
class MainQueueState::Receiver final : public QObject {
public:
    explicit Receiver(MainQueueState& queue)
        : _queue(queue)
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
        _queue._runNext();
        return true;
    }

private:
    MainQueueState& _queue;
};

void MainQueueState::open()
{
    auto receiver = std::make_unique<Receiver>(*this);
    // Another thread than the main one can come here when it is the one that loads this library.
    receiver->moveToThread(QCoreApplication::instance()->thread());
    const std::lock_guard lock(_mutex);
    _receiver = std::move(receiver);
}

void MainQueueState::close()
{
    std::deque<std::function<void()>> dropped;
    std::unique_ptr<QObject> receiver;
    {
        const std::lock_guard lock(_mutex);
        dropped.swap(_jobs);
        receiver = std::move(_receiver);
    }
    // Unlocked, since the captures of a dropped job may use any queue as they go.
}

void MainQueueState::post(std::function<void()> job)
{
    const std::lock_guard lock(_mutex);
    if (_receiver == nullptr) {
        return; // The job goes after the lock, so that its captures may come back here.
    }
    _jobs.push_back(std::move(job));
    QCoreApplication::postEvent(_receiver.get(), new QEvent(Receiver::eventType()));
}

QObject* MainQueueState::context() const
{
    const std::lock_guard lock(_mutex);
    return _receiver.get();
}

void MainQueueState::_runNext() noexcept
{
    std::function<void()> job;
    {
        const std::lock_guard lock(_mutex);
        job = std::move(_jobs.front());
        _jobs.pop_front();
    }
    job();
}

} // namespace kovalin::platform
