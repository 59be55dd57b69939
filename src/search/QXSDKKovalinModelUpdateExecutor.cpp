#include "search/QXSDKKovalinModelUpdateExecutor.h"

#include "kits/core/QXSDKClientSetup.h"
#include "platform/dispatch/DispatchSemaphore.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Clock.h"
#include "platform/foundation/Json.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/SharedSlot.h"
#include "platform/net/UrlSession.h"
#include "search/ModelFiles.h"
#include "search/SearchLog.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSaveFile>
#include <QtCore/QUrl>

#include <chrono>
#include <cmath>
#include <functional>
#include <limits>

using namespace kovalin::platform;

namespace {

constexpr std::chrono::seconds longestWait(10);
constexpr int httpOk = 200;

QString textOf(std::optional<std::int32_t> number)
{
    return number ? QString::number(*number) : QStringLiteral("(null)");
}

/// Asks for the address and gives what `read` makes of a usable answer, `result` where there is none in time. `read` is called
/// on the session's thread, with no data where the answer isn't usable, and also for an answer that comes too late.
template <typename Record>
std::shared_ptr<const Record>
askAndWait(const QString& address, std::shared_ptr<const Record> result,
           const std::function<std::shared_ptr<const Record>(const std::optional<QByteArray>& data)>& read)
{
    struct Answer {
        SharedSlot<const Record> record;
        DispatchSemaphore isThere;
    };
    const auto answer = std::make_shared<Answer>();
    answer->record.store(std::move(result));
    const auto task = UrlSession::shared().dataTask(
        {.url = QUrl(address)}, [answer, read](const QByteArray& data, const std::optional<UrlResponse>& response,
                                               const std::optional<UrlError>& error) {
            const bool isUsable = !error && response && response->statusCode == httpOk;
            if (auto record = read(isUsable ? std::optional(data) : std::nullopt)) {
                answer->record.store(std::move(record));
            }
            answer->isThere.signal();
        });
    task->resume();
    static_cast<void>(answer->isThere.wait(longestWait));
    return answer->record.load();
}

std::optional<std::int32_t> versionIn(const QJsonObject& object)
{
    using Limits = std::numeric_limits<std::int32_t>;
    const auto number = jsonNumber(object, u"modelVersion");
    if (!number || *number != std::floor(*number) || *number < Limits::min() || *number > Limits::max()) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(*number);
}

/// Null for what is no JSON.
QXNativeKovalinApiResponsePtr responseIn(const QByteArray& data)
{
    const auto document = QJsonDocument::fromJson(data);
    if (document.isNull()) {
        return nullptr;
    }
    const QJsonObject object = document.object();
    const bool shouldUpdate =
        jsonBool(object, u"shouldUpdate").value_or(jsonNumber(object, u"shouldUpdate").value_or(0) != 0);
    return QXNativeKovalinApiResponse::KovalinApiResponseWithShouldUpdate(shouldUpdate, jsonString(object, u"modelUrl"),
                                                                          versionIn(object));
}

/// Whole or not at all.
bool writeFile(const QByteArray& data, const QString& path)
{
    if (!QDir().mkpath(QFileInfo(path).path())) {
        return false;
    }
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit();
}

QXSDKKovalinOperationalMetricsLogger& metrics()
{
    return QXSDKKovalinOperationalMetricsLogger::shared();
}

} // namespace

QXNativeKovalinApiResponsePtr
QXSDKKovalinModelUpdateExecutor::getRemoteModelStatus(const QString& modelName,
                                                      std::optional<std::int32_t> modelVersion)
{
    auto noUpdate = QXNativeKovalinApiResponse::KovalinApiResponseWithShouldUpdate(false, std::nullopt, std::nullopt);
    if (isMainThread()) {
        KOVALIN_LOG_ERROR(kovalinSearch, QStringLiteral("Running on main thread, force failing.."));
        return noUpdate;
    }
    const double start = currentTimeSeconds();
    const QString address =
        QXSDKClientSetup::shared()->contentBaseUrl +
        QStringLiteral("/content/models/%1?client_cached_version=%2").arg(modelName, textOf(modelVersion));
    return askAndWait<QXNativeKovalinApiResponse>(
        address, std::move(noUpdate), [start](const std::optional<QByteArray>& data) {
            auto response = data ? responseIn(*data) : nullptr;
            if (!response) {
                metrics().addCount(1, QStringLiteral("model:status:failure"));
            }
            metrics().addLatencyFromTime(start, QStringLiteral("model:status"));
            return response;
        });
}

QXNativeModelMetaDataPtr
QXSDKKovalinModelUpdateExecutor::downloadModel(const QString& modelName,
                                               const QXNativeModelMetaDataPtr& remoteModelMetaData)
{
    const auto version = remoteModelMetaData->modelVersion();
    auto notDownloaded = QXNativeModelMetaData::ModelMetaDataWithModelUrl(remoteModelMetaData->modelUrl(), version,
                                                                          QXNativeStatusEnums::DOWNLOAD_FAILED);
    if (isMainThread()) {
        KOVALIN_LOG_ERROR(kovalinSearch, QStringLiteral("Running on main thread, force failing.."));
        return notDownloaded;
    }
    const double start = currentTimeSeconds();
    const QString address = remoteModelMetaData->modelUrl().value_or(QStringLiteral("(null)"));
    KOVALIN_LOG_DEBUG(kovalinSearch, QStringLiteral("Downloading model %1 ..").arg(address));
    auto stored = askAndWait<QXNativeModelMetaData>(
        address, std::move(notDownloaded), [start, modelName, version](const std::optional<QByteArray>& data) {
            QXNativeModelMetaDataPtr record;
            bool isWritten = false;
            if (data) {
                const QString path = _modelDiskPath(modelName, version);
                isWritten = writeFile(*data, path);
                record = QXNativeModelMetaData::ModelMetaDataWithModelUrl(
                    path, version, isWritten ? QXNativeStatusEnums::SUCCESS : QXNativeStatusEnums::FILE_FAILED);
            }
            const QString metric = QStringLiteral("model:download:") + modelName;
            metrics().addCount(1, metric + (isWritten ? QStringLiteral(":success") : QStringLiteral(":failure")));
            metrics().addLatencyFromTime(start, metric);
            return record;
        });
    KOVALIN_LOG_DEBUG(kovalinSearch,
                      QStringLiteral("Model %1 download status %2")
                          .arg(address, QString::number(static_cast<qint64>(remoteModelMetaData->statusCode()))));
    return stored;
}

QString QXSDKKovalinModelUpdateExecutor::_modelDiskPath(const QString& modelName,
                                                        std::optional<std::int32_t> modelVersion)
{
    return pathInCachesDirectory(
        QStringLiteral("qxsdk-kovalin-model-%1-%2.plist").arg(modelName, textOf(modelVersion)));
}
