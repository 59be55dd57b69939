#pragma once

#include "platform/net/UrlError.h"
#include "platform/net/UrlRequest.h"
#include "platform/net/UrlResponse.h"

#include <QtCore/QByteArray>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace kovalin::platform {

class SessionWorker;
class ThreadQueue;

/// What a task ends with: either the answer, `data` being its whole body and `response` its head, or `error`, without
/// either.
using DataHandler = std::function<void(const QByteArray& data, const std::optional<UrlResponse>& response,
                                       const std::optional<UrlError>& error)>;

/// One request of a `UrlSession`. Any thread, also inside the handler.
///
/// - Exactly once: each resumed task calls its handler once, whatever happens, and a task that isn't resumed never does.
///   The one exception is a task resumed where there is no application object any more: that handler is dropped.
/// - Thread: the handler runs on the session's own thread, never inside a call of the task. It shouldn't block, since it
///   holds up all tasks of the session.
/// - Order: none between tasks.
/// - The handler is destroyed on the session's thread right after it ran; not resumed, with the task.
///
/// Lifetime: a task goes on when nobody holds it, and outlives its session, whose end cancels it.
///
/// Requires: the handler can be called and doesn't throw; otherwise the program ends in `std::terminate` at its turn.
class DataTask final {
public:
    ~DataTask();
    DataTask(const DataTask&) = delete;
    DataTask& operator=(const DataTask&) = delete;

    /// Starts the request, once; later calls do nothing.
    void resume();

    /// Ends the request. Where this comes before the handler starts, the handler gets the error `Cancelled`, also where
    /// the answer is complete already or the task is resumed only afterwards. Later on it does nothing.
    void cancel();

private:
    friend class UrlSession;
    friend class SessionWorker;

    struct State {
        UrlRequest request;  // the session's thread only, once resumed
        DataHandler handler; // the session's thread only, once resumed
        std::atomic<bool> isResumed = false;
        std::atomic<bool> isCancelled = false;
    };

    DataTask(std::shared_ptr<ThreadQueue> queue, std::shared_ptr<SessionWorker> worker, UrlRequest request,
             DataHandler handler);

    const std::shared_ptr<ThreadQueue> _queue;
    const std::shared_ptr<SessionWorker> _worker;
    const std::shared_ptr<State> _state;
};

} // namespace kovalin::platform
