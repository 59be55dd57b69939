#pragma once

#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/manager/QXSDKKovalinViewManager.h"

#include <memory>

class QXSDKKovalinFriendState;
class QXSDKKovalinStickerPickerSessionManager;
class QXSDKKovalinStickerPickerViewController;
class QXSDKKovalinViewControllerLogger;
class QXSDKKovalinViewVisibilityState;

/// What belongs to one picker beside its view: one of each, none null, in the order in which they are made. Main thread only.
struct PickerObjects {
    QXSDKKovalinStickerPickerConfigPtr config;
    std::shared_ptr<QXSDKKovalinStickerPickerSessionManager> sessionManager;
    std::shared_ptr<QXSDKKovalinViewControllerLogger> logger;
    std::shared_ptr<QXSDKKovalinFriendState> friendState;
    std::shared_ptr<QXSDKKovalinViewManager> viewManager;
    std::shared_ptr<QXSDKKovalinViewVisibilityState> visibilityState;

    /// New ones that know each other; with the default configuration for null.
    [[nodiscard]] static PickerObjects
    make(const QXSDKKovalinStickerPickerConfigPtr& config,
         const QXSDKKovalinViewManager::Sources& sources = QXSDKKovalinViewManager::Sources::shared());

    /// A picker of these. At most one.
    [[nodiscard]] std::shared_ptr<QXSDKKovalinStickerPickerViewController> makeController() const;
};
