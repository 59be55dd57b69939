#include "kits/login/default/AccountLink.h"

#include "kits/core/QXSDKClientSetup.h"
#include "kits/login/default/LoginLog.h"
#include "kits/login/default/OAuthRequests.h"
#include "platform/foundation/Clock.h"
#include "platform/foundation/Json.h"
#include "platform/foundation/Log.h"
#include "platform/net/UrlSession.h"

#include <QtCore/QJsonDocument>

#include <utility>

using namespace kovalin::platform;

namespace {

constexpr int kHttpOk = 200;
constexpr int kHttpBadRequest = 400;
constexpr int kHttpUnauthorized = 401;
constexpr int kUnreadableAnswer = 500;

QString noAccount()
{
    return QStringLiteral("No user account linked");
}

QXSDKError queryError(int statusCode, const QString& reason)
{
    return errorWithStatusCode(statusCode, QStringLiteral("The query failed"), reason);
}

/// Whether a token endpoint says that the link itself is over, and not only that this request can't be met.
bool isLinkRefused(int statusCode, const QByteArray& body)
{
    const QJsonObject answer = QJsonDocument::fromJson(body).object();
    return statusCode == kHttpBadRequest && jsonString(answer, u"error") == QStringLiteral("invalid_grant");
}

} // namespace

/// One link to an account, from a login or a kept link to its end.
struct AccountLink::Account {
    const QString key; // in the store
    SharedSlot<const OAuthLink> link;
    std::atomic<bool> isOver = false; // never false again
};

/// A refresh under way. Whoever waits for its answer holds it, so that the queries end where that is dropped.
struct AccountLink::Refresh {
    const AccountPtr account;
    const LinkPtr link;
    std::vector<RequestPtr> waiting;
};

AccountLink::AccountLink(std::shared_ptr<QXSDKTokenStore> store, std::chrono::milliseconds requestTimeout,
                         AccountLinkEvents events)
    : _store(std::move(store))
    , _timeout(requestTimeout)
    , _events(std::move(events))
{
}

AccountLink::~AccountLink() = default;

bool AccountLink::isLinked() const
{
    const auto account = _account.load();
    return account && !account->isOver;
}

bool AccountLink::hasScope(const QString& scope) const
{
    const auto account = _account.load();
    return account && !account->isOver && account->link.load()->scopes.contains(scope);
}

void AccountLink::restore()
{
    const QString key = QXSDKClientSetup::shared()->clientId;
    _queue.async([self = shared_from_this(), key] {
        self->_restoring = Restoring::Wanted;
        self->_store->read(key, [weak = self->weak_from_this(), key](const std::optional<QByteArray>& secret) {
            if (const auto held = weak.lock()) {
                held->_queue.async([held, key, secret] { held->_restored(key, secret); });
            }
        });
    });
}

void AccountLink::replace(OAuthLink link, std::function<void()> told)
{
    const QString key = QXSDKClientSetup::shared()->clientId;
    _queue.async([self = shared_from_this(), key, link = std::move(link), told = std::move(told)] {
        self->_restoring = Restoring::No;
        self->_account.store(
            AccountPtr(new Account{.key = key, .link = SharedSlot(std::make_shared<const OAuthLink>(link))}));
        self->_store->write(key, secretOf(link));
        self->_interrupt();
        self->_events.linked(told);
    });
}

void AccountLink::unlink()
{
    if (const auto account = _account.load()) {
        account->isOver = true;
    }
    _queue.async([self = shared_from_this()] {
        if (self->_restoring == Restoring::Wanted) {
            self->_restoring = Restoring::Unwanted;
            self->_store->remove(QXSDKClientSetup::shared()->clientId);
        }
        if (self->_account.load()) {
            self->_revoke(*self->_account.load()->link.load());
            self->_endLink();
        }
    });
}

void AccountLink::fetch(std::shared_ptr<UserDataRequest> request)
{
    _queue.async([self = shared_from_this(), request = std::move(request)] { self->_start(request); });
}

void AccountLink::close()
{
    _queue.async([self = shared_from_this()] {
        self->_isClosed = true;
        self->_interrupt();
    });
}

void AccountLink::async(std::function<void()> job)
{
    _queue.async(std::move(job));
}

bool AccountLink::_isCurrent(const AccountPtr& account) const
{
    return account == _account.load() && !account->isOver;
}

void AccountLink::_restored(const QString& key, const std::optional<QByteArray>& secret)
{
    const Restoring restoring = std::exchange(_restoring, Restoring::No);
    const auto link = secret ? linkFromSecret(*secret) : std::nullopt;
    if (secret && !link) {
        KOVALIN_LOG_WARNING(kovalinLogin, QStringLiteral("The link that was kept is damaged"));
    }
    if (!link || link->authenticationBaseUrl != QXSDKClientSetup::shared()->authenticationBaseUrl || _isClosed) {
        return;
    }
    if (restoring == Restoring::Unwanted) {
        _revoke(*link);
    } else if (restoring == Restoring::Wanted) {
        _account.store(
            AccountPtr(new Account{.key = key, .link = SharedSlot(std::make_shared<const OAuthLink>(*link))}));
        _events.linked({});
    }
}

void AccountLink::_start(const RequestPtr& request)
{
    if (_isClosed) {
        return; // The request ends with an error where nobody holds it.
    }
    const auto account = _account.load();
    if (!account || account->isOver) {
        request->failLoggedOut(noAccount());
        return;
    }
    const auto link = account->link.load();
    if (link->refreshToken && link->refreshTime && currentTimeSeconds() >= *link->refreshTime) {
        _refresh(request, account);
    } else {
        _send(request, account);
    }
}

void AccountLink::_send(const RequestPtr& request, const AccountPtr& account)
{
    const auto link = account->link.load();
    const std::uint64_t number = ++_lastTask;
    const auto task =
        _post(userDataRequest(*QXSDKClientSetup::shared(), *link, request->body(), _timeout),
              [this, number, request, account, link](const QByteArray& data, int statusCode, const QString& error) {
                  _tasks.erase(number);
                  _answered(request, account, link, data, statusCode, error);
              });
    _tasks.emplace(number, task);
}

void AccountLink::_answered(const RequestPtr& request, const AccountPtr& account, const LinkPtr& link,
                            const QByteArray& data, int statusCode, const QString& error)
{
    if (_isClosed || !_isCurrent(account)) {
        _start(request);
    } else if (statusCode == 0) {
        request->fail(queryError(0, error), false);
    } else if (statusCode == kHttpUnauthorized) {
        _refused(request, account, link);
    } else if (statusCode != kHttpOk) {
        request->fail(queryError(statusCode, QStringLiteral("The server refused")), false);
    } else if (const auto document = QJsonDocument::fromJson(data); document.isObject()) {
        request->succeed(document.object());
    } else {
        request->fail(queryError(kUnreadableAnswer, QStringLiteral("The answer is no JSON object")), false);
    }
}

void AccountLink::_refused(const RequestPtr& request, const AccountPtr& account, const LinkPtr& link)
{
    if (!request->takeRetry()) {
        request->fail(queryError(kHttpUnauthorized, QStringLiteral("The server refused")), false);
    } else if (account->link.load() != link) {
        _send(request, account); // Another query has had the token replaced meanwhile.
    } else {
        _refresh(request, account);
    }
}

void AccountLink::_refresh(const RequestPtr& request, const AccountPtr& account)
{
    if (const auto current = _currentRefresh.lock(); current && current->account == account) {
        current->waiting.push_back(request);
        return;
    }
    const auto link = account->link.load();
    if (!link->refreshToken) {
        _endLink();
        request->failLoggedOut(QStringLiteral("The access token is refused, and there is no way to a new one"));
        return;
    }
    const std::shared_ptr<Refresh> refresh(new Refresh{.account = account, .link = link, .waiting = {request}});
    _currentRefresh = refresh;
    // Never cancelled: the server may have replaced the refresh token already, and the new one must not be lost.
    _post(refreshRequest(*QXSDKClientSetup::shared(), *link, _timeout),
          [this, refresh](const QByteArray& data, int statusCode, const QString& error) {
              const auto renewed =
                  statusCode == kHttpOk ? refreshedLink(*refresh->link, data, currentTimeSeconds()) : std::nullopt;
              if (_currentRefresh.lock() == refresh) {
                  _currentRefresh.reset();
              }
              if (renewed) {
                  _renewed(*refresh, *renewed);
              } else {
                  _notRenewed(*refresh, data, statusCode, error);
              }
          });
}

void AccountLink::_renewed(const Refresh& refresh, const OAuthLink& link)
{
    if (refresh.account->isOver) {
        _revoke(link); // It was unlinked while the server made this one.
    } else if (_isCurrent(refresh.account)) {
        refresh.account->link.store(std::make_shared<const OAuthLink>(link));
        _store->write(refresh.account->key, secretOf(link));
    }
    for (const RequestPtr& request : refresh.waiting) {
        if (_isCurrent(refresh.account)) {
            _send(request, refresh.account);
        } else {
            _start(request);
        }
    }
}

void AccountLink::_notRenewed(const Refresh& refresh, const QByteArray& data, int statusCode, const QString& error)
{
    if (!_isCurrent(refresh.account)) {
        for (const RequestPtr& request : refresh.waiting) {
            _start(request);
        }
        return;
    }
    const bool isOver = isLinkRefused(statusCode, data);
    if (isOver) {
        KOVALIN_LOG_WARNING(kovalinLogin, QStringLiteral("The account's link has ended: the server doesn't renew it"));
        _endLink();
    }
    for (const RequestPtr& request : refresh.waiting) {
        if (isOver) {
            request->failLoggedOut(QStringLiteral("The account's link has ended"));
        } else if (statusCode == 0) {
            request->fail(queryError(0, error), false);
        } else {
            request->fail(queryError(statusCode == kHttpOk ? kUnreadableAnswer : statusCode,
                                     QStringLiteral("The authentication service gave no new token")),
                          false);
        }
    }
}

void AccountLink::_endLink()
{
    const auto account = _account.exchange(nullptr);
    account->isOver = true;
    _store->remove(account->key);
    _interrupt();
    _events.unlinked();
}

void AccountLink::_revoke(const OAuthLink& link)
{
    // Not among the tasks: an end of the link doesn't cancel it.
    const auto task = UrlSession::shared().dataTask(
        revocationRequest(*QXSDKClientSetup::shared(), link, _timeout),
        [](const QByteArray&, const std::optional<UrlResponse>& response, const std::optional<UrlError>&) {
            if (!response || response->statusCode != kHttpOk) {
                KOVALIN_LOG_WARNING(kovalinLogin, QStringLiteral("The token couldn't be revoked at the server"));
            }
        });
    task->resume();
}

std::shared_ptr<DataTask> AccountLink::_post(UrlRequest request, Answered answered)
{
    // The handler holds what waits for it. Dropped, as at the application object's end, it takes that along.
    auto task = UrlSession::shared().dataTask(
        std::move(request),
        [self = shared_from_this(), answered = std::move(answered)](
            const QByteArray& data, const std::optional<UrlResponse>& response, const std::optional<UrlError>& error) {
            const int statusCode = response ? response->statusCode : 0;
            self->_queue.async([self, answered, data, statusCode, text = error ? error->text : QString()] {
                answered(data, statusCode, text);
            });
        });
    task->resume();
    return task;
}

void AccountLink::_interrupt()
{
    for (const auto& [number, task] : _tasks) {
        task->cancel();
    }
    if (const auto refresh = std::exchange(_currentRefresh, {}).lock()) {
        for (const RequestPtr& request : std::exchange(refresh->waiting, {})) {
            _start(request);
        }
    }
}
