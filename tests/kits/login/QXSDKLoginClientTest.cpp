#include "kits/login/QXSDKLoginClient.h"

#include "kits/login/LoginJournal.h"
#include "support/WaitFor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Shows what implementations inherit.
class TellingClient final : public QXSDKLoginClient {
public:
    [[nodiscard]] bool isUserLoggedIn() const override { return false; }
    [[nodiscard]] bool hasAccessToScope(const QString&) const override { return false; }
    void fetchUserDataWithQuery(const QString&, const std::optional<QJsonObject>&, Success, Failure) override {}
    void loginFromViewController(QObject*, LoginCompletion) override {}
    void unlink() override {}

    using QXSDKLoginClient::tellLinkFailed;
    using QXSDKLoginClient::tellLinkSucceeded;
    using QXSDKLoginClient::tellLoginStarted;
    using QXSDKLoginClient::tellUnlinked;
};

class QXSDKLoginClientTest : public testing::Test {
protected:
    ~QXSDKLoginClientTest() override { QXSDKLoginClient::setShared(nullptr); }

    const std::shared_ptr<LoginJournal> journal = LoginJournal::observing();
};

TEST_F(QXSDKLoginClientTest, HasNoAccountBeforeOneIsInstalled)
{
    const auto client = QXSDKLoginClient::shared();
    ASSERT_NE(client, nullptr);
    EXPECT_FALSE(client->isUserLoggedIn());
    EXPECT_FALSE(client->hasAccessToScope(QStringLiteral("any")));
    client->unlink();
    drainMainQueue();
    EXPECT_THAT(journal->words, IsEmpty());
}

TEST_F(QXSDKLoginClientTest, FailsAQueryBeforeOneIsInstalled)
{
    int failures = 0;
    QXSDKLoginClient::shared()->fetchUserDataWithQuery(
        QStringLiteral("{me}"), std::nullopt, [](const QJsonObject&) { FAIL(); },
        [&](const QXSDKError& error, bool isLoggedOut) {
            ++failures;
            EXPECT_EQ(error.statusCode, 401);
            EXPECT_TRUE(isLoggedOut);
        });
    EXPECT_EQ(failures, 1);
}

TEST_F(QXSDKLoginClientTest, FailsALoginBeforeOneIsInstalled)
{
    QXSDKLoginClient::shared()->loginFromViewController(nullptr, [&](const std::optional<QXSDKError>& error) {
        EXPECT_TRUE(error.has_value());
        journal->write("completed");
    });
    EXPECT_THAT(journal->words, IsEmpty());
    ASSERT_TRUE(waitFor([&] { return journal->words.size() >= 3; }));
    EXPECT_THAT(journal->words, ElementsAre("start", "failed", "completed"));
    QXSDKLoginClient::shared()->loginFromViewController(nullptr, {});
    ASSERT_TRUE(waitFor([&] { return journal->words.size() >= 5; }));
}

TEST_F(QXSDKLoginClientTest, InstallsAClientAndTakesItAway)
{
    const auto none = QXSDKLoginClient::shared();
    const auto client = std::make_shared<TellingClient>();
    QXSDKLoginClient::setShared(client);
    EXPECT_EQ(QXSDKLoginClient::shared(), client);
    QXSDKLoginClient::setShared(nullptr);
    EXPECT_EQ(QXSDKLoginClient::shared(), none);
}

TEST_F(QXSDKLoginClientTest, TellsObserversBeforeTheNotificationAndBeforeTheRest)
{
    TellingClient::tellLinkSucceeded([this] { journal->write("then"); });
    EXPECT_THAT(journal->words, IsEmpty());
    ASSERT_TRUE(waitFor([&] { return journal->words.size() >= 3; }));
    EXPECT_THAT(journal->words, ElementsAre("succeeded", "changed", "then"));
}

TEST_F(QXSDKLoginClientTest, PostsNoStateChangeForAFailure)
{
    TellingClient::tellLinkFailed();
    TellingClient::tellUnlinked();
    ASSERT_TRUE(waitFor([&] { return journal->words.size() >= 3; }));
    EXPECT_THAT(journal->words, ElementsAre("failed", "unlinked", "changed"));
}

TEST_F(QXSDKLoginClientTest, TellsOnTheMainThreadInTheOrderOfTheCalls)
{
    std::thread([] {
        TellingClient::tellLoginStarted();
        TellingClient::tellLinkSucceeded();
        TellingClient::tellUnlinked();
    }).join();
    ASSERT_TRUE(waitFor([&] { return journal->words.size() >= 5; }));
    EXPECT_THAT(journal->words, ElementsAre("start", "succeeded", "changed", "unlinked", "changed"));
}

TEST_F(QXSDKLoginClientTest, KeepsNoObserverAlive)
{
    auto brief = LoginJournal::observing();
    const std::weak_ptr<LoginJournal> watch = brief;
    brief.reset();
    EXPECT_TRUE(watch.expired());
    TellingClient::tellLinkFailed();
    ASSERT_TRUE(waitFor([&] { return journal->words.size() == 1; }));
}

TEST_F(QXSDKLoginClientTest, TellsAnObserverOnceThoughItWasAddedTwice)
{
    QXSDKLoginClient::addLoginStatusObserver(journal);
    TellingClient::tellLinkFailed([this] { journal->write("then"); });
    ASSERT_TRUE(waitFor([&] { return journal->words.size() >= 2; }));
    EXPECT_THAT(journal->words, ElementsAre("failed", "then"));
}

TEST_F(QXSDKLoginClientTest, TellsAnObserverThatLeftNothing)
{
    QXSDKLoginClient::removeLoginStatusObserver(journal.get());
    TellingClient::tellLinkFailed([this] { journal->write("then"); });
    ASSERT_TRUE(waitFor([&] { return !journal->words.empty(); }));
    EXPECT_THAT(journal->words, ElementsAre("then"));
}

TEST_F(QXSDKLoginClientTest, KeepsItsObserversWhenAnotherClientIsInstalled)
{
    QXSDKLoginClient::setShared(std::make_shared<TellingClient>());
    TellingClient::tellLinkFailed();
    ASSERT_TRUE(waitFor([&] { return !journal->words.empty(); }));
    EXPECT_THAT(journal->words, ElementsAre("failed"));
}

} // namespace
