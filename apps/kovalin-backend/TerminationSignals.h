#pragma once

#include <QtCore/QSocketNotifier>

#include <functional>
#include <memory>

namespace kovalin::backend {

/// Turns SIGTERM and SIGINT into a call from the event loop. One at a time, on the thread that makes it. While it
/// lives the signals don't end the program by themselves.
class TerminationSignals final {
public:
    explicit TerminationSignals(std::function<void()> came);
    ~TerminationSignals();
    Q_DISABLE_COPY_MOVE(TerminationSignals)

private:
    std::unique_ptr<QSocketNotifier> _notifier;
};

} // namespace kovalin::backend
