#include "kovalin-backend/BackendServer.h"

#include "kovalin-backend/ContentEndpoints.h"
#include "kovalin-backend/ControlEndpoints.h"
#include "kovalin-backend/EventsEndpoints.h"
#include "kovalin-backend/GraphQLEndpoint.h"
#include "kovalin-backend/MetricsEndpoints.h"
#include "kovalin-backend/PictureEndpoints.h"
#include "kovalin-backend/SizeLimit.h"
#include "kovalin-backend/accounts/OAuthEndpoints.h"

#include <utility>

namespace kovalin::backend {

namespace {

/// What lies here steers the server and is neither recorded nor ruled: a rule for "/*" must leave a way back.
bool isControl(const Request& request)
{
    return request.path.startsWith("/control/");
}

std::function<void()> tooLargeEvent(const BackendEvents& events)
{
    return [told = events.faultFound] {
        if (told) {
            told(QStringLiteral("A request was refused: its body is longer than %1 bytes").arg(kMostBodyBytes));
        }
    };
}

} // namespace

BackendServer::BackendServer(std::shared_ptr<BackendRecords> records, BackendEvents events, PictureCache::Post post)
    : _records(std::move(records))
    , _events(std::move(events))
    , _post(std::move(post))
    , _endpoints(_events.faultFound)
    , _answers(_endpoints, std::shared_ptr<const AnswerRules>(_records, &_records->rules))
    , _listener({.requestCame = [this](Exchange exchange) { _requestCame(std::move(exchange)); },
                 .requestTooLarge = tooLargeEvent(_events)})
{
}

QString BackendServer::start(const std::shared_ptr<const ContentFolder>& content, quint16 port)
{
    QString fault = _listener.listen(port);
    if (fault.isEmpty()) {
        _addEndpoints(content);
    }
    return fault;
}

void BackendServer::_addEndpoints(const std::shared_ptr<const ContentFolder>& content)
{
    const std::shared_ptr<Grants> grants(_records, &_records->grants);
    addContentEndpoints(_endpoints, content, baseUrl());
    addPictureEndpoints(_endpoints, content, std::make_shared<PictureCache>(_post));
    addOAuthEndpoints(_endpoints, content, grants);
    addGraphQLEndpoint(_endpoints, content, grants, baseUrl());
    addMetricsEndpoints(_endpoints, std::shared_ptr<MetricsRecord>(_records, &_records->metrics), _events);
    addEventsEndpoints(_endpoints, std::shared_ptr<EventsRecord>(_records, &_records->events), _events);
    addControlEndpoints(_endpoints, [this](const PathRule& rule) {
        _records->rules.set(rule);
        rulesChanged();
    });
}

QUrl BackendServer::baseUrl()
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(_listener.port()));
}

void BackendServer::rulesChanged()
{
    _answers.rulesChanged();
}

void BackendServer::_requestCame(Exchange exchange)
{
    if (isControl(exchange.request())) {
        _answers.answerAsUsual(exchange);
        return;
    }
    // Who sees that the request came may give the path another rule, for the next one.
    const AnswerRule rule = _answers.ruleFor(exchange.request());
    _records->requests.add(exchange.request());
    if (_events.requestCame) {
        _events.requestCame(exchange.request());
    }
    _answers.answer(exchange, rule);
}

} // namespace kovalin::backend
