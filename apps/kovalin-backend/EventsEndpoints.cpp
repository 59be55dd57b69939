#include "kovalin-backend/EventsEndpoints.h"

#include "events/EventBatchReader.h"

#include <QtCore/QUuid>

#include <optional>
#include <variant>

namespace kovalin::backend {

namespace {

using analytics::EventBatch;

constexpr int noContent = 204;
constexpr int badRequest = 400;

/// What a server has to insist on, since repeats are known by ids.
std::optional<QString> idFault(const EventBatch& batch)
{
    if (QUuid::fromString(batch.id).isNull()) {
        return QStringLiteral("\"batch_id\" is no UUID");
    }
    for (qsizetype i = 0; i < batch.events.size(); ++i) {
        if (batch.events[i].id.isEmpty()) {
            return QStringLiteral("events#%1: no \"event_id\"").arg(i + 1);
        }
    }
    return std::nullopt;
}

Answer takeEvents(EventsRecord& record, const BackendEvents& events, const Request& request)
{
    const auto read = analytics::readEventBatch(request.body);
    if (const auto* fault = std::get_if<QString>(&read)) {
        return Answer::text(badRequest, *fault);
    }
    const auto& batch = std::get<EventBatch>(read);
    if (const auto fault = idFault(batch)) {
        return Answer::text(badRequest, *fault);
    }
    const QList<bool> areNew = record.take(batch);
    if (events.analyticsEventCame) {
        for (qsizetype i = 0; i < batch.events.size(); ++i) {
            events.analyticsEventCame(batch.events[i], areNew[i]);
        }
    }
    return Answer::empty(noContent);
}

} // namespace

void addEventsEndpoints(Endpoints& endpoints, const std::shared_ptr<EventsRecord>& record, const BackendEvents& events)
{
    endpoints.add(QByteArrayLiteral("POST"), QStringLiteral("/api/events"),
                  [record, events](const Request& request, const QList<QString>&) {
                      return takeEvents(*record, events, request);
                  });
    endpoints.add(QByteArrayLiteral("GET"), QStringLiteral("/control/events"),
                  [record](const Request&, const QList<QString>&) { return Answer::json(record->taken().toJson()); });
}

} // namespace kovalin::backend
