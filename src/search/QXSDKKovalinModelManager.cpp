#include "search/QXSDKKovalinModelManager.h"

#include "learned_search/generated-src/QXNativeModelCoordinator.h"
#include "learned_search/generated-src/QXNativeModelFileBuffer.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/PlatformException.h"
#include "search/QXSDKKovalinModelCacheExecutor.h"
#include "search/QXSDKKovalinModelUpdateExecutor.h"
#include "search/SearchLog.h"

#include <utility>

using namespace kovalin::platform;

QXSDKKovalinModelManager& QXSDKKovalinModelManager::shared()
{
    static auto& manager = *new QXSDKKovalinModelManager;
    return manager;
}

QXSDKKovalinModelManager::QXSDKKovalinModelManager()
    : _queue(QString::fromLatin1(kQXSDKKovalinModelManagerQueueName))
{
}

void QXSDKKovalinModelManager::loadModel(const QString& modelName, LoadCompletion completion)
{
    const auto coordinator = QXNativeModelCoordinator::modelCoordinatorInstance(
        std::make_shared<QXSDKKovalinModelCacheExecutor>(), std::make_shared<QXSDKKovalinModelUpdateExecutor>());
    _queue.async([coordinator, modelName, completion = std::move(completion)] {
        std::shared_ptr<QXNativeModelFileBuffer> buffer;
        try {
            const bool isUpdated = coordinator->updateLocalModel(modelName);
            KOVALIN_LOG_DEBUG(
                kovalinSearch,
                QStringLiteral("Local model %1 update status = %2").arg(modelName, QString::number(isUpdated ? 1 : 0)));
            buffer = coordinator->getModel(modelName);
        } catch (const PlatformException& exception) {
            KOVALIN_LOG_ERROR(kovalinSearch,
                              QStringLiteral("Model %1 can't be loaded: %2").arg(modelName, exception.reason()));
        }
        completion(buffer);
    });
}
