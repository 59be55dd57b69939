#pragma once

#include <QtCore/QObject>

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace kovalin::platform {

/// The jobs of the main queue and the object through which the event loop reaches them. Private to this folder; any
/// thread unless a member says otherwise.
class MainQueueState final {
public:
    MainQueueState() = default;
    ~MainQueueState() = default;
    Q_DISABLE_COPY_MOVE(MainQueueState)

    /// The application object is there: jobs are taken from now on.
    void open();

    /// Main thread only. The application object is about to go: drops what is pending and all that comes from now on.
    void close();

    /// See `dispatchMain`.
    void post(std::function<void()> job);

    /// An object on the main thread that dies when the queue closes, to be the parent of what must end with it. Null
    /// while the queue is closed.
    [[nodiscard]] QObject* context() const;

private:
    class Receiver;

    void _runNext() noexcept;

    mutable std::mutex _mutex;
    std::deque<std::function<void()>> _jobs; // guarded by _mutex
    std::unique_ptr<QObject> _receiver;      // guarded by _mutex; null while closed
};

} // namespace kovalin::platform
