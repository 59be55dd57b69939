#pragma once

#include "learned_search/generated-src/QXNativeModelUpdateExecutor.h"

#include <QtCore/QString>

#include <cstdint>
#include <optional>

/// Asks the content server for a newer model, and fetches it. Any thread but the main one, which it refuses: an operation blocks
/// its thread until the server has answered, at most 10 seconds. An answer that comes later is counted and, being a model,
/// stored; but nobody takes it.
class QXSDKKovalinModelUpdateExecutor final : public QXNativeModelUpdateExecutor {
public:
    /// The server's answer; one without an update where there is none in time, or no usable one. Never null.
    [[nodiscard]] QXNativeKovalinApiResponsePtr getRemoteModelStatus(const QString& modelName,
                                                                     std::optional<std::int32_t> modelVersion) override;

    /// A record of the stored file with SUCCESS, or FILE_FAILED if it could not be written; the remote record with
    /// DOWNLOAD_FAILED where no usable answer came in time. Never null.
    [[nodiscard]] QXNativeModelMetaDataPtr downloadModel(const QString& modelName,
                                                         const QXNativeModelMetaDataPtr& remoteModelMetaData) override;

    /// Where a version of a model is stored.
    [[nodiscard]] static QString _modelDiskPath(const QString& modelName, std::optional<std::int32_t> modelVersion);
};
