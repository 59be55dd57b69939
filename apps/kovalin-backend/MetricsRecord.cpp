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
            {QStringLiteral("count"), count},
            {QStringLiteral("entries"), list}};
}

QList<bool> MetricsRecord::take(const QList<MetricsEntry>& batch)
{
    const std::lock_guard lock(_mutex);
    ++_taken.batches;
    QList<bool> areNew;
    for (const MetricsEntry& entry : batch) {
        const bool isNew = _ids.add(entry.id);
        if (isNew) {
            ++_taken.count;
            _taken.entries.append(entry);
        } else {
            ++_taken.repeats;
        }
        areNew.append(isNew);
    }
    while (_taken.entries.size() > kMostKept) {
        _taken.entries.removeFirst();
    }
    return areNew;
}

TakenMetrics MetricsRecord::taken() const
{
    const std::lock_guard lock(_mutex);
    return _taken;
}

} // namespace kovalin::backend
