#pragma once

#include "kits/login/default/OAuthLink.h"
#include "kits/login/default/QXSDKTokenStore.h"
#include "kits/login/default/UserDataRequest.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/foundation/SharedSlot.h"
#include "platform/net/DataTask.h"
#include "platform/net/UrlRequest.h"

#include <QtCore/QString>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

/// What an account link tells, on its queue.
struct AccountLinkEvents {
    /// An account is linked. `then` has to run when everybody has been told; it may be empty.
    std::function<void(std::function<void()> then)> linked;
    std::function<void()> unlinked;
};

/// The account that is linked: its token, the queries in its name, and where it is kept. Any thread.
///
/// Everything happens on one queue. What other threads read is one slot with the linked account, which only the queue fills, and a
/// mark in it that ends it at once. A query belongs to the account that it was sent for: an answer that comes when that isn't the
/// linked one any more is dropped, and the query fails, or is sent again for the new one.
///
/// Lifetime: what is under way holds it; `close` ends that.
class AccountLink final : public std::enable_shared_from_this<AccountLink> {
public:
    AccountLink(std::shared_ptr<QXSDKTokenStore> store, std::chrono::milliseconds requestTimeout,
                AccountLinkEvents events);
    ~AccountLink();
    Q_DISABLE_COPY_MOVE(AccountLink)

    [[nodiscard]] bool isLinked() const;
    [[nodiscard]] bool hasScope(const QString& scope) const;

    /// Links what the store has, unless something else happens first. Once, before anything else.
    void restore();

    /// Links another account. `told` runs when everybody has been told.
    void replace(OAuthLink link, std::function<void()> told);

    /// Ends the link; `isLinked` is false at once.
    void unlink();

    void fetch(std::shared_ptr<UserDataRequest> request);

    /// Ends everything under way with an error.
    void close();

    /// Runs `job` on the queue.
    void async(std::function<void()> job);

private:
    struct Account;
    struct Refresh;
    enum class Restoring { No, Wanted, Unwanted };
    using AccountPtr = std::shared_ptr<Account>;
    using RequestPtr = std::shared_ptr<UserDataRequest>;
    using LinkPtr = std::shared_ptr<const OAuthLink>;
    using Answered = std::function<void(const QByteArray& data, int statusCode, const QString& error)>;

    [[nodiscard]] bool _isCurrent(const AccountPtr& account) const;
    void _restored(const QString& key, const std::optional<QByteArray>& secret);
    void _start(const RequestPtr& request);
    void _send(const RequestPtr& request, const AccountPtr& account);
    void _answered(const RequestPtr& request, const AccountPtr& account, const LinkPtr& link, const QByteArray& data,
                   int statusCode, const QString& error);
    void _refused(const RequestPtr& request, const AccountPtr& account, const LinkPtr& link);
    void _refresh(const RequestPtr& request, const AccountPtr& account);
    void _renewed(const Refresh& refresh, const OAuthLink& link);
    void _notRenewed(const Refresh& refresh, const QByteArray& data, int statusCode, const QString& error);
    void _endLink();
    void _revoke(const OAuthLink& link);
    std::shared_ptr<kovalin::platform::DataTask> _post(kovalin::platform::UrlRequest request, Answered answered);
    void _interrupt();

    const std::shared_ptr<QXSDKTokenStore> _store;
    const std::chrono::milliseconds _timeout;
    const AccountLinkEvents _events;
    kovalin::platform::SharedSlot<Account> _account; // stored by the queue alone

    // The queue only.
    std::map<std::uint64_t, std::shared_ptr<kovalin::platform::DataTask>> _tasks; // queries under way
    std::uint64_t _lastTask = 0;
    std::weak_ptr<Refresh> _currentRefresh; // held by its answer
    Restoring _restoring = Restoring::No;
    bool _isClosed = false;

    kovalin::platform::SerialQueue _queue{QStringLiteral("com.vole.connect.QXSDKOAuthLoginClient")};
};
