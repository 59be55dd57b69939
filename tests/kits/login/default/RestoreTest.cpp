#include "kits/login/default/OAuthLink.h"
#include "kits/login/default/OAuthLoginFixture.h"

using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString key = QStringLiteral("test client");

class OAuthRestore : public OAuthLoginFixture {
protected:
    void keepLink()
    {
        const OAuthLink link{.accessToken = "kept-access",
                             .refreshToken = "kept-refresh",
                             .refreshTime = 2'000'000'000,
                             .scopes = {QStringLiteral("kept scope")},
                             .authenticationBaseUrl = baseUrl()};
        store->keep(key, secretOf(link));
    }
    /// Once all that has happened so far is told.
    [[nodiscard]] const std::vector<std::string>& settledWords()
    {
        fetch().wait();
        drainMainQueue();
        return journal->words;
    }
};

TEST_F(OAuthRestore, LinksWhatWasKept)
{
    keepLink();
    store->holdReads();
    makeClient();
    EXPECT_FALSE(client->isUserLoggedIn());
    store->releaseReads();
    EXPECT_THAT(wordsAfter(2), ElementsAre("succeeded in", "changed in"));
    EXPECT_TRUE(client->hasAccessToScope(QStringLiteral("kept scope")));
    const QueryEnd end = fetch();
    end.wait();
    EXPECT_EQ(requestsAt(kGraphQlPath).front().header("Authorization"), QByteArray("Bearer kept-access"));
}

TEST_F(OAuthRestore, RestoresWhatALoginHasKept)
{
    server.script(kTokenPath, tokenAnswer("access-1", "refresh-1", "one two", 3600));
    linkAccount();
    makeClient();
    EXPECT_THAT(wordsAfter(2), ElementsAre("succeeded in", "changed in"));
    EXPECT_TRUE(client->hasAccessToScope(QStringLiteral("two")));
}

TEST_F(OAuthRestore, LinksNothingWhereNothingWasKept)
{
    makeClient();
    EXPECT_THAT(settledWords(), IsEmpty());
    EXPECT_FALSE(client->isUserLoggedIn());
}

TEST_F(OAuthRestore, LinksNothingThatIsDamaged)
{
    for (const QByteArray& secret : {QByteArray(), QByteArray("garbage"), QByteArray("{\"version\":1}")}) {
        store->keep(key, secret);
        makeClient();
        EXPECT_THAT(settledWords(), IsEmpty());
        EXPECT_FALSE(client->isUserLoggedIn());
    }
}

TEST_F(OAuthRestore, LinksNothingOfAnotherService)
{
    keepLink();
    QXSDKClientSetup setup = *QXSDKClientSetup::shared();
    setup.authenticationBaseUrl += QStringLiteral("/other");
    QXSDKClientSetup::setShared(setup);
    makeClient();
    EXPECT_THAT(settledWords(), IsEmpty());
    EXPECT_TRUE(store->secret(key));
}

TEST_F(OAuthRestore, LinksNothingOfAnotherClientId)
{
    keepLink();
    QXSDKClientSetup setup = *QXSDKClientSetup::shared();
    setup.clientId = QStringLiteral("other client");
    QXSDKClientSetup::setShared(setup);
    makeClient();
    EXPECT_THAT(settledWords(), IsEmpty());
}

TEST_F(OAuthRestore, ALoginThatComesFirstPrevails)
{
    keepLink();
    store->holdReads();
    makeClient();
    linkAccount();
    store->releaseReads();
    EXPECT_THAT(settledWords(), IsEmpty());
    EXPECT_EQ(requestsAt(kGraphQlPath).front().header("Authorization"), QByteArray("Bearer access-1"));
    EXPECT_FALSE(client->hasAccessToScope(QStringLiteral("kept scope")));
}

TEST_F(OAuthRestore, AnUnlinkThatComesFirstPrevails)
{
    keepLink();
    store->holdReads();
    makeClient();
    client->unlink();
    fetch().wait();
    EXPECT_FALSE(store->secret(key));
    store->releaseReads();
    waitForRequestsAt(kRevokePath, 1);
    EXPECT_EQ(fieldOf(requestsAt(kRevokePath).front().body, QStringLiteral("token")), QStringLiteral("kept-refresh"));
    EXPECT_THAT(settledWords(), IsEmpty());
    EXPECT_FALSE(client->isUserLoggedIn());
}

TEST_F(OAuthRestore, AFailedLoginDoesntStandInItsWay)
{
    keepLink();
    store->holdReads();
    makeClient();
    canOpenBrowser = false;
    login();
    EXPECT_THAT(wordsAfter(3), ElementsAre("start", "failed", "completed"));
    store->releaseReads();
    EXPECT_THAT(wordsAfter(5), ElementsAre("start", "failed", "completed", "succeeded in", "changed in"));
}

TEST_F(OAuthRestore, ClientMayGoFirst)
{
    keepLink();
    store->holdReads();
    makeClient();
    QXSDKLoginClient::setShared(nullptr);
    client.reset();
    store->releaseReads();
    drainMainQueue();
    EXPECT_THAT(journal->words, IsEmpty());
    EXPECT_TRUE(store->secret(key));
}

} // namespace
