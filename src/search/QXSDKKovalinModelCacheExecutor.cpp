#include "search/QXSDKKovalinModelCacheExecutor.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/KeyedArchiver.h"
#include "platform/foundation/KeyedUnarchiver.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/PlatformException.h"
#include "search/ModelFiles.h"
#include "search/SearchLog.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

using namespace kovalin::platform;

QXNativeModelMetaDataPtr QXSDKKovalinModelCacheExecutor::getCachedModelMetaData(const QString& modelName)
{
    if (isMainThread()) {
        KOVALIN_LOG_ERROR(kovalinSearch, QStringLiteral("Running on main thread, force failing.."));
        return _failedModelMetadata(QXNativeStatusEnums::MAIN_THREAD_REFUSED);
    }
    KOVALIN_LOG_DEBUG(kovalinSearch, QStringLiteral("Reading model metadata %1 from disk...").arg(modelName));
    const QString path = _metadataArchivePath(modelName);
    try {
        const auto record = KeyedUnarchiver::unarchiveObjectWithFile<QXNativeModelMetaData>(path);
        if (_validateModelMetaData(record)) {
            return record;
        }
    } catch (const PlatformException&) {
        KOVALIN_LOG_DEBUG(kovalinSearch, QStringLiteral("Could not read model metadata %1 from disk!").arg(modelName));
        QFile::remove(path);
    }
    return _failedModelMetadata(QXNativeStatusEnums::FILE_FAILED);
}

bool QXSDKKovalinModelCacheExecutor::setCachedModelMetaData(const QString& modelName,
                                                            const QXNativeModelMetaDataPtr& modelData)
{
    if (isMainThread()) {
        KOVALIN_LOG_ERROR(kovalinSearch, QStringLiteral("Running on main thread, force failing.."));
        return false;
    }
    KOVALIN_LOG_DEBUG(kovalinSearch, QStringLiteral("Saving model metadata %1 to disk...").arg(modelName));
    return KeyedArchiver::archiveRootObject(*modelData, _metadataArchivePath(modelName));
}

QString QXSDKKovalinModelCacheExecutor::_metadataArchivePath(const QString& modelName)
{
    return pathInCachesDirectory(QStringLiteral("qxsdk-kovalin-model-metadata-%1.plist").arg(modelName));
}

bool QXSDKKovalinModelCacheExecutor::_validateModelMetaData(const QXNativeModelMetaDataPtr& modelData)
{
    return modelData && modelData->modelUrl() && QFileInfo::exists(*modelData->modelUrl()) &&
           modelData->modelVersion().value_or(0) > 0;
}

QXNativeModelMetaDataPtr QXSDKKovalinModelCacheExecutor::_failedModelMetadata(QXNativeStatusEnums status)
{
    return QXNativeModelMetaData::ModelMetaDataWithModelUrl(QString(QLatin1String("")), -1, status);
}
