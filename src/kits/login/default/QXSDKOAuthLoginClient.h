#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "kits/login/QXSDKLoginClient.h"
#include "kits/login/default/QXSDKTokenStore.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

#include <chrono>
#include <functional>
#include <memory>

/// What a host or a test can replace of the login. All functions are called on the main thread.
struct QXSDKKOVALINKIT_EXPORT QXSDKOAuthLoginOptions {
    /// Cancels the timer when the last reference goes, which is on the main thread.
    using Timer = std::shared_ptr<void>;

    /// What the account is asked to grant. Empty: the one scope that the library needs.
    QStringList scopes = {};

    /// Shows the page to the user and returns at once; false where that isn't possible. Empty: the system's browser.
    std::function<bool(const QUrl& url)> openUrl = {};

    /// Calls `due` once, from the main thread's event loop, after `delay`. Empty: a timer of the event loop.
    std::function<Timer(std::chrono::milliseconds delay, std::function<void()> due)> startTimer = {};

    /// A request fails when for so long no byte has gone or come.
    std::chrono::milliseconds requestTimeout = std::chrono::seconds(60);

    /// Where the link is kept for the next run. Null: the system's keychain.
    std::shared_ptr<QXSDKTokenStore> tokenStore = {};
};

/// Links accounts by OAuth 2.0: authorization code flow with PKCE, in the system's browser, with a redirect to 127.0.0.1.
/// Client id and addresses are those of `QXSDKClientSetup` at each use.
///
/// Any thread but for `loginFromViewController` and `unlink`, on which any other thread but the main one is a clean stop.
///
/// - Kept link: the constructor starts reading it, and the account is linked once it is there; observers are told then as after
///   a login. A login or an unlink that comes first prevails. Where the keychain keeps nothing, a link lasts as long as this
///   object.
/// - Login: gives up on an earlier one still under way, and after 10 minutes. A new link replaces the old one and what it
///   granted; queries under way are sent again in its name. A failure keeps what was linked. Errors have the status of the
///   authentication service's answer, 403 where the user refused, 500 for an answer that can't be read, 0 for everything else.
/// - Queries: a POST of JSON to "/graphql" below `apiBaseUrl`. An access token that has run out, or that is answered with 401,
///   is replaced first, once a query and for all queries at the same time. Where the server refuses to, the link ends. Failures:
///   0 where there is no answer or one of more than 32 MiB, the status of an answer but 200, 500 for one that is no JSON object, and the error for a user
///   who isn't logged in, with true, where the account's link has ended meanwhile: no answer for it is given out then.
/// - Callbacks of queries run on a queue of this object, one at a time, and shouldn't block. Where the application object goes first,
///   they and login completions run where their work is dropped, and observers hear no more.
/// - Unlink: `isUserLoggedIn` is false at once. The token is revoked at the server, as far as that can be reached, and
///   removed from the store. A login under way is given up.
///
/// Lifetime: may go on any thread at any time. What is under way ends with an error, each callback being called once all the
/// same; what is linked stays in the store.
class QXSDKKOVALINKIT_EXPORT QXSDKOAuthLoginClient final : public QXSDKLoginClient {
public:
    explicit QXSDKOAuthLoginClient(QXSDKOAuthLoginOptions options = {});
    ~QXSDKOAuthLoginClient() override;
    QXSDKOAuthLoginClient(const QXSDKOAuthLoginClient&) = delete;
    QXSDKOAuthLoginClient& operator=(const QXSDKOAuthLoginClient&) = delete;

    [[nodiscard]] bool isUserLoggedIn() const override;
    [[nodiscard]] bool hasAccessToScope(const QString& scope) const override;
    void fetchUserDataWithQuery(const QString& query, const std::optional<QJsonObject>& variables, Success success,
                                Failure failure) override;
    void loginFromViewController(QObject* viewController, LoginCompletion completion) override;
    void unlink() override;

private:
    class State;

    const std::shared_ptr<State> _state;
};
