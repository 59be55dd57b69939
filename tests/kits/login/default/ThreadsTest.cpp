#include "kits/login/default/OAuthLoginFixture.h"

#include <atomic>
#include <thread>

using namespace kovalin::test;

namespace {

using OAuthThreads = OAuthLoginFixture;

TEST_F(OAuthThreads, AskWhileAccountsComeAndGo)
{
    std::atomic<bool> stop = false;
    std::atomic<int> sent = 0;
    std::atomic<int> ended = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&, asked = client] {
            do {
                ++sent;
                asked->fetchUserDataWithQuery(
                    QStringLiteral("{me}"), std::nullopt, [&](const QJsonObject&) { ++ended; },
                    [&](const QXSDKError&, bool) { ++ended; });
                static_cast<void>(asked->isUserLoggedIn());
                static_cast<void>(asked->hasAccessToScope(QStringLiteral("scope")));
                std::this_thread::yield();
            } while (!stop && sent < 3000);
        });
    }
    for (int i = 0; i < 10; ++i) {
        // Short-lived, so that they are replaced all the time.
        server.script(kTokenPath, tokenAnswer("access-" + QByteArray::number(i), "refresh", "scope", 0));
        linkAccount();
        if (i % 2 == 1) {
            client->unlink();
            EXPECT_FALSE(client->isUserLoggedIn());
        }
    }
    stop = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(waitFor([&] { return ended == sent; }));
    drainMainQueue();
    EXPECT_EQ(ended, sent);
}

TEST_F(OAuthThreads, TheClientMayGoOnAnyThread)
{
    linkAccount();
    redirect = [](const QByteArray&) {
        return QByteArray();
    };
    login();
    server.script(kGraphQlPath, ScriptedAnswer::never());
    const QueryEnd end = fetch();
    QXSDKLoginClient::setShared(nullptr);
    std::thread([held = std::move(client)]() mutable { held.reset(); }).join();
    end.wait();
    waitForLogins(2);
    EXPECT_TRUE(loginEnds.back());
    EXPECT_EQ(end.count(), 1);
}

using OAuthThreadsDeathTest = OAuthLoginFixture;

TEST_F(OAuthThreadsDeathTest, ALoginElsewhereIsACleanStop)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(std::thread([this] { client->loginFromViewController(nullptr, {}); }).join(),
                 "loginFromViewController");
    EXPECT_DEATH(std::thread([this] { client->unlink(); }).join(), "unlink");
}

} // namespace
