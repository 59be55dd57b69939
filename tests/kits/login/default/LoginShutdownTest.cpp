#include "kits/core/QXSDKClientSetup.h"
#include "kits/login/default/OAuthLink.h"
#include "kits/login/default/QXSDKOAuthLoginClient.h"
#include "platform/dispatch/ThreadCheck.h"
#include "support/LoopbackServer.h"
#include "support/WaitFor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QUrlQuery>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QTcpSocket>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <vector>

using namespace kovalin::test;

namespace {

int argumentCount = 1;
char programName[] = "kits_login_default_shutdown_tests";
char* arguments[] = {programName, nullptr};

/// Has one link, and forgets nothing.
class OneLinkStore final : public QXSDKTokenStore {
public:
    explicit OneLinkStore(QByteArray secret)
        : _secret(std::move(secret))
    {
    }
    void read(const QString&, ReadCompletion completion) override { completion(_secret); }
    void write(const QString&, const QByteArray&) override {}
    void remove(const QString&) override {}

private:
    const QByteArray _secret;
};

/// An application object and a server for the length of a scope.
class Surroundings final {
public:
    Surroundings()
    {
        const QString base = server.url(QStringLiteral("/")).toString().chopped(1);
        QXSDKClientSetup::setShared(
            {.clientId = QStringLiteral("test"), .authenticationBaseUrl = base, .apiBaseUrl = base});
    }

private:
    const QCoreApplication _application{argumentCount, arguments};

public:
    LoopbackServer server;
};

struct Login {
    int ends = 0;
    bool hasFailed = false;
    bool wasOnMainThread = false;
    QUrl page;

    [[nodiscard]] QXSDKOAuthLoginOptions options()
    {
        QXSDKOAuthLoginOptions options;
        options.openUrl = [this](const QUrl& url) {
            page = url;
            return true;
        };
        options.tokenStore = QXSDKTokenStore::memory();
        return options;
    }
    void start(QXSDKOAuthLoginClient& client)
    {
        client.loginFromViewController(nullptr, [this](const std::optional<QXSDKError>& error) {
            ++ends;
            hasFailed = error.has_value();
            wasOnMainThread = kovalin::platform::isMainThread();
        });
    }
};

TEST(LoginShutdown, EndsALoginThatWaitsForTheBrowser)
{
    Login login;
    const auto client = [&] {
        const Surroundings surroundings;
        auto made = std::make_unique<QXSDKOAuthLoginClient>(login.options());
        login.start(*made);
        return made;
    }();
    EXPECT_EQ(login.ends, 1);
    EXPECT_TRUE(login.hasFailed);
    EXPECT_TRUE(login.wasOnMainThread);
}

TEST(LoginShutdown, EndsALoginThatFetchesItsToken)
{
    Login login;
    const auto client = [&] {
        Surroundings surroundings;
        surroundings.server.script("/oauth2/token", ScriptedAnswer::never());
        auto made = std::make_unique<QXSDKOAuthLoginClient>(login.options());
        login.start(*made);
        const QUrlQuery asked(login.page);
        const QUrl redirect(asked.queryItemValue(QStringLiteral("redirect_uri"), QUrl::FullyDecoded));
        QTcpSocket socket;
        socket.setProxy(QNetworkProxy::NoProxy);
        socket.connectToHost(redirect.host(), static_cast<quint16>(redirect.port()));
        socket.write("GET " + redirect.path().toLatin1() +
                     "?code=x&state=" + asked.queryItemValue(QStringLiteral("state")).toLatin1() + " HTTP/1.1\r\n\r\n");
        EXPECT_TRUE(waitFor([&] { return !surroundings.server.requests().empty(); }));
        return made;
    }();
    EXPECT_EQ(login.ends, 1);
    EXPECT_TRUE(login.hasFailed);
}

TEST(LoginShutdown, FailsALoginAfterIt)
{
    Login login;
    const auto client = [&] {
        const Surroundings surroundings;
        return std::make_unique<QXSDKOAuthLoginClient>(login.options());
    }();
    login.start(*client);
    EXPECT_EQ(login.ends, 1);
    EXPECT_TRUE(login.hasFailed);
}

class QueriesAtShutdown : public testing::Test {
protected:
    /// Sends queries that the server's answer at `path` holds up, and ends the application.
    void run(const QByteArray& path, double refreshTime)
    {
        std::unique_ptr<QXSDKOAuthLoginClient> client;
        {
            Surroundings surroundings;
            surroundings.server.script(path, ScriptedAnswer::never());
            QXSDKOAuthLoginOptions options;
            options.tokenStore = std::make_shared<OneLinkStore>(
                secretOf({.accessToken = "a",
                          .refreshToken = "r",
                          .refreshTime = refreshTime,
                          .authenticationBaseUrl = QXSDKClientSetup::shared()->authenticationBaseUrl}));
            client = std::make_unique<QXSDKOAuthLoginClient>(options);
            ASSERT_TRUE(waitFor([&] { return client->isUserLoggedIn(); }));
            for (int i = 0; i < 5; ++i) {
                fetch(*client);
            }
            ASSERT_TRUE(waitFor([&] { return !surroundings.server.requests().empty(); }));
        }
        EXPECT_EQ(failures, 5);
        fetch(*client);
        EXPECT_EQ(failures, 6);
    }

private:
    void fetch(QXSDKOAuthLoginClient& client)
    {
        client.fetchUserDataWithQuery(
            QStringLiteral("{me}"), std::nullopt, [](const QJsonObject&) { FAIL(); },
            [this](const QXSDKError& error, bool isLoggedOut) {
                EXPECT_EQ(error.statusCode, 0);
                EXPECT_FALSE(isLoggedOut);
                ++failures;
            });
    }

    std::atomic<int> failures = 0;
};

TEST_F(QueriesAtShutdown, FailWhileTheyWaitForTheirAnswers)
{
    run("/graphql", 1e12);
}

TEST_F(QueriesAtShutdown, FailWhileTheyWaitForARefresh)
{
    run("/oauth2/token", 0);
}

} // namespace

// No application object from the start, unlike the support's own main function.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
