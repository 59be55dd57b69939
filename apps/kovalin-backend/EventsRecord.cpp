#include "kovalin-backend/EventsRecord.h"

#include <QtCore/QJsonArray>

#include <algorithm>
#include <limits>

namespace kovalin::backend {

QJsonObject TakenEvents::toJson() const
{
    QJsonArray list;
    for (const analytics::Event& event : events) {
        list.append(event.toJson());
    }
    return {{QStringLiteral("batches"), batches},
            {QStringLiteral("received"), received},
            {QStringLiteral("repeats"), repeats},
            {QStringLiteral("dropped"), analytics::jsonNumber(dropped)},
            {QStringLiteral("events"), list}};
}

QList<bool> EventsRecord::take(const analytics::EventBatch& batch)
{
    const std::lock_guard lock(_mutex);
    ++_taken.batches;
    if (_batchIds.add(batch.id)) {
        _taken.dropped += std::min(batch.dropped, std::numeric_limits<quint64>::max() - _taken.dropped);
    }
    QList<bool> areNew;
    for (const analytics::Event& event : batch.events) {
        const bool isNew = _eventIds.add(event.id);
        if (isNew) {
            ++_taken.received;
            _bytes += event.size;
            _taken.events.append(event);
        } else {
            ++_taken.repeats;
        }
        areNew.append(isNew);
    }
    while (_taken.events.size() > kMostKept || _bytes > kMostBytesKept) {
        _bytes -= _taken.events.front().size;
        _taken.events.removeFirst();
    }
    return areNew;
}

TakenEvents EventsRecord::taken() const
{
    const std::lock_guard lock(_mutex);
    return _taken;
}

} // namespace kovalin::backend
