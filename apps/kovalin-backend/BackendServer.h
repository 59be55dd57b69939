#pragma once

#include "kovalin-backend/AnswerRules.h"
#include "kovalin-backend/BackendEvents.h"
#include "kovalin-backend/ContentFolder.h"
#include "kovalin-backend/Endpoints.h"
#include "kovalin-backend/EventsRecord.h"
#include "kovalin-backend/HttpListener.h"
#include "kovalin-backend/MetricsRecord.h"
#include "kovalin-backend/PictureCache.h"
#include "kovalin-backend/RequestRecord.h"
#include "kovalin-backend/RuledAnswers.h"
#include "kovalin-backend/accounts/Grants.h"

#include <QtCore/QString>
#include <QtCore/QUrl>

#include <chrono>
#include <memory>

namespace kovalin::backend {

/// What a backend's thread and the others share. Each is safe on any thread.
struct BackendRecords {
    explicit BackendRecords(std::chrono::seconds accessTokenLife)
        : grants(accessTokenLife)
    {
    }

    AnswerRules rules;
    RequestRecord requests;
    MetricsRecord metrics;
    EventsRecord events;
    Grants grants;
};

/// The server itself, on the backend's thread.
class BackendServer final {
public:
    /// `post` runs jobs on this thread.
    BackendServer(std::shared_ptr<BackendRecords> records, BackendEvents events, PictureCache::Post post);
    Q_DISABLE_COPY_MOVE(BackendServer)

    /// Starts to listen and to answer. Once. Gives what keeps it from listening, empty when it listens.
    [[nodiscard]] QString start(const std::shared_ptr<const ContentFolder>& content, quint16 port);

    [[nodiscard]] QUrl baseUrl();

    /// To be called when the rules in the records have changed.
    void rulesChanged();

private:
    void _addEndpoints(const std::shared_ptr<const ContentFolder>& content);
    void _requestCame(Exchange exchange);

    const std::shared_ptr<BackendRecords> _records;
    const BackendEvents _events;
    const PictureCache::Post _post;
    Endpoints _endpoints;
    RuledAnswers _answers;
    HttpListener _listener; // goes first, and the connections with it
};

} // namespace kovalin::backend
