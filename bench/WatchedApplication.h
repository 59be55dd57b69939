#pragma once

#include "Measure.h"

#include <QtCore/QCoreApplication>

#include <vector>

namespace kovalin::bench {

/// How long something held the main thread. The processor's time leaves out what other programs took; the clock's holds what it
/// waited for too, a lock or a page.
struct Hold {
    Nanoseconds byProcessor;
    Nanoseconds byClock;
};

template <typename Work>
Hold holdOf(Work&& work)
{
    const Nanoseconds clockStart = clockNow();
    const Nanoseconds processorTime = timeOf(work);
    return {processorTime, clockNow() - clockStart};
}

/// An application object that notes how long the main thread is held by each event that its event loop delivers. A job of the
/// main queue is one event, and so is whatever else a library has the event loop do.
class WatchedApplication final : public QCoreApplication {
public:
    using QCoreApplication::QCoreApplication;

    bool notify(QObject* receiver, QEvent* event) override;

    /// Those of the events since the last call. Main thread only.
    [[nodiscard]] std::vector<Hold> takeHolds();

private:
    std::vector<Hold> _holds; // main thread only
};

} // namespace kovalin::bench
