#include "kits/core/default/MetricsBody.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <utility>

namespace kovalin::kits {

namespace {

QString textOf(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces);
}

QByteArray compact(QJsonObject object)
{
    return QJsonDocument(std::move(object)).toJson(QJsonDocument::Compact);
}

} // namespace

QByteArray countEntry(qint64 count, const QString& name, qint64 time)
{
    return compact({{QStringLiteral("type"), QStringLiteral("count")},
                    {QStringLiteral("name"), name},
                    {QStringLiteral("value"), count},
                    {QStringLiteral("time"), time}});
}

QByteArray latencyEntry(double milliseconds, const QString& name, qint64 time)
{
    return compact({{QStringLiteral("type"), QStringLiteral("latency")},
                    {QStringLiteral("name"), name},
                    {QStringLiteral("milliseconds"), milliseconds},
                    {QStringLiteral("time"), time}});
}

QByteArray metricsBody(const OutboxBatch& batch, const QString& clientId)
{
    QJsonArray entries;
    for (const OutboxEntry& entry : batch.entries) {
        QJsonObject object = QJsonDocument::fromJson(entry.bytes).object();
        object.insert(QStringLiteral("id"), textOf(entry.id));
        entries.append(std::move(object));
    }
    return compact({{QStringLiteral("client_id"), clientId},
                    {QStringLiteral("batch_id"), textOf(batch.id)},
                    {QStringLiteral("dropped"), static_cast<qint64>(batch.dropped)},
                    {QStringLiteral("entries"), std::move(entries)}});
}

} // namespace kovalin::kits
