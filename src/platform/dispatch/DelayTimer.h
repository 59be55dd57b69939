#pragma once

#include "platform/dispatch/QueuePhase.h"

#include <QtCore/QtGlobal>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace kovalin::platform {

/// The one thread that waits for all delays of the system's `DelayClock`. It starts with the first delay, and while there
/// is none it sleeps without waking up. Private to this folder; any thread.
class DelayTimer final {
public:
    using Id = std::uint64_t;

    DelayTimer() = default;
    ~DelayTimer() = default;
    Q_DISABLE_COPY_MOVE(DelayTimer)

    /// The application object is there: what was scheduled before it and is due by now is called.
    void open();

    /// The application object is about to go: drops what is pending and all that comes from now on, and returns once the
    /// thread has ended. Not from a `due`.
    void close();

    /// See `DelayClock`. A negative delay counts as none, one of more than a year as a year.
    Id schedule(std::chrono::nanoseconds delay, std::function<void()> due);

    /// See `DelayClock`.
    void cancel(Id id);

private:
    using Time = std::chrono::steady_clock::time_point;

    void _startThread(); // with _mutex held
    void _run() noexcept;

    std::mutex _mutex;
    std::condition_variable _changed;
    QueuePhase _phase = QueuePhase::Early;                         // guarded by _mutex
    std::map<std::pair<Time, Id>, std::function<void()>> _pending; // guarded by _mutex; first the one that is due first
    Id _lastId = 0;                                                // guarded by _mutex
    std::thread _thread;                                           // guarded by _mutex
};

} // namespace kovalin::platform
