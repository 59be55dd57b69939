#pragma once

#include "kits/core/QXSDKError.h"
#include "kits/login/default/OAuthLink.h"
#include "kits/login/default/OAuthRequests.h"
#include "kits/login/default/QXSDKOAuthLoginClient.h"
#include "kits/login/default/RedirectListener.h"
#include "platform/net/DataTask.h"

#include <QtCore/QObject>

#include <functional>
#include <memory>
#include <optional>
#include <variant>

/// One login: sends the user to the browser, waits for the redirect, and fetches the token. Main thread only.
///
/// Lifetime: may go at any time, and then never ends; what it waits for holds it weakly.
class LoginAttempt final : public std::enable_shared_from_this<LoginAttempt> {
public:
    using Outcome = std::variant<OAuthLink, QXSDKError>;
    using Ended = std::function<void(Outcome outcome)>;

    /// `ended` is called at most once: out of `start`, `giveUp`, the event loop, or the end of the application object.
    LoginAttempt(QXSDKOAuthLoginOptions options, Ended ended);
    ~LoginAttempt();
    Q_DISABLE_COPY_MOVE(LoginAttempt)

    /// Once.
    void start();

    /// Ends with an error; does nothing where it has ended.
    void giveUp(const QString& reason);

private:
    void _openBrowser();
    void _redirected(const RedirectListener::Parameters& parameters);
    void _fetchToken(const QString& code);
    void _tokenCame(const QByteArray& data, int statusCode, const QString& error);
    void _end(Outcome outcome);

    const QXSDKOAuthLoginOptions _options;
    Ended _ended; // null once called
    LoginSecrets _secrets;
    QStringList _scopes;
    QString _authenticationBaseUrl;
    std::unique_ptr<RedirectListener> _listener;
    std::shared_ptr<void> _timer;
    std::shared_ptr<kovalin::platform::DataTask> _tokenTask;
    QObject _context; // what connections to this object end with
};
