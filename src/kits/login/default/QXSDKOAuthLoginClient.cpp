#include "kits/login/default/QXSDKOAuthLoginClient.h"

#include "kits/login/default/AccountLink.h"
#include "kits/login/default/LoginAttempt.h"
#include "kits/login/default/LoginEnd.h"
#include "kits/login/default/LoginLog.h"
#include "kits/login/default/OAuthRequests.h"
#include "platform/dispatch/DelayedTask.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Log.h"

#include <QtGui/QDesktopServices>

#include <utility>
#include <variant>

using namespace kovalin::platform;

namespace {

/// What the options leave open.
QXSDKOAuthLoginOptions completed(QXSDKOAuthLoginOptions options)
{
    if (!options.openUrl) {
        options.openUrl = [](const QUrl& url) {
            return QDesktopServices::openUrl(url);
        };
    }
    if (!options.startTimer) {
        options.startTimer = [](std::chrono::milliseconds delay, std::function<void()> due) {
            return std::make_shared<DelayedTask>(delay, std::move(due));
        };
    }
    if (!options.tokenStore) {
        options.tokenStore = QXSDKTokenStore::keychain(QStringLiteral("QXSDKKovalinKit"));
    }
    return options;
}

} // namespace

class QXSDKOAuthLoginClient::State final {
public:
    explicit State(QXSDKOAuthLoginOptions given)
        : options(completed(std::move(given)))
        , account(std::make_shared<AccountLink>(
              options.tokenStore, options.requestTimeout,
              AccountLinkEvents{
                  .linked = [](std::function<void()> then) { tellLinkSucceeded(std::move(then)); },
                  .unlinked = [] { tellUnlinked(); },
              }))
    {
    }

    void login(LoginCompletion completion)
    {
        giveUpLogin(QStringLiteral("Another login has begun"));
        // All is told from the account's queue, and so in the order in which it happened.
        account->async([] { tellLoginStarted(); });
        attempt = std::make_shared<LoginAttempt>(
            options, [account = account, end = std::make_shared<LoginEnd>(std::move(completion))](
                         LoginAttempt::Outcome outcome) { loginEnded(account, end, std::move(outcome)); });
        // It may be replaced, and let go of, while it opens the browser.
        const auto started = attempt;
        started->start();
    }

    void giveUpLogin(const QString& reason) const
    {
        if (attempt) {
            attempt->giveUp(reason);
        }
    }

    const QXSDKOAuthLoginOptions options;
    const std::shared_ptr<AccountLink> account;
    std::shared_ptr<LoginAttempt> attempt; // the last one, ended or not; main thread only

private:
    static void loginEnded(const std::shared_ptr<AccountLink>& account, const std::shared_ptr<LoginEnd>& end,
                           LoginAttempt::Outcome outcome)
    {
        if (auto* const link = std::get_if<OAuthLink>(&outcome)) {
            account->replace(std::move(*link), [end] { end->tell(std::nullopt); });
            return;
        }
        account->async([end, error = std::get<QXSDKError>(std::move(outcome))] {
            KOVALIN_LOG_WARNING(kovalinLogin, QStringLiteral("The account can't be linked: ") + error.reason);
            tellLinkFailed([end, error] { end->tell(error); });
        });
    }
};

QXSDKOAuthLoginClient::QXSDKOAuthLoginClient(QXSDKOAuthLoginOptions options)
    : _state(std::make_shared<State>(std::move(options)))
{
    _state->account->restore();
}

QXSDKOAuthLoginClient::~QXSDKOAuthLoginClient()
{
    if (_state->attempt) {
        dispatchMain([state = _state] { state->giveUpLogin(QStringLiteral("The login client ended")); });
    }
    _state->account->close();
}

bool QXSDKOAuthLoginClient::isUserLoggedIn() const
{
    return _state->account->isLinked();
}

bool QXSDKOAuthLoginClient::hasAccessToScope(const QString& scope) const
{
    return _state->account->hasScope(scope);
}

void QXSDKOAuthLoginClient::fetchUserDataWithQuery(const QString& query, const std::optional<QJsonObject>& variables,
                                                   Success success, Failure failure)
{
    _state->account->fetch(
        std::make_shared<UserDataRequest>(userDataBody(query, variables), std::move(success), std::move(failure)));
}

void QXSDKOAuthLoginClient::loginFromViewController(QObject* /*viewController*/, LoginCompletion completion)
{
    assertOnMainThread();
    _state->login(std::move(completion));
}

void QXSDKOAuthLoginClient::unlink()
{
    assertOnMainThread();
    _state->giveUpLogin(QStringLiteral("The account was unlinked"));
    _state->account->unlink();
}
