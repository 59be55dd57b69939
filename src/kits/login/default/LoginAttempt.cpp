#include "kits/login/default/LoginAttempt.h"

#include "kits/login/default/Pkce.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/foundation/Clock.h"
#include "platform/net/UrlSession.h"

#include <QtCore/QCoreApplication>

#include <chrono>
#include <utility>

using namespace kovalin::platform;

namespace {

// Long enough for a password that has to be looked up, short enough that a forgotten page doesn't keep a port.
constexpr std::chrono::minutes kLongestWait(10);

constexpr int kHttpOk = 200;

QXSDKError linkError(int statusCode, const QString& reason)
{
    return errorWithStatusCode(statusCode, QStringLiteral("The account can't be linked"), reason);
}

QStringList scopesOf(const QXSDKOAuthLoginOptions& options, const QXSDKClientSetup& setup)
{
    return options.scopes.isEmpty()
               ? QStringList{setup.authenticationBaseUrl + QStringLiteral("/oauth2/api/user.kovalin.avatar")}
               : options.scopes;
}

} // namespace

LoginAttempt::LoginAttempt(QXSDKOAuthLoginOptions options, Ended ended)
    : _options(std::move(options))
    , _ended(std::move(ended))
{
}

LoginAttempt::~LoginAttempt() = default;

void LoginAttempt::start()
{
    QCoreApplication* const application = QCoreApplication::instance();
    if (application == nullptr) {
        giveUp(QStringLiteral("The application ended"));
        return;
    }
    QObject::connect(application, &QObject::destroyed, &_context,
                     [this] { giveUp(QStringLiteral("The application ended")); });
    const std::weak_ptr<LoginAttempt> weak = weak_from_this();
    _listener = std::make_unique<RedirectListener>([weak](const RedirectListener::Parameters& parameters) {
        if (const auto self = weak.lock()) {
            self->_redirected(parameters);
        }
    });
    _timer = _options.startTimer(kLongestWait, [weak] {
        if (const auto self = weak.lock()) {
            self->giveUp(QStringLiteral("The browser didn't come back in time"));
        }
    });
    _openBrowser();
}

void LoginAttempt::giveUp(const QString& reason)
{
    _end(linkError(0, reason));
}

void LoginAttempt::_openBrowser()
{
    const auto setup = QXSDKClientSetup::shared();
    _secrets = {.verifier = freshSecret(), .state = freshSecret(), .redirectUri = _listener->redirectUri()};
    _scopes = scopesOf(_options, *setup);
    const QUrl url = authorizationUrl(*setup, _secrets, _scopes);
    if (_secrets.redirectUri.isEmpty()) {
        giveUp(QStringLiteral("There is no port on 127.0.0.1 to listen at"));
    } else if (!url.isValid()) {
        giveUp(QStringLiteral("The address of the authentication service isn't set up"));
    } else if (!_options.openUrl(url)) {
        giveUp(QStringLiteral("The browser can't be opened"));
    }
}

void LoginAttempt::_redirected(const RedirectListener::Parameters& parameters)
{
    // Anybody on this machine can send a redirect; nothing of one that isn't ours counts.
    if (parameters.value(QStringLiteral("state")) != QString::fromLatin1(_secrets.state)) {
        giveUp(QStringLiteral("The redirect is of another login"));
        return;
    }
    const QString error = parameters.value(QStringLiteral("error"));
    const QString code = parameters.value(QStringLiteral("code"));
    if (error == QStringLiteral("access_denied")) {
        _end(linkError(403, QStringLiteral("The user refused")));
    } else if (!error.isEmpty()) {
        giveUp(QStringLiteral("The authentication service refused"));
    } else if (code.isEmpty()) {
        giveUp(QStringLiteral("The redirect has no code"));
    } else {
        _fetchToken(code);
    }
}

void LoginAttempt::_fetchToken(const QString& code)
{
    const auto setup = QXSDKClientSetup::shared();
    _authenticationBaseUrl = setup->authenticationBaseUrl;
    _tokenTask = UrlSession::shared().dataTask(
        codeRequest(*setup, _secrets, code, _options.requestTimeout),
        [weak = weak_from_this()](const QByteArray& data, const std::optional<UrlResponse>& response,
                                  const std::optional<UrlError>& error) {
            const int statusCode = response ? response->statusCode : 0;
            dispatchMain([weak, data, statusCode, text = error ? error->text : QString()] {
                if (const auto self = weak.lock()) {
                    self->_tokenCame(data, statusCode, text);
                }
            });
        });
    _tokenTask->resume();
}

void LoginAttempt::_tokenCame(const QByteArray& data, int statusCode, const QString& error)
{
    if (statusCode == 0) {
        giveUp(error);
        return;
    }
    if (statusCode != kHttpOk) {
        _end(linkError(statusCode, QStringLiteral("The authentication service gave no token")));
        return;
    }
    auto link = linkFromTokenAnswer(data, _scopes, currentTimeSeconds());
    if (!link) {
        _end(linkError(500, QStringLiteral("The authentication service's answer holds no token")));
        return;
    }
    link->authenticationBaseUrl = _authenticationBaseUrl;
    _end(*std::move(link));
}

void LoginAttempt::_end(Outcome outcome)
{
    const Ended ended = std::exchange(_ended, nullptr);
    if (!ended) {
        return;
    }
    _listener.reset();
    _timer.reset();
    if (const auto task = std::exchange(_tokenTask, nullptr)) {
        task->cancel();
    }
    ended(std::move(outcome));
}
