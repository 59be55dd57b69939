#include "kovalin-backend/MetricsRecord.h"

#include <QtCore/QJsonArray>

namespace kovalin::backend {

QJsonObject TakenMetrics::toJson() const
{
    QJsonArray list;
    for (const MetricsEntry& entry : entries) {
        list.append(entry.toJson());
    }
    return {{QStringLiteral("batches"), batches},
            {QStringLiteral("repeats"), repeats},
            {QStringLiteral("count"), entries.size()},
            {QStringLiteral("entries"), list}};
}

QList<bool> MetricsRecord::take(const QList<MetricsEntry>& batch)
{
    const std::lock_guard lock(_mutex);
    ++_taken.batches;
    QList<bool> areNew;
    for (const MetricsEntry& entry : batch) {
        const bool isNew = !_ids.contains(entry.id);
        if (isNew) {
            _ids.insert(entry.id);
            _taken.entries.append(entry);
        } else {
            ++_taken.repeats;
        }
        areNew.append(isNew);
    }
    return areNew;
}

TakenMetrics MetricsRecord::taken() const
{
    const std::lock_guard lock(_mutex);
    return _taken;
}

} // namespace kovalin::backend
