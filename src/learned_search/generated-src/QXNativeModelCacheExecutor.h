#pragma once

#include "learned_search/generated-src/QXNativeModelMetaData.h"

#include <QtCore/QString>

/// The local record of which model is cached; implemented by the platform. Called on the thread that calls the coordinator.
/// What an operation throws ends the coordinator's, and reaches its caller.
class QXNativeModelCacheExecutor {
public:
    QXNativeModelCacheExecutor() = default;
    virtual ~QXNativeModelCacheExecutor();
    QXNativeModelCacheExecutor(const QXNativeModelCacheExecutor&) = delete;
    QXNativeModelCacheExecutor& operator=(const QXNativeModelCacheExecutor&) = delete;

    /// The record of the cached model. A failure is a record with a status other than success; null stops the program.
    [[nodiscard]] virtual QXNativeModelMetaDataPtr getCachedModelMetaData(const QString& modelName) = 0;

    /// Replaces the record; whether it was stored. `modelData` is never null.
    [[nodiscard]] virtual bool setCachedModelMetaData(const QString& modelName,
                                                      const QXNativeModelMetaDataPtr& modelData) = 0;
};
