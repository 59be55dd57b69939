#pragma once

#include "learned_search/generated-src/QXNativeModelCacheExecutor.h"
#include "learned_search/generated-src/QXNativeModelUpdateExecutor.h"

#include <QtCore/QStringList>

#include <functional>
#include <optional>

namespace kovalin::test {

inline QXNativeModelMetaDataPtr record(const std::optional<QString>& url, std::optional<std::int32_t> version,
                                       QXNativeStatusEnums status = QXNativeStatusEnums::SUCCESS)
{
    return QXNativeModelMetaData::ModelMetaDataWithModelUrl(url, version, status);
}

/// Answers with what it was given, and keeps what it was asked.
class ScriptedCacheExecutor final : public QXNativeModelCacheExecutor {
public:
    QXNativeModelMetaDataPtr cached = record(std::nullopt, std::nullopt, QXNativeStatusEnums::FILE_FAILED);
    bool written = true;
    std::function<void()> before; // called first of all

    QStringList names;
    QXNativeModelMetaDataPtr stored;

    QXNativeModelMetaDataPtr getCachedModelMetaData(const QString& modelName) override
    {
        if (before) {
            before();
        }
        names.append(modelName);
        return cached;
    }

    bool setCachedModelMetaData(const QString& modelName, const QXNativeModelMetaDataPtr& modelData) override
    {
        names.append(modelName);
        stored = modelData;
        return written;
    }
};

/// The same for the server.
class ScriptedUpdateExecutor final : public QXNativeModelUpdateExecutor {
public:
    QXNativeKovalinApiResponsePtr response;
    QXNativeModelMetaDataPtr downloaded = record(std::nullopt, std::nullopt, QXNativeStatusEnums::DOWNLOAD_FAILED);
    std::function<void()> before; // called first of all

    QStringList names;
    std::optional<std::optional<std::int32_t>> askedVersion; // absent until asked
    QXNativeModelMetaDataPtr remote;

    QXNativeKovalinApiResponsePtr getRemoteModelStatus(const QString& modelName,
                                                       std::optional<std::int32_t> modelVersion) override
    {
        if (before) {
            before();
        }
        names.append(modelName);
        askedVersion = modelVersion;
        return response;
    }

    QXNativeModelMetaDataPtr downloadModel(const QString& modelName,
                                           const QXNativeModelMetaDataPtr& remoteModelMetaData) override
    {
        names.append(modelName);
        remote = remoteModelMetaData;
        return downloaded;
    }
};

} // namespace kovalin::test
