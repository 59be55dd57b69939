#include "picker/visibility/QXSDKKovalinViewVisibilityState.h"

#include "kits/login/QXSDKLoginClient.h"
#include "picker/icon/QXSDKKovalinIconView.h"
#include "picker/manager/QXSDKKovalinViewManager.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Application.h"
#include "platform/foundation/NotificationCenter.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <optional>
#include <utility>

using namespace kovalin::platform;

namespace {

/// Of the icon that was attached first; null without one.
KovalinStickerPtr previewSticker(WeakSet<QXSDKKovalinIconView>& icons)
{
    std::optional<KovalinStickerPtr> sticker;
    icons.forEach([&sticker](const QXSDKKovalinIconView& icon) {
        if (!sticker) {
            sticker = icon.sticker();
        }
    });
    return sticker.value_or(nullptr);
}

} // namespace

struct QXSDKKovalinViewVisibilityState::State {
    State(const std::shared_ptr<QXSDKKovalinViewManager>& itsViewManager,
          const std::shared_ptr<QXSDKKovalinStickerPickerSessionManager>& itsSessionManager)
        : viewManager(itsViewManager)
        , sessionManager(itsSessionManager)
    {
    }

    const std::shared_ptr<QXSDKKovalinViewManager> viewManager;
    const std::shared_ptr<QXSDKKovalinStickerPickerSessionManager> sessionManager;
    bool didViewAppear = false;
    bool isAnyViewPresent = false; // since the session began, or was resumed
    std::weak_ptr<QXSDKKovalinViewVisibilityStateDelegate> delegate;
    std::weak_ptr<QXSDKKovalinStickerPickerContainerView> containerView;
};

std::shared_ptr<QXSDKKovalinViewVisibilityState>
QXSDKKovalinViewVisibilityState::create(const std::shared_ptr<QXSDKKovalinViewManager>& viewManager,
                                        const std::shared_ptr<QXSDKKovalinStickerPickerSessionManager>& sessionManager)
{
    const std::shared_ptr<QXSDKKovalinViewVisibilityState> made(
        new QXSDKKovalinViewVisibilityState(std::make_unique<State>(viewManager, sessionManager)));
    viewManager->registerWeakObserver(made);
    sessionManager->registerWeakObserver(made);
    return made;
}

QXSDKKovalinViewVisibilityState::QXSDKKovalinViewVisibilityState(std::unique_ptr<State> state)
    : _visibility(std::move(state))
{
}

QXSDKKovalinViewVisibilityState::~QXSDKKovalinViewVisibilityState() = default;

void QXSDKKovalinViewVisibilityState::setDelegate(
    const std::weak_ptr<QXSDKKovalinViewVisibilityStateDelegate>& delegate)
{
    assertOnMainThread();
    _visibility->delegate = delegate;
}

void QXSDKKovalinViewVisibilityState::setContainerView(
    const std::shared_ptr<QXSDKKovalinStickerPickerContainerView>& containerView)
{
    assertOnMainThread();
    if (containerView == _visibility->containerView.lock()) {
        return;
    }
    _visibility->containerView = containerView;
    if (containerView) {
        containerView->setDelegate(weak_from_this());
    }
}

bool QXSDKKovalinViewVisibilityState::isVisible() const
{
    const auto containerView = _visibility->containerView.lock();
    return Application::state() == ApplicationState::Active && containerView && containerView->isShown() &&
           _visibility->didViewAppear;
}

// Sessions

/// What is told of a session may let this go, or change what it begins or ends with: callers hold this, and read anew.
void QXSDKKovalinViewVisibilityState::_updateSessionState()
{
    QXSDKKovalinStickerPickerSessionManager& sessionManager = *_visibility->sessionManager;
    const bool isNowVisible = isVisible();
    if (isNowVisible == sessionManager.isActive()) {
        return;
    }
    if (isNowVisible) {
        sessionManager.didBecomeActive();
    } else {
        sessionManager.willResignActive();
    }
}

void QXSDKKovalinViewVisibilityState::viewWillAppear()
{
    assertOnMainThread();
    const auto self = shared_from_this();
    _visibility->didViewAppear = true;
    _updateSessionState();
    // Once, also if the controller says twice that it appears, or by now that it disappears.
    auto& center = NotificationCenter::defaultCenter();
    center.removeObserver(self);
    if (_visibility->didViewAppear) {
        center.addObserver(self, &QXSDKKovalinViewVisibilityState::_applicationDidBecomeActive,
                           UIApplicationDidBecomeActiveNotification);
        center.addObserver(self, &QXSDKKovalinViewVisibilityState::_applicationWillResignActive,
                           UIApplicationWillResignActiveNotification);
    }
}

void QXSDKKovalinViewVisibilityState::viewWillDisappear()
{
    assertOnMainThread();
    const auto self = shared_from_this();
    _visibility->didViewAppear = false;
    _updateSessionState();
    if (!_visibility->didViewAppear) {
        NotificationCenter::defaultCenter().removeObserver(self);
    }
}

void QXSDKKovalinViewVisibilityState::_applicationDidBecomeActive()
{
    if (QXSDKLoginClient::shared()->isUserLoggedIn()) {
        _visibility->viewManager->update();
    }
    _updateSessionState();
}

void QXSDKKovalinViewVisibilityState::_applicationWillResignActive()
{
    if (_visibility->sessionManager->isActive()) {
        _visibility->sessionManager->willResignActive();
    }
}

void QXSDKKovalinViewVisibilityState::containerViewVisibilityDidChange(bool /*isShown*/)
{
    _updateSessionState();
}

// The first view

void QXSDKKovalinViewVisibilityState::currentViewChanged(QXSDKKovalinViewProtocol* /*view*/)
{
    if (isVisible()) {
        setIsAnyViewPresent(true);
    }
}

void QXSDKKovalinViewVisibilityState::sessionDidStart()
{
    if (_visibility->viewManager->currentView()) {
        setIsAnyViewPresent(true);
    }
}

void QXSDKKovalinViewVisibilityState::sessionDidEnd()
{
    setIsAnyViewPresent(false);
}

void QXSDKKovalinViewVisibilityState::setIsAnyViewPresent(bool isAnyViewPresent)
{
    const bool wasAnyViewPresent = std::exchange(_visibility->isAnyViewPresent, isAnyViewPresent);
    QXSDKKovalinViewManager& viewManager = *_visibility->viewManager;
    const QXSDKKovalinViewProtocol* const view = viewManager.currentView();
    if (wasAnyViewPresent || !isAnyViewPresent || !_visibility->sessionManager->isActive() || !view) {
        return;
    }
    if (const auto delegate = _visibility->delegate.lock()) {
        delegate->firstViewBecameVisible(view->type(), previewSticker(viewManager.kovalinIcons()),
                                         *viewManager.config());
    }
}
