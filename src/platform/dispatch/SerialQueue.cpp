#include "platform/dispatch/SerialQueue.h"

#include "platform/dispatch/CleanStop.h"
#include "platform/dispatch/DelayedJobState.h"
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
class SerialQueue::Core final : public QRunnable, public EndListener, public std::enable_shared_from_this<Core> {
public:
    Core(QString label, SerialQueueEvents events)
        : _label(std::move(label))
        , _events(std::move(events))
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
        _jobs.push_back({std::move(job)});
    }

    /// Has the queue told of the application's end, if it has something to do then.
    void listenToTheEnd()
    {
        if (_events.applicationWillEnd) {
            DispatchState::shared().endListeners.add(weak_from_this());
        }
    }

    /// The queue is gone: it has nothing to do at the end any more.
    void retire()
    {
        const std::lock_guard lock(_mutex);
        _isRetired = true;
    }

    void applicationWillEnd() override
    {
        const std::lock_guard lock(_mutex);
        if (_isRetired) {
            return;
        }
        if (!_isAwake) {
            DispatchState::shared().serial.wakeForTheEnd(*this);
            _isAwake = true;
            _keepAlive = shared_from_this();
        }
        _jobs.push_back({_events.applicationWillEnd, true});
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
        while (const std::optional<Job> job = _takeNext()) {
            if (job->isLast || workers.areOpen()) {
                job->run();
            }
        }
        _current = nullptr;
        // Before it counts as finished, so that no queue outlives its application object in the hands of a worker. From
        // here on `this` may be gone, or on another worker.
        self.reset();
        workers.finished();
    }

private:
    struct Job {
        std::function<void()> run;
        bool isLast = false; // runs while the application object dies
    };

    // Absent when there is none; then the queue is asleep.
    std::optional<Job> _takeNext()
    {
        const std::lock_guard lock(_mutex);
        if (_jobs.empty()) {
            _isAwake = false;
            return std::nullopt;
        }
        std::optional<Job> job = std::move(_jobs.front());
        _jobs.pop_front();
        return job;
    }

    static thread_local const Core* _current;

    const QString _label;
    const SerialQueueEvents _events;
    std::mutex _mutex;                // taken before that of SerialWorkers
    std::deque<Job> _jobs;            // guarded by _mutex
    bool _isAwake = false;            // guarded by _mutex
    bool _isRetired = false;          // guarded by _mutex
    std::shared_ptr<Core> _keepAlive; // guarded by _mutex; from waking until a worker holds it
};

thread_local const SerialQueue::Core* SerialQueue::Core::_current = nullptr;

SerialQueue::SerialQueue(QString label, SerialQueueEvents events)
    : _core(std::make_shared<Core>(std::move(label), std::move(events)))
{
    _core->listenToTheEnd();
}

SerialQueue::~SerialQueue()
{
    _core->retire();
}

const QString& SerialQueue::label() const
{
    return _core->label();
}

void SerialQueue::async(std::function<void()> job)
{
    _core->add(std::move(job));
}

DelayedJob SerialQueue::asyncAfter(std::chrono::nanoseconds delay, std::function<void()> job)
{
    // Carries the job to the queue. Wherever it is dropped on that way, the job goes with it.
    struct Carrier {
        explicit Carrier(std::shared_ptr<DelayedJob::State> carried)
            : state(std::move(carried))
        {
        }
        ~Carrier() { static_cast<void>(state->take()); }
        Q_DISABLE_COPY_MOVE(Carrier)

        const std::shared_ptr<DelayedJob::State> state;
    };
    const auto state = std::make_shared<DelayedJob::State>();
    state->job = std::move(job);
    state->clock = delayClock();
    auto carrier = std::make_shared<Carrier>(state);
    state->id = state->clock->schedule(delay, [weakCore = std::weak_ptr<Core>(_core), carrier = std::move(carrier)] {
        if (const auto core = weakCore.lock()) {
            core->add([carrier] {
                if (const auto run = carrier->state->take()) {
                    run();
                }
            });
        }
    });
    return DelayedJob(state);
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
