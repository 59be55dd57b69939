#include "events/EventBatch.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <limits>

namespace kovalin::analytics {

namespace {

QJsonArray jsonOf(const QList<UnknownField>& fields)
{
    QJsonArray list;
    for (const UnknownField& field : fields) {
        list.append(field.toJson());
    }
    return list;
}

void insertUnknown(QJsonObject& object, const QList<UnknownField>& fields)
{
    if (!fields.isEmpty()) {
        object.insert(QStringLiteral("unknown"), jsonOf(fields));
    }
}

template <typename Json>
QString compact(const Json& json)
{
    return QString::fromUtf8(QJsonDocument(json).toJson(QJsonDocument::Compact));
}

} // namespace

QJsonObject UnknownField::toJson() const
{
    return {{QStringLiteral("in"), in},
            {QStringLiteral("number"), number},
            {QStringLiteral("wire_type"), wireType},
            {QStringLiteral("value"), value}};
}

QJsonObject Event::toJson() const
{
    QJsonObject object{{QStringLiteral("batch_id"), batchId},
                       {QStringLiteral("event_id"), id},
                       {QStringLiteral("time_millis"), timeMillis},
                       {QStringLiteral("event"), name.isEmpty() ? QJsonValue() : QJsonValue(name)},
                       {QStringLiteral("fields"), fields ? QJsonValue(*fields) : QJsonValue()}};
    insertUnknown(object, unknown);
    return object;
}

QString Event::toText() const
{
    QString text = name.isEmpty() ? QStringLiteral("(none)") : name;
    if (fields) {
        text += u' ' + compact(*fields);
    }
    if (!unknown.isEmpty()) {
        text += QStringLiteral(" unknown ") + compact(jsonOf(unknown));
    }
    return text;
}

QJsonObject EventBatch::headToJson() const
{
    QJsonObject object{{QStringLiteral("batch_id"), id},
                       {QStringLiteral("dropped"), jsonNumber(dropped)},
                       {QStringLiteral("count"), events.size()}};
    insertUnknown(object, unknown);
    return object;
}

QJsonValue jsonNumber(quint64 number)
{
    constexpr auto most = static_cast<quint64>(std::numeric_limits<qint64>::max());
    return number <= most ? QJsonValue(static_cast<qint64>(number)) : QJsonValue(QString::number(number));
}

} // namespace kovalin::analytics
