#include "platform/net/UrlSession.h"

#include "platform/dispatch/ThreadQueue.h"
#include "platform/net/SessionWorker.h"

#include <QtCore/QString>

#include <utility>

namespace kovalin::platform {

UrlSession& UrlSession::shared()
{
    static auto* const session = new UrlSession;
    return *session;
}

UrlSession::UrlSession(UrlSessionOptions options)
    : _worker(std::make_shared<SessionWorker>(std::move(options)))
    , _queue(std::make_shared<ThreadQueue>(QStringLiteral("UrlSession"),
                                           ThreadQueueEvents{
                                               .applicationWillEnd = [worker = _worker] { worker->endAll(); },
                                               .threadWillEnd = [worker = _worker] { worker->leaveThread(); },
                                           }))
{
}

UrlSession::~UrlSession()
{
    _queue->async([worker = _worker] { worker->invalidate(); });
}

std::shared_ptr<DataTask> UrlSession::dataTask(UrlRequest request, DataHandler handler)
{
    return std::shared_ptr<DataTask>(new DataTask(_queue, _worker, std::move(request), std::move(handler)));
}

} // namespace kovalin::platform
