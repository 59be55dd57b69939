#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "kits/core/QXSDKError.h"
#include "kits/login/QXSDKLoginStatusObserver.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <functional>
#include <memory>
#include <optional>

QT_FORWARD_DECLARE_CLASS(QObject)

/// Posted on the kits' notification centre, on the main thread, whenever an account was linked or unlinked, after the status
/// observers were told.
inline const QString kQXSDKLoginClientStateChangeNotification =
    QStringLiteral("kQXSDKLoginClientStateChangeNotification");

/// Posted there when a login begins.
inline const QString kQXSDKLoginClientLoginStartNotification =
    QStringLiteral("kQXSDKLoginClientLoginStartNotification");

/// The link to the user's account: who is logged in, what was granted, and queries in the user's name.
///
/// A host installs an implementation of its own, or the one that comes with the kit. Any thread, but for the login itself.
class QXSDKKOVALINKIT_EXPORT QXSDKLoginClient {
public:
    /// `response` is the answer's document, with its "data" and "errors".
    using Success = std::function<void(const QJsonObject& response)>;
    /// `isLoggedOut` tells that the account's link is gone.
    using Failure = std::function<void(const QXSDKError& error, bool isLoggedOut)>;
    /// `error` is absent where the account was linked.
    using LoginCompletion = std::function<void(const std::optional<QXSDKError>& error)>;

    virtual ~QXSDKLoginClient();

    /// Whether an account is linked.
    [[nodiscard]] virtual bool isUserLoggedIn() const = 0;

    /// Whether the linked account granted the scope; false without an account.
    [[nodiscard]] virtual bool hasAccessToScope(const QString& scope) const = 0;

    /// Sends a GraphQL document with its variables, if there are any, and the user's credentials. One of the callbacks is
    /// called, exactly once, on any thread, perhaps before this returns.
    virtual void fetchUserDataWithQuery(const QString& query, const std::optional<QJsonObject>& variables,
                                        Success success, Failure failure) = 0;

    /// Main thread. Starts a login, which an earlier one still under way gives way to: the user is asked for the account and
    /// for what it grants. `viewController` is what the login is asked for in, and may be null. The completion, which may be
    /// empty, is called exactly once, on the main thread, after the status observers.
    virtual void loginFromViewController(QObject* viewController, LoginCompletion completion) = 0;

    /// Main thread. Takes the link away; nothing where there is none.
    virtual void unlink() = 0;

    /// The client that is installed for the process; never null. Before one is installed, it is one that has no account and
    /// can't get one. Any thread.
    [[nodiscard]] static std::shared_ptr<QXSDKLoginClient> shared();

    /// Installs a client; null takes it away. Status observers stay. Any thread.
    static void setShared(std::shared_ptr<QXSDKLoginClient> client);

    /// The observers of the process, whichever client is installed. Held weakly. Any thread.
    static void addLoginStatusObserver(const std::shared_ptr<QXSDKLoginStatusObserver>& observer);
    static void removeLoginStatusObserver(const QXSDKLoginStatusObserver* observer);

protected:
    // For implementations, after their own state has changed: tell the observers and post the notifications, in a later turn
    // of the main thread's event loop and in the order of the calls. `then`, which may be empty, runs behind them.

    static void tellLoginStarted();
    static void tellLinkSucceeded(std::function<void()> then = {});
    static void tellLinkFailed(std::function<void()> then = {});
    static void tellUnlinked(std::function<void()> then = {});
};
