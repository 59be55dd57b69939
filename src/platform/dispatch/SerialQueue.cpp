#include "platform/dispatch/SerialQueue.h"

#include "platform/dispatch/CleanStop.h"
#include "platform/dispatch/DispatchState.h"

#include <QtCore/QRunnable>

#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace kovalin::platform {

// The jobs, and what a worker runs to carry them out. It outlives its SerialQueue for as long as there are jobs.
//
// Awake means that a worker has been asked for and hasn't yet seen the jobs run out: the first job wakes the queue,
// later ones only join, so never do two workers carry out jobs of one queue.
class SerialQueue::Core final : public QRunnable, public std::enable_shared_from_this<Core> {
public:
    explicit Core(QString label)
        : _label(std::move(label))
    {
        setAutoDelete(false);
    }

    const QString& label() const { return _label; }

    bool isCurrent() const { return _current == this; }

    void add(std::function<void()> job)
    {
        const std::lock_guard lock(_mutex);
        if (!_isAwake) {
            if (!DispatchState::shared().serial.wake(*this)) {
                return; // The job goes after the lock, so that its captures may come back here.
            }
            _isAwake = true;
            _keepAlive = shared_from_this();
        }
        _jobs.push_back(std::move(job));
    }

    void run() noexcept override
    {
        SerialWorkers& workers = DispatchState::shared().serial;
        std::shared_ptr<Core> self;
        {
            const std::lock_guard lock(_mutex);
            self = std::move(_keepAlive);
        }
        _current = this;
        while (const std::optional<std::function<void()>> job = _takeNext()) {
            if (workers.areOpen()) {
                (*job)();
            }
        }
        _current = nullptr;
        // Before it counts as finished, so that no queue outlives its application object in the hands of a worker. From
        // here on `this` may be gone, or on another worker.
        self.reset();
        workers.finished();
    }

private:
    // Absent when there is none; then the queue is asleep.
    std::optional<std::function<void()>> _takeNext()
    {
        const std::lock_guard lock(_mutex);
        if (_jobs.empty()) {
            _isAwake = false;
            return std::nullopt;
        }
        std::optional<std::function<void()>> job = std::move(_jobs.front());
        _jobs.pop_front();
        return job;
    }

    static thread_local const Core* _current;

    const QString _label;
    std::mutex _mutex;                       // taken before that of SerialWorkers
    std::deque<std::function<void()>> _jobs; // guarded by _mutex
    bool _isAwake = false;                   // guarded by _mutex
    std::shared_ptr<Core> _keepAlive;        // guarded by _mutex; from waking until a worker holds it
};

thread_local const SerialQueue::Core* SerialQueue::Core::_current = nullptr;

SerialQueue::SerialQueue(QString label)
    : _core(std::make_shared<Core>(std::move(label)))
{
}

SerialQueue::~SerialQueue() = default;

const QString& SerialQueue::label() const
{
    return _core->label();
}

void SerialQueue::async(std::function<void()> job)
{
    _core->add(std::move(job));
}

bool SerialQueue::isCurrent() const
{
    return _core->isCurrent();
}

void SerialQueue::assertOnQueue(const SourceLocation& where) const
{
    if (!isCurrent()) {
        cleanStop("Not on the serial queue \"" + label().toStdString() + '"', where);
    }
}

} // namespace kovalin::platform
