#include "kovalin-backend/MetricsBatch.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonParseError>
#include <QtCore/QJsonValue>
#include <QtCore/QUuid>

#include <utility>

namespace kovalin::backend {

namespace {

/// What is wrong with a batch, thrown within this file.
struct Fault {
    QString text;
};

QString textAt(const QJsonObject& object, const QString& key)
{
    const QJsonValue value = object.value(key);
    if (!value.isString()) {
        throw Fault{u'"' + key + QStringLiteral("\" is no text")};
    }
    return value.toString();
}

qint64 integerAt(const QJsonObject& object, const QString& key)
{
    // What isn't an integer gives the default.
    const QJsonValue value = object.value(key);
    const qint64 number = value.toInteger(0);
    if (number != value.toInteger(1)) {
        throw Fault{u'"' + key + QStringLiteral("\" is no integer")};
    }
    return number;
}

double numberAt(const QJsonObject& object, const QString& key)
{
    const QJsonValue value = object.value(key);
    if (!value.isDouble()) {
        throw Fault{u'"' + key + QStringLiteral("\" is no number")};
    }
    return value.toDouble();
}

MetricsEntry readEntry(const QJsonValue& value, const MetricsEntry& common)
{
    if (!value.isObject()) {
        throw Fault{QStringLiteral("is no object")};
    }
    const QJsonObject object = value.toObject();
    MetricsEntry entry = common;
    entry.id = textAt(object, QStringLiteral("id"));
    if (entry.id.isEmpty()) {
        throw Fault{QStringLiteral("\"id\" is empty")};
    }
    const QString type = textAt(object, QStringLiteral("type"));
    entry.name = textAt(object, QStringLiteral("name"));
    if (type == u"count") {
        entry.kind = MetricsEntry::Kind::Count;
        entry.value = integerAt(object, QStringLiteral("value"));
    } else if (type == u"latency") {
        entry.kind = MetricsEntry::Kind::Latency;
        entry.milliseconds = numberAt(object, QStringLiteral("milliseconds"));
    } else {
        throw Fault{QStringLiteral("\"type\" is neither \"count\" nor \"latency\"")};
    }
    entry.timeMillis = integerAt(object, QStringLiteral("time"));
    return entry;
}

QJsonObject readObject(const QByteArray& body)
{
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError) {
        throw Fault{QStringLiteral("no JSON: %1, at byte %2").arg(error.errorString()).arg(error.offset)};
    }
    if (!document.isObject()) {
        throw Fault{QStringLiteral("no JSON object")};
    }
    return document.object();
}

QList<MetricsEntry> readBatch(const QByteArray& body)
{
    const QJsonObject batch = readObject(body);
    MetricsEntry common;
    common.clientId = textAt(batch, QStringLiteral("client_id"));
    common.batchId = textAt(batch, QStringLiteral("batch_id"));
    if (QUuid::fromString(common.batchId).isNull()) {
        throw Fault{QStringLiteral("\"batch_id\" is no UUID")};
    }
    const QJsonValue list = batch.value(u"entries");
    if (!list.isArray()) {
        throw Fault{QStringLiteral("\"entries\" is no list")};
    }
    QList<MetricsEntry> entries;
    const QJsonArray values = list.toArray();
    for (const QJsonValue value : values) {
        try {
            entries.append(readEntry(value, common));
        } catch (const Fault& fault) {
            throw Fault{QStringLiteral("entry %1: %2").arg(entries.size() + 1).arg(fault.text)};
        }
    }
    return entries;
}

} // namespace

QJsonObject MetricsEntry::toJson() const
{
    QJsonObject object{{QStringLiteral("client_id"), clientId},
                       {QStringLiteral("batch_id"), batchId},
                       {QStringLiteral("id"), id},
                       {QStringLiteral("name"), name},
                       {QStringLiteral("time"), timeMillis}};
    if (kind == Kind::Count) {
        object.insert(QStringLiteral("type"), QStringLiteral("count"));
        object.insert(QStringLiteral("value"), value);
    } else {
        object.insert(QStringLiteral("type"), QStringLiteral("latency"));
        object.insert(QStringLiteral("milliseconds"), milliseconds);
    }
    return object;
}

std::variant<QList<MetricsEntry>, QString> readMetricsBatch(const QByteArray& body)
{
    try {
        return readBatch(body);
    } catch (const Fault& fault) {
        return fault.text;
    }
}

} // namespace kovalin::backend
