#pragma once

#include "learned_search/generated-src/QXNativeKovalinApiResponse.h"
#include "learned_search/generated-src/QXNativeModelMetaData.h"

#include <QtCore/QString>

#include <cstdint>
#include <optional>

/// The server's side of model delivery; implemented by the platform. Called on the thread that calls the coordinator, which
/// may be blocked for as long as the network takes. What an operation throws ends the coordinator's, and reaches its caller.
class QXNativeModelUpdateExecutor {
public:
    QXNativeModelUpdateExecutor() = default;
    virtual ~QXNativeModelUpdateExecutor();
    QXNativeModelUpdateExecutor(const QXNativeModelUpdateExecutor&) = delete;
    QXNativeModelUpdateExecutor& operator=(const QXNativeModelUpdateExecutor&) = delete;

    /// Asks whether there is a newer model than `modelVersion`, which is absent where the cached record has none. Null, no
    /// answer, counts as a refusal.
    [[nodiscard]] virtual QXNativeKovalinApiResponsePtr
    getRemoteModelStatus(const QString& modelName, std::optional<std::int32_t> modelVersion) = 0;

    /// Fetches and stores a model; the record of what was stored. A failure is a record with a status other than success;
    /// null stops the program. `remoteModelMetaData` is never null.
    [[nodiscard]] virtual QXNativeModelMetaDataPtr
    downloadModel(const QString& modelName, const QXNativeModelMetaDataPtr& remoteModelMetaData) = 0;
};
