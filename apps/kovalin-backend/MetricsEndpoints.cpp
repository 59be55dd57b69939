#include "kovalin-backend/MetricsEndpoints.h"

#include "kovalin-backend/MetricsBatch.h"

#include <variant>

namespace kovalin::backend {

namespace {

constexpr int noContent = 204;
constexpr int badRequest = 400;

Answer takeMetrics(MetricsRecord& record, const BackendEvents& events, const Request& request)
{
    const auto read = readMetricsBatch(request.body);
    if (const auto* fault = std::get_if<QString>(&read)) {
        return Answer::text(badRequest, *fault);
    }
    const auto& entries = std::get<QList<MetricsEntry>>(read);
    const QList<bool> areNew = record.take(entries);
    if (events.metricsCame) {
        for (qsizetype i = 0; i < entries.size(); ++i) {
            events.metricsCame(entries[i], areNew[i]);
        }
    }
    return Answer::empty(noContent);
}

} // namespace

void addMetricsEndpoints(Endpoints& endpoints, const std::shared_ptr<MetricsRecord>& record,
                         const BackendEvents& events)
{
    endpoints.add(QByteArrayLiteral("POST"), QStringLiteral("/api/metrics"),
                  [record, events](const Request& request, const QList<QString>&) {
                      return takeMetrics(*record, events, request);
                  });
    endpoints.add(QByteArrayLiteral("GET"), QStringLiteral("/control/metrics"),
                  [record](const Request&, const QList<QString>&) { return Answer::json(record->taken().toJson()); });
}

} // namespace kovalin::backend
