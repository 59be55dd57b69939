#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

/// One configuration: named values that a server can change. Immutable; any thread.
class QXSDKKOVALINKIT_EXPORT QXSDKDynamicConfig final {
public:
    explicit QXSDKDynamicConfig(const QJsonObject& values);

    /// The value that is reached by the keys, one after the other; `defaultValue` where there is none, or none that is true or
    /// false.
    [[nodiscard]] bool boolValue(const QStringList& keyPath, bool defaultValue) const;

private:
    QJsonObject _values;
};
