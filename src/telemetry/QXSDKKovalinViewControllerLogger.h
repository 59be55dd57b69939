#pragma once

#include "telemetry/QXSDKKovalinAnalyticsEventLogger.h"
#include "telemetry/QXSDKKovalinViewVisibilityStateDelegate.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManagerObserver.h"

#include <memory>

class QXSDKKovalinOperationalMetricsLogger;

/// What a picker tells of itself: its events, its counts, flushed where sessions begin and end, and how long its start
/// took as a person perceives it, at most once in its life. One for each picker.
///
/// Main thread only. All operations tell at once. Held weakly by what it observes, the session manager and the login.
class QXSDKKovalinViewControllerLogger final : public QXSDKKovalinStickerPickerSessionManagerObserver,
                                               public QXSDKKovalinViewVisibilityStateDelegate {
public:
    /// A logger that is told of the manager's sessions, and of the account's links and unlinks. The manager isn't null,
    /// and lives on for as long as the logger does.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinViewControllerLogger>
    create(const std::shared_ptr<QXSDKKovalinStickerPickerSessionManager>& sessionManager);
    ~QXSDKKovalinViewControllerLogger() override;
    Q_DISABLE_COPY_MOVE(QXSDKKovalinViewControllerLogger)

    /// When the picker began to load, in seconds since 1970; 0 until it is set. Only a positive one starts
    /// measurements.
    [[nodiscard]] double coldStartTime() const;
    void setColdStartTime(double coldStartTime);

    /// The picker's view was loaded.
    void logStickerPickerMount();

    /// A content view drew its first sticker. `startTime` is when that view began, in seconds since 1970.
    void logFirstRender(double startTime);

    /// A sticker was chosen, after these searches, of which there may be none.
    void logSearchAndShare(const KovalinSticker& sticker, QXSDKKovalinCategory category,
                           const QXSDKKovalinSearchTermList& searchSequence);

    // Passed on to the events as they are, see QXSDKKovalinAnalyticsEventLogger.

    void logSearch(const QXSDKKovalinSearchTermList& searchTerms);
    void logPreviewIconChange(const KovalinStickerPtr& sticker);
    void logHearthLinkTap();
    void logCreateAvatarTap();
    void logPermissionUpdateWithStatus(qint32 status);

    // Visibility. A resumed session tells again.

    void firstViewBecameVisible(qint32 viewType, const KovalinStickerPtr& previewIconSticker,
                                const QXSDKKovalinStickerPickerConfig& config) override;

    // Sessions.

    void sessionDidStart() override;
    void sessionDidEnd() override;

private:
    explicit QXSDKKovalinViewControllerLogger(
        std::shared_ptr<const QXSDKKovalinStickerPickerSessionManager> sessionManager);

    void _loginStateChanged();

    const QXSDKKovalinAnalyticsEventLogger _eventLogger;
    QXSDKKovalinOperationalMetricsLogger& _metricsLogger;
    bool _isPerceivedOpenLogged = false;
    bool _isFirstRenderLogged = false;
    bool _wasStartedAsStickerPicker = false; // the first visible view was the content view
    double _coldStartTime = 0.0;
};
