#pragma once

#include "kits/core/QXSDKClientSetup.h"
#include "picker/views/QXSDKKovalinMotion.h"
#include "qml/LoginWatch.h"

#include <QtCore/QObject>
#include <QtCore/QString>

#include <QtQml/qqmlregistration.h>

#include <utility>

/// Who the host is, where its servers are, and the user's login, for QML hosts: the process's `QXSDKClientSetup` and
/// `QXSDKLoginClient` as a singleton.
///
///     Component.onCompleted: {
///         KovalinClient.clientId = "my-app"
///         KovalinClient.apiBaseUrl = "https://api.example"
///         // … the other addresses
///         KovalinClient.installDefaultKits()
///     }
///
/// Main thread only. There is one for each engine, over what the process has once; they aren't told of each other's changes.
class KovalinClient : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString clientId READ clientId WRITE setClientId NOTIFY setupChanged)
    Q_PROPERTY(QString contentBaseUrl READ contentBaseUrl WRITE setContentBaseUrl NOTIFY setupChanged)
    Q_PROPERTY(
        QString authenticationBaseUrl READ authenticationBaseUrl WRITE setAuthenticationBaseUrl NOTIFY setupChanged)
    Q_PROPERTY(QString apiBaseUrl READ apiBaseUrl WRITE setApiBaseUrl NOTIFY setupChanged)
    Q_PROPERTY(QString avatarAppStoreUrl READ avatarAppStoreUrl WRITE setAvatarAppStoreUrl NOTIFY setupChanged)
    Q_PROPERTY(bool isAnalyticsEnabled READ isAnalyticsEnabled WRITE setAnalyticsEnabled NOTIFY setupChanged)
    /// Whether views move as little as they can; see `QXSDKKovalinSetReducedMotion`.
    Q_PROPERTY(bool isMotionReduced READ isMotionReduced WRITE setMotionReduced NOTIFY motionChanged)
    /// Whether an account is linked.
    Q_PROPERTY(bool isLoggedIn READ isLoggedIn NOTIFY isLoggedInChanged)

public:
    explicit KovalinClient(QObject* parent = nullptr);

    // The setup; see `QXSDKClientSetup`.

    [[nodiscard]] QString clientId() const { return QXSDKClientSetup::shared()->clientId; }
    void setClientId(const QString& id) { change(&QXSDKClientSetup::clientId, id); }
    [[nodiscard]] QString contentBaseUrl() const { return QXSDKClientSetup::shared()->contentBaseUrl; }
    void setContentBaseUrl(const QString& url) { change(&QXSDKClientSetup::contentBaseUrl, url); }
    [[nodiscard]] QString authenticationBaseUrl() const { return QXSDKClientSetup::shared()->authenticationBaseUrl; }
    void setAuthenticationBaseUrl(const QString& url) { change(&QXSDKClientSetup::authenticationBaseUrl, url); }
    [[nodiscard]] QString apiBaseUrl() const { return QXSDKClientSetup::shared()->apiBaseUrl; }
    void setApiBaseUrl(const QString& url) { change(&QXSDKClientSetup::apiBaseUrl, url); }
    [[nodiscard]] QString avatarAppStoreUrl() const { return QXSDKClientSetup::shared()->avatarAppStoreUrl; }
    void setAvatarAppStoreUrl(const QString& url) { change(&QXSDKClientSetup::avatarAppStoreUrl, url); }
    [[nodiscard]] bool isAnalyticsEnabled() const { return QXSDKClientSetup::shared()->isAnalyticsEnabled; }
    void setAnalyticsEnabled(bool isEnabled) { change(&QXSDKClientSetup::isAnalyticsEnabled, isEnabled); }

    [[nodiscard]] bool isMotionReduced() const { return QXSDKKovalinIsMotionReduced(); }
    void setMotionReduced(bool isReduced);

    /// Installs the kits that come with the library: dynamic configurations, metrics and analytics over HTTP, and logins by OAuth. To
    /// be called once the setup is complete; they take the place of what is installed. Nothing from the second time on, in the
    /// process. A host whose C++ installs its own doesn't call it.
    Q_INVOKABLE void installDefaultKits();

    [[nodiscard]] bool isLoggedIn() const;
    /// Asks the user for an account, in the system's browser with the kit's login. Ends in one `loginFinished`.
    Q_INVOKABLE void login();
    /// Takes the account's link away.
    Q_INVOKABLE void logout();

Q_SIGNALS:
    void setupChanged();
    void motionChanged();
    void isLoggedInChanged();
    /// `error` is empty where an account was linked.
    void loginFinished(bool isLinked, const QString& error);

private:
    template <class T>
    void change(T QXSDKClientSetup::*member, const T& value)
    {
        QXSDKClientSetup setup = *QXSDKClientSetup::shared();
        if (setup.*member != value) {
            setup.*member = value;
            QXSDKClientSetup::setShared(std::move(setup));
            Q_EMIT setupChanged();
        }
    }
    void tellLoggedIn();

    bool _toldLoggedIn = false;
    const LoginWatch _login;
};
