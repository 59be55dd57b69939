#pragma once

#include <QtCore/QtGlobal>

#include <memory>

namespace kovalin::platform {

/// Holds a job that `SerialQueue::asyncAfter` was given, which runs unless this is destroyed or cancelled before.
///
/// A value that moves; one thread at a time, which needn't be the queue.
class DelayedJob final {
public:
    /// Holds no job.
    DelayedJob();
    DelayedJob(DelayedJob&& other) noexcept;
    /// Cancels what is held so far.
    DelayedJob& operator=(DelayedJob&& other) noexcept;
    /// Cancels.
    ~DelayedJob();
    Q_DISABLE_COPY(DelayedJob)

    /// Makes sure that the job doesn't start any more. Where it has started it isn't waited for; on the job's own queue
    /// this can't be. Does nothing when it has run, was cancelled or dropped.
    void cancel();

    /// True until the job starts or can't start any more; false inside the job.
    [[nodiscard]] bool isPending() const;

private:
    friend class SerialQueue;
    struct State;

    explicit DelayedJob(std::shared_ptr<State> state);

    std::shared_ptr<State> _state;
};

} // namespace kovalin::platform
