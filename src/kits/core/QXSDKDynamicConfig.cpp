#include "kits/core/QXSDKDynamicConfig.h"

#include <QtCore/QJsonValue>

QXSDKDynamicConfig::QXSDKDynamicConfig(const QJsonObject& values)
    : _values(values)
{
}

bool QXSDKDynamicConfig::boolValue(const QStringList& keyPath, bool defaultValue) const
{
    QJsonValue value = _values;
    for (const QString& key : keyPath) {
        value = value.toObject().value(key);
    }
    return value.toBool(defaultValue);
}
