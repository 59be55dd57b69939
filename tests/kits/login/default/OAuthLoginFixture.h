#pragma once

#include "kits/core/QXSDKClientSetup.h"
#include "kits/login/LoginJournal.h"
#include "kits/login/default/QXSDKOAuthLoginClient.h"
#include "platform/net/Fetching.h"
#include "support/LoopbackServer.h"
#include "support/ManualClock.h"
#include "support/QtPrinting.h"
#include "support/WaitFor.h"

#include <QtCore/QJsonObject>
#include <QtCore/QUrlQuery>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace kovalin::test {

inline const QByteArray kTokenPath = "/oauth2/token";
inline const QByteArray kRevokePath = "/oauth2/revoke";
inline const QByteArray kGraphQlPath = "/graphql";

/// The value of a field in a form, or in the query of an address, decoded.
[[nodiscard]] QString fieldOf(const QByteArray& form, const QString& name);

/// An answer of the token endpoint, without the fields that are empty.
[[nodiscard]] ScriptedAnswer tokenAnswer(const QByteArray& accessToken, const QByteArray& refreshToken = {},
                                         const QByteArray& scope = {}, std::optional<int> expiresIn = std::nullopt);

/// Holds what it is given, and answers reads when it is told to. Any thread.
class ScriptedTokenStore final : public QXSDKTokenStore {
public:
    void read(const QString& key, ReadCompletion completion) override;
    void write(const QString& key, const QByteArray& secret) override;
    void remove(const QString& key) override;

    /// What is kept under the key; absent if nothing is.
    [[nodiscard]] std::optional<QByteArray> secret(const QString& key) const;
    void keep(const QString& key, const QByteArray& secret) { write(key, secret); }

    void holdReads();
    /// Answers what was held, with what was there when it was asked.
    void releaseReads();
    [[nodiscard]] std::size_t reads() const;

private:
    mutable std::mutex _mutex;
    std::map<QString, QByteArray> _secrets;
    std::vector<std::function<void()>> _held;
    std::size_t _reads = 0;
    bool _holds = false;
};

/// Where the answer of a query goes. Copies share it. Any thread.
class QueryEnd final {
public:
    void sendTo(QXSDKLoginClient& client, const QString& query = QStringLiteral("{me{kovalin{avatar}}}"),
                const std::optional<QJsonObject>& variables = std::nullopt);

    /// Runs the event loop until the query has ended.
    void wait() const;
    [[nodiscard]] bool hasEnded() const { return count() > 0; }
    [[nodiscard]] int count() const;
    [[nodiscard]] std::optional<QJsonObject> response() const;
    [[nodiscard]] QXSDKError error() const;
    [[nodiscard]] bool isLoggedOut() const;

private:
    struct Shared {
        std::mutex mutex;
        int count = 0;
        std::optional<QJsonObject> response;
        QXSDKError error;
        bool isLoggedOut = false;
    };
    std::shared_ptr<Shared> _shared = std::make_shared<Shared>();
};

/// A timer that the test lets come due.
struct StartedTimer {
    std::chrono::milliseconds delay;
    std::function<void()> due;
    std::weak_ptr<void> held;
};

/// A server which is authentication service and API at once, a browser which comes back as it is told, and a client.
class OAuthLoginFixture : public testing::Test {
protected:
    OAuthLoginFixture();
    ~OAuthLoginFixture() override;

    /// Makes the client anew, installed as the shared one.
    void makeClient();
    [[nodiscard]] QXSDKOAuthLoginOptions options();

    void login();
    /// Waits for the end of a login that succeeds.
    void linkAccount();
    [[nodiscard]] QueryEnd fetch();
    void waitForLogins(std::size_t count);
    /// The words of the journal, once there are `count`.
    [[nodiscard]] const std::vector<std::string>& wordsAfter(std::size_t count);

    [[nodiscard]] std::vector<ReceivedRequest> requestsAt(const QByteArray& path) const;
    void waitForRequestsAt(const QByteArray& path, std::size_t count);
    /// What the authorization page was asked by the login that was opened last.
    [[nodiscard]] QString asked(const QString& name) const;
    [[nodiscard]] QString baseUrl() const;

    ManualClock clock;
    LoopbackServer server;
    const std::shared_ptr<ScriptedTokenStore> store = std::make_shared<ScriptedTokenStore>();

    /// The query that the browser comes back with; empty: it never does.
    std::function<QByteArray(const QByteArray& state)> redirect;
    bool canOpenBrowser = true;
    std::vector<QUrl> opened;
    std::vector<TaskEndBox> pages; // what the browser shows, one a login
    std::vector<StartedTimer> timers;
    std::optional<std::chrono::milliseconds> requestTimeout;

    std::vector<std::optional<QXSDKError>> loginEnds;
    const std::shared_ptr<LoginJournal> journal = LoginJournal::observing();
    std::shared_ptr<QXSDKOAuthLoginClient> client;

private:
    [[nodiscard]] bool _open(const QUrl& url);

    platform::UrlSession _browser{withoutProxy()};
};

} // namespace kovalin::test
