#include "platform/foundation/Json.h"

namespace kovalin::platform {

std::optional<QString> jsonString(const QJsonObject& object, QStringView key)
{
    const QJsonValue value = object.value(key);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<QStringList> jsonStringList(const QJsonObject& object, QStringView key)
{
    const QJsonValue value = object.value(key);
    if (!value.isArray()) {
        return std::nullopt;
    }
    QStringList texts;
    const QJsonArray array = value.toArray();
    for (const auto& element : array) {
        if (element.isString()) {
            texts.append(element.toString());
        }
    }
    return texts;
}

std::optional<QJsonArray> jsonArray(const QJsonObject& object, QStringView key)
{
    const QJsonValue value = object.value(key);
    return value.isArray() ? std::optional(value.toArray()) : std::nullopt;
}

std::optional<QJsonObject> jsonObject(const QJsonObject& object, QStringView key)
{
    const QJsonValue value = object.value(key);
    return value.isObject() ? std::optional(value.toObject()) : std::nullopt;
}

std::optional<bool> jsonBool(const QJsonObject& object, QStringView key)
{
    const QJsonValue value = object.value(key);
    return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<double> jsonNumber(const QJsonObject& object, QStringView key)
{
    const QJsonValue value = object.value(key);
    return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
}

QJsonValue jsonValueAt(const QJsonValue& value, std::initializer_list<QStringView> path)
{
    QJsonValue reached = value;
    for (const QStringView key : path) {
        if (!reached.isObject()) {
            return QJsonValue(QJsonValue::Undefined);
        }
        reached = reached.toObject().value(key);
    }
    return reached;
}

} // namespace kovalin::platform
