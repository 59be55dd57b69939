#include "platform/net/DataTask.h"

#include "platform/dispatch/ThreadQueue.h"
#include "platform/net/SessionWorker.h"

#include <utility>

namespace kovalin::platform {

DataTask::DataTask(std::shared_ptr<ThreadQueue> queue, std::shared_ptr<SessionWorker> worker, UrlRequest request,
                   DataHandler handler)
    : _queue(std::move(queue))
    , _worker(std::move(worker))
    , _state(std::make_shared<State>())
{
    _state->request = std::move(request);
    _state->handler = std::move(handler);
}

DataTask::~DataTask() = default;

void DataTask::resume()
{
    if (!_state->isResumed.exchange(true)) {
        _queue->async([worker = _worker, state = _state] { worker->start(state); });
    }
}

void DataTask::cancel()
{
    // Of two threads that resume and cancel at once, at least one sees the other's mark.
    if (!_state->isCancelled.exchange(true) && _state->isResumed) {
        _queue->async([worker = _worker, state = _state] { worker->cancel(state); });
    }
}

} // namespace kovalin::platform
