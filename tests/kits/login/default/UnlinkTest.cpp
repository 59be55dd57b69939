#include "kits/login/default/OAuthLoginFixture.h"

using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString key = QStringLiteral("test client");

class OAuthUnlink : public OAuthLoginFixture {
protected:
    void expectLoggedOut(const QueryEnd& end)
    {
        end.wait();
        EXPECT_EQ(end.count(), 1);
        EXPECT_EQ(end.error().statusCode, 401);
        EXPECT_TRUE(end.isLoggedOut());
    }
};

TEST_F(OAuthUnlink, TakesTheLinkAwayAtOnce)
{
    linkAccount();
    client->unlink();
    EXPECT_FALSE(client->isUserLoggedIn());
    EXPECT_FALSE(client->hasAccessToScope(baseUrl() + QStringLiteral("/oauth2/api/user.kovalin.avatar")));
    EXPECT_THAT(journal->words, IsEmpty());
    EXPECT_THAT(wordsAfter(2), ElementsAre("unlinked", "changed"));
    EXPECT_FALSE(store->secret(key));
    expectLoggedOut(fetch());
}

TEST_F(OAuthUnlink, RevokesTheRefreshToken)
{
    linkAccount();
    client->unlink();
    waitForRequestsAt(kRevokePath, 1);
    const QByteArray form = requestsAt(kRevokePath).front().body;
    EXPECT_EQ(fieldOf(form, QStringLiteral("token")), QStringLiteral("refresh-1"));
    EXPECT_EQ(fieldOf(form, QStringLiteral("token_type_hint")), QStringLiteral("refresh_token"));
    EXPECT_EQ(fieldOf(form, QStringLiteral("client_id")), key);
}

TEST_F(OAuthUnlink, RevokesTheAccessTokenWhereThereIsNoOther)
{
    server.script(kTokenPath, tokenAnswer("access-1"));
    linkAccount();
    client->unlink();
    waitForRequestsAt(kRevokePath, 1);
    const QByteArray form = requestsAt(kRevokePath).front().body;
    EXPECT_EQ(fieldOf(form, QStringLiteral("token")), QStringLiteral("access-1"));
    EXPECT_EQ(fieldOf(form, QStringLiteral("token_type_hint")), QStringLiteral("access_token"));
}

TEST_F(OAuthUnlink, UnlinksWhereTheServerRevokesNothing)
{
    linkAccount();
    server.script(kRevokePath, ScriptedAnswer::withStatus(500));
    client->unlink();
    EXPECT_THAT(wordsAfter(2), ElementsAre("unlinked", "changed"));
    linkAccount();
    server.stopListening();
    client->unlink();
    EXPECT_THAT(wordsAfter(2), ElementsAre("unlinked", "changed"));
}

TEST_F(OAuthUnlink, DoesNothingWithoutAnAccount)
{
    client->unlink();
    expectLoggedOut(fetch());
    drainMainQueue();
    EXPECT_THAT(journal->words, IsEmpty());
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(OAuthUnlink, TellsOnceThoughItIsCalledTwice)
{
    linkAccount();
    client->unlink();
    client->unlink();
    expectLoggedOut(fetch());
    drainMainQueue();
    EXPECT_THAT(wordsAfter(2), ElementsAre("unlinked", "changed"));
}

TEST_F(OAuthUnlink, AnAnswerForTheUnlinkedAccountIsntGivenOut)
{
    linkAccount();
    server.script(kGraphQlPath, ScriptedAnswer::held(R"({"data":{}})"));
    const QueryEnd end = fetch();
    server.waitForHeld(1);
    client->unlink();
    server.release(kGraphQlPath);
    expectLoggedOut(end);
}

TEST_F(OAuthUnlink, EndsQueriesAtOnce)
{
    linkAccount();
    server.script(kGraphQlPath, ScriptedAnswer::never());
    std::vector<QueryEnd> ends(10);
    for (QueryEnd& end : ends) {
        end.sendTo(*client);
    }
    waitForRequestsAt(kGraphQlPath, 1);
    client->unlink();
    for (const QueryEnd& end : ends) {
        expectLoggedOut(end);
    }
}

TEST_F(OAuthUnlink, EndsQueriesThatWaitForARefresh)
{
    server.script(kTokenPath, tokenAnswer("access-1", "refresh-1", {}, 3600));
    linkAccount();
    clock.advance(std::chrono::hours(1));
    server.script(kTokenPath, ScriptedAnswer::held(tokenAnswer("access-2", "refresh-2").body));
    const QueryEnd end = fetch();
    waitForRequestsAt(kTokenPath, 2);
    client->unlink();
    expectLoggedOut(end);
    waitForRequestsAt(kRevokePath, 1);

    // What the server made meanwhile is of nobody any more.
    server.release(kTokenPath);
    waitForRequestsAt(kRevokePath, 2);
    EXPECT_EQ(fieldOf(requestsAt(kRevokePath)[0].body, QStringLiteral("token")), QStringLiteral("refresh-1"));
    EXPECT_EQ(fieldOf(requestsAt(kRevokePath)[1].body, QStringLiteral("token")), QStringLiteral("refresh-2"));
    EXPECT_FALSE(client->isUserLoggedIn());
    EXPECT_FALSE(store->secret(key));
    EXPECT_THAT(wordsAfter(2), ElementsAre("unlinked", "changed"));
}

TEST_F(OAuthUnlink, GivesUpALoginUnderWay)
{
    linkAccount();
    redirect = [](const QByteArray&) {
        return QByteArray();
    };
    login();
    client->unlink();
    waitForLogins(2);
    EXPECT_TRUE(loginEnds.back());
    EXPECT_EQ(wordsAfter(5).size(), 5U);
    EXPECT_THAT(journal->words, testing::IsSupersetOf({"start", "failed", "completed", "unlinked", "changed"}));
}

TEST_F(OAuthUnlink, ALoginAfterItLinksAgain)
{
    linkAccount();
    client->unlink();
    login();
    waitForLogins(2);
    EXPECT_TRUE(client->isUserLoggedIn());
    EXPECT_THAT(wordsAfter(6), ElementsAre(testing::StartsWith("unlinked"), testing::StartsWith("changed"), "start",
                                           "succeeded in", "changed in", "completed in"));
    EXPECT_TRUE(store->secret(key));
}

} // namespace
