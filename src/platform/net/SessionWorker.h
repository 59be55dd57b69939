#pragma once

#include "platform/net/DataTask.h"
#include "platform/net/Transfer.h"
#include "platform/net/UrlSession.h"

#include <QtNetwork/QNetworkAccessManager>

#include <map>
#include <memory>

namespace kovalin::platform {

/// What lives on the thread of a session: the manager and the transfers under way. Private to this folder; made and
/// destroyed on any thread, everything else on the session's.
class SessionWorker final {
public:
    using Task = std::shared_ptr<DataTask::State>;

    explicit SessionWorker(UrlSessionOptions options);
    ~SessionWorker();
    Q_DISABLE_COPY_MOVE(SessionWorker)

    void start(const Task& task);
    void cancel(const Task& task);

    /// Cancels everything, and all that is started while this thread lives.
    void endAll();

    /// Cancels everything, and all that is started from now on: the session is gone.
    void invalidate();

    /// The thread ends: gives up what lives on it. Another one may follow.
    void leaveThread();

private:
    [[nodiscard]] QNetworkAccessManager& _networkManager();
    void _deliver(const Task& task, TransferOutcome outcome) noexcept;

    const UrlSessionOptions _options;
    bool _isEnding = false;
    bool _isInvalidated = false;
    std::unique_ptr<QNetworkAccessManager> _manager; // null until the first transfer of this thread
    std::map<Task, Transfer*> _transfers;            // what is taken out deletes itself later
};

} // namespace kovalin::platform
