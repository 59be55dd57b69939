#include "qml/KovalinClient.h"

#include "kits/core/QXSDKTopViewController.h"
#include "kits/core/default/QXSDKHttpAnalyticsEventsQueue.h"
#include "kits/core/default/QXSDKHttpDynamicConfigManager.h"
#include "kits/core/default/QXSDKHttpOperationalMetricsQueue.h"
#include "kits/login/QXSDKLoginClient.h"
#include "kits/login/default/QXSDKOAuthLoginClient.h"

#include <QtCore/QPointer>

#include <memory>
#include <optional>
#include <utility>

namespace {

QString textOf(const QXSDKError& error)
{
    return error.reason.isEmpty() ? error.description : QStringLiteral("%1: %2").arg(error.description, error.reason);
}

} // namespace

KovalinClient::KovalinClient(QObject* parent)
    : QObject(parent)
    , _toldLoggedIn(isLoggedIn())
    , _login([this] { tellLoggedIn(); })
{
}

void KovalinClient::installDefaultKits()
{
    static bool isInstalled = false;
    if (std::exchange(isInstalled, true)) {
        return;
    }
    QXSDKDynamicConfigManager::setShared(std::make_shared<QXSDKHttpDynamicConfigManager>());
    QXSDKOperationalMetricsQueue::setSharedInstance(std::make_shared<QXSDKHttpOperationalMetricsQueue>());
    QXSDKAnalyticsEventsQueue::setSharedInstance(std::make_shared<QXSDKHttpAnalyticsEventsQueue>());
    QXSDKLoginClient::setShared(std::make_shared<QXSDKOAuthLoginClient>());
    tellLoggedIn();
}

void KovalinClient::setMotionReduced(bool isReduced)
{
    if (isReduced != isMotionReduced()) {
        QXSDKKovalinSetReducedMotion(isReduced);
        Q_EMIT motionChanged();
    }
}

bool KovalinClient::isLoggedIn() const
{
    return QXSDKLoginClient::shared()->isUserLoggedIn();
}

void KovalinClient::login()
{
    QXSDKLoginClient::shared()->loginFromViewController(
        topViewController(), [self = QPointer(this)](const std::optional<QXSDKError>& error) {
            if (self) {
                Q_EMIT self->loginFinished(!error, error ? textOf(*error) : QString());
            }
        });
}

void KovalinClient::logout()
{
    QXSDKLoginClient::shared()->unlink();
}

void KovalinClient::tellLoggedIn()
{
    const bool isNow = isLoggedIn();
    if (std::exchange(_toldLoggedIn, isNow) != isNow) {
        Q_EMIT isLoggedInChanged();
    }
}
