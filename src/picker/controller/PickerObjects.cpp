#include "picker/controller/PickerObjects.h"

#include "content/QXSDKKovalinFriendState.h"
#include "picker/visibility/QXSDKKovalinViewVisibilityState.h"
#include "telemetry/QXSDKKovalinViewControllerLogger.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

PickerObjects PickerObjects::make(const QXSDKKovalinStickerPickerConfigPtr& config,
                                  const QXSDKKovalinViewManager::Sources& sources)
{
    PickerObjects made;
    made.config = config ? config : std::make_shared<QXSDKKovalinStickerPickerConfig>();
    made.sessionManager = std::make_shared<QXSDKKovalinStickerPickerSessionManager>();
    made.logger = QXSDKKovalinViewControllerLogger::create(made.sessionManager);
    made.friendState = QXSDKKovalinFriendState::create(*made.sessionManager);
    made.viewManager =
        QXSDKKovalinViewManager::create(made.sessionManager, made.friendState, made.logger, made.config, sources);
    made.visibilityState = QXSDKKovalinViewVisibilityState::create(made.viewManager, made.sessionManager);
    made.visibilityState->setDelegate(made.logger);
    return made;
}
