#pragma once

#include "learned_search/generated-src/QXNativeModelCacheExecutor.h"

#include <QtCore/QString>

/// Keeps the record of which model is cached as a small archive beside the model. Any thread but the main one, which it refuses
/// since it reads and writes files.
class QXSDKKovalinModelCacheExecutor final : public QXNativeModelCacheExecutor {
public:
    /// The stored record if it is valid, else one of a failure: MAIN_THREAD_REFUSED or FILE_FAILED. An archive that can't be
    /// read is deleted, so that the next download mends it; a record that isn't valid stays. Never null.
    [[nodiscard]] QXNativeModelMetaDataPtr getCachedModelMetaData(const QString& modelName) override;

    /// Stores the record whole, or leaves the old one and gives false.
    [[nodiscard]] bool setCachedModelMetaData(const QString& modelName,
                                              const QXNativeModelMetaDataPtr& modelData) override;

    /// Where the record of a model is stored.
    [[nodiscard]] static QString _metadataArchivePath(const QString& modelName);

    /// Whether there is a record, its model file exists, and its version is positive.
    [[nodiscard]] static bool _validateModelMetaData(const QXNativeModelMetaDataPtr& modelData);

    /// A record of a failure: no path and the version -1.
    [[nodiscard]] static QXNativeModelMetaDataPtr _failedModelMetadata(QXNativeStatusEnums status);
};
