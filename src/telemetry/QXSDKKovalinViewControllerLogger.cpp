#include "telemetry/QXSDKKovalinViewControllerLogger.h"

#include "kits/login/QXSDKLoginClient.h"
#include "picker/config/QXSDKKovalinViewType.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/NotificationCenter.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"
#include "telemetry/base/TelemetryLog.h"

#include <utility>

using namespace kovalin::platform;

std::shared_ptr<QXSDKKovalinViewControllerLogger>
QXSDKKovalinViewControllerLogger::create(const std::shared_ptr<QXSDKKovalinStickerPickerSessionManager>& sessionManager)
{
    const std::shared_ptr<QXSDKKovalinViewControllerLogger> logger(
        new QXSDKKovalinViewControllerLogger(sessionManager));
    sessionManager->registerWeakObserver(logger);
    NotificationCenter::qxsdkCenter().addObserver(logger, &QXSDKKovalinViewControllerLogger::_loginStateChanged,
                                                  kQXSDKLoginClientStateChangeNotification);
    return logger;
}

QXSDKKovalinViewControllerLogger::QXSDKKovalinViewControllerLogger(
    std::shared_ptr<const QXSDKKovalinStickerPickerSessionManager> sessionManager)
    : _eventLogger(std::move(sessionManager))
    , _metricsLogger(QXSDKKovalinOperationalMetricsLogger::shared())
{
}

QXSDKKovalinViewControllerLogger::~QXSDKKovalinViewControllerLogger() = default;

double QXSDKKovalinViewControllerLogger::coldStartTime() const
{
    return _coldStartTime;
}

void QXSDKKovalinViewControllerLogger::setColdStartTime(double coldStartTime)
{
    _coldStartTime = coldStartTime;
}

void QXSDKKovalinViewControllerLogger::logStickerPickerMount()
{
    _eventLogger.logStickerPickerMount();
}

void QXSDKKovalinViewControllerLogger::logFirstRender(double startTime)
{
    if (_wasStartedAsStickerPicker && _coldStartTime > 0.0 && !_isFirstRenderLogged) {
        _metricsLogger.addLatencyFromTime(_coldStartTime, QStringLiteral("perceived:first_render"));
        _isFirstRenderLogged = true;
    }
    _metricsLogger.addLatencyFromTime(startTime, QStringLiteral("perceived:first_render_grid"));
}

void QXSDKKovalinViewControllerLogger::logSearchAndShare(const KovalinSticker& sticker, QXSDKKovalinCategory category,
                                                         const QXSDKKovalinSearchTermList& searchSequence)
{
    if (!searchSequence.isEmpty()) {
        _eventLogger.logSearch(searchSequence);
    }
    _eventLogger.logShare(sticker, category);
    _metricsLogger.addCount(1, QStringLiteral("picker:share"));
}

void QXSDKKovalinViewControllerLogger::logSearch(const QXSDKKovalinSearchTermList& searchTerms)
{
    _eventLogger.logSearch(searchTerms);
}

void QXSDKKovalinViewControllerLogger::logPreviewIconChange(const KovalinStickerPtr& sticker)
{
    _eventLogger.logPreviewIconChange(sticker);
}

void QXSDKKovalinViewControllerLogger::logHearthLinkTap()
{
    _eventLogger.logHearthLinkTap();
}

void QXSDKKovalinViewControllerLogger::logCreateAvatarTap()
{
    _eventLogger.logCreateAvatarTap();
}

void QXSDKKovalinViewControllerLogger::logPermissionUpdateWithStatus(qint32 status)
{
    _eventLogger.logPermissionUpdateWithStatus(status);
}

void QXSDKKovalinViewControllerLogger::firstViewBecameVisible(qint32 viewType,
                                                              const KovalinStickerPtr& previewIconSticker,
                                                              const QXSDKKovalinStickerPickerConfig& config)
{
    const bool isStickerView = viewType == QXSDKKovalinViewTypeContent;
    _eventLogger.logStickerPickerOpen(viewType, previewIconSticker, config);
    if (_coldStartTime > 0.0 && !_isPerceivedOpenLogged) {
        _metricsLogger.addLatencyFromTime(_coldStartTime, QStringLiteral("perceived:open"));
        _isPerceivedOpenLogged = true;
        _wasStartedAsStickerPicker = isStickerView;
    }
    if (isStickerView) {
        _metricsLogger.addCount(1, QStringLiteral("picker:open"));
    }
    KOVALIN_LOG_DEBUG(kovalinTelemetry, QStringLiteral("Showed view of type ") + QString::number(viewType));
}

void QXSDKKovalinViewControllerLogger::sessionDidStart()
{
    _metricsLogger.pushToQueue();
}

void QXSDKKovalinViewControllerLogger::sessionDidEnd()
{
    _eventLogger.logStickerPickerClose();
    if (!_isPerceivedOpenLogged) {
        _metricsLogger.addCount(1, QStringLiteral("perceived:open:failure"));
    }
    _metricsLogger.pushToQueue();
}

/// Any change that leaves an account linked counts as a success.
void QXSDKKovalinViewControllerLogger::_loginStateChanged()
{
    if (QXSDKLoginClient::shared()->isUserLoggedIn()) {
        _eventLogger.logHearthLinkSuccess();
    }
}
