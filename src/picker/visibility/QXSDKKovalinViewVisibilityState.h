#pragma once

#include "picker/manager/QXSDKKovalinViewManagerObserver.h"
#include "picker/visibility/QXSDKKovalinStickerPickerContainerView.h"
#include "telemetry/QXSDKKovalinViewVisibilityStateDelegate.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManagerObserver.h"

#include <QtCore/QtGlobal>

#include <memory>

class QXSDKKovalinStickerPickerSessionManager;
class QXSDKKovalinViewManager;

/// Starts and ends a picker's sessions by whether a person can see it: its controller says that it is on screen, its container
/// is shown, and the application is active. Tells of the first view that is seen in each span of a session.
///
/// Main thread only. Held weakly by what it observes.
class QXSDKKovalinViewVisibilityState final : public QXSDKKovalinViewManagerObserver,
                                              public QXSDKKovalinStickerPickerSessionManagerObserver,
                                              public QXSDKKovalinStickerPickerContainerViewDelegate,
                                              public std::enable_shared_from_this<QXSDKKovalinViewVisibilityState> {
public:
    /// Told of both from here on; neither is null.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinViewVisibilityState>
    create(const std::shared_ptr<QXSDKKovalinViewManager>& viewManager,
           const std::shared_ptr<QXSDKKovalinStickerPickerSessionManager>& sessionManager);
    ~QXSDKKovalinViewVisibilityState() override;
    Q_DISABLE_COPY_MOVE(QXSDKKovalinViewVisibilityState)

    /// Held weakly.
    void setDelegate(const std::weak_ptr<QXSDKKovalinViewVisibilityStateDelegate>& delegate);
    /// Held weakly; becomes its delegate. Nothing, if it is the present one.
    void setContainerView(const std::shared_ptr<QXSDKKovalinStickerPickerContainerView>& containerView);

    [[nodiscard]] bool isVisible() const;

    // From the controller.

    void viewWillAppear();
    void viewWillDisappear();

    // From what it observes.

    void containerViewVisibilityDidChange(bool isShown) override;
    void currentViewChanged(QXSDKKovalinViewProtocol* view) override;
    void sessionDidStart() override;
    void sessionDidEnd() override;

private:
    struct State;

    explicit QXSDKKovalinViewVisibilityState(std::unique_ptr<State> state);

    void _updateSessionState();
    void _applicationDidBecomeActive();
    void _applicationWillResignActive();
    void setIsAnyViewPresent(bool isAnyViewPresent);

    const std::unique_ptr<State> _visibility;
};
