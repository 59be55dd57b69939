#pragma once

#include "kovalin-backend/AnswerRules.h"
#include "kovalin-backend/BackendEvents.h"
#include "kovalin-backend/ContentFolder.h"
#include "kovalin-backend/Endpoints.h"
#include "kovalin-backend/HttpListener.h"
#include "kovalin-backend/MetricsRecord.h"
#include "kovalin-backend/RequestRecord.h"
#include "kovalin-backend/RuledAnswers.h"

#include <QtCore/QString>
#include <QtCore/QUrl>

#include <memory>

namespace kovalin::backend {

/// What a backend's thread and the others share. Each is safe on any thread.
struct BackendRecords {
    AnswerRules rules;
    RequestRecord requests;
    MetricsRecord metrics;
};

/// The server itself, on the backend's thread.
class BackendServer final {
public:
    BackendServer(std::shared_ptr<BackendRecords> records, BackendEvents events);
    Q_DISABLE_COPY_MOVE(BackendServer)

    /// Starts to listen and to answer. Once. Gives what keeps it from listening, empty when it listens.
    [[nodiscard]] QString start(const std::shared_ptr<const ContentFolder>& content, quint16 port);

    [[nodiscard]] QUrl baseUrl();

    /// To be called when the rules in the records have changed.
    void rulesChanged();

private:
    void _requestCame(Exchange exchange);

    const std::shared_ptr<BackendRecords> _records;
    const BackendEvents _events;
    Endpoints _endpoints;
    RuledAnswers _answers;
    HttpListener _listener; // goes first, and the connections with it
};

} // namespace kovalin::backend
