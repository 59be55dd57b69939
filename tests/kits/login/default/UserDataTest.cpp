#include "kits/login/default/OAuthLoginFixture.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <thread>

using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QByteArray refusedLink = R"({"error":"invalid_grant"})";

class OAuthUserData : public OAuthLoginFixture {
protected:
    void expectFailure(int statusCode, bool isLoggedOut = false)
    {
        const QueryEnd end = fetch();
        end.wait();
        EXPECT_EQ(end.count(), 1);
        EXPECT_FALSE(end.response());
        EXPECT_EQ(end.error().statusCode, statusCode) << end.error().reason.toStdString();
        EXPECT_EQ(end.isLoggedOut(), isLoggedOut);
    }
    void expectSuccess()
    {
        const QueryEnd end = fetch();
        end.wait();
        EXPECT_TRUE(end.response()) << end.error().reason.toStdString();
    }
    [[nodiscard]] std::vector<QByteArray> tokensSent() const
    {
        std::vector<QByteArray> tokens;
        for (const auto& request : requestsAt(kGraphQlPath)) {
            tokens.push_back(request.header("Authorization").value_or(QByteArray()));
        }
        return tokens;
    }
    /// Links an account whose access token lasts an hour.
    void linkForAnHour()
    {
        server.script(kTokenPath, tokenAnswer("access-1", "refresh-1", {}, 3600));
        linkAccount();
        server.script(kTokenPath, tokenAnswer("access-2", "refresh-2", {}, 3600));
    }
    [[nodiscard]] QByteArray lastTokenForm() const { return requestsAt(kTokenPath).back().body; }
};

TEST_F(OAuthUserData, FailsWithoutAnAccount)
{
    const QueryEnd end = fetch();
    end.wait();
    EXPECT_EQ(end.error(), logoutErrorWithReason(QStringLiteral("No user account linked")));
    EXPECT_TRUE(end.isLoggedOut());
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(OAuthUserData, PostsTheQueryInTheNameOfTheAccount)
{
    linkAccount();
    server.script(kGraphQlPath, ScriptedAnswer::ok(R"({"data":{"me":1},"errors":[]})"));
    QueryEnd end;
    end.sendTo(*client, QStringLiteral("query ($page: String!) {\"ä\"}"),
               QJsonObject{{QStringLiteral("page"), QStringLiteral("kovalin-app")},
                           {QStringLiteral("ids"), QJsonArray{1, QStringLiteral("x")}}});
    end.wait();
    EXPECT_EQ(QJsonDocument(*end.response()).toJson(QJsonDocument::Compact), R"({"data":{"me":1},"errors":[]})");

    const auto request = requestsAt(kGraphQlPath).front();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.header("Authorization"), QByteArray("Bearer access-1"));
    EXPECT_EQ(request.header("Content-Type"), QByteArray("application/json"));
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    EXPECT_EQ(body.value(QStringLiteral("query")).toString(), QStringLiteral("query ($page: String!) {\"ä\"}"));
    EXPECT_EQ(body.value(QStringLiteral("variables")).toObject().value(QStringLiteral("page")).toString(),
              QStringLiteral("kovalin-app"));
}

TEST_F(OAuthUserData, SendsNoVariablesWhereThereAreNone)
{
    linkAccount();
    expectSuccess();
    EXPECT_EQ(requestsAt(kGraphQlPath).front().body, R"({"query":"{me{kovalin{avatar}}}"})");
}

TEST_F(OAuthUserData, AsksTheServerOfTheMoment)
{
    linkAccount();
    LoopbackServer other;
    other.script(kGraphQlPath, ScriptedAnswer::ok("{}"));
    QXSDKClientSetup setup = *QXSDKClientSetup::shared();
    setup.apiBaseUrl = other.url(QStringLiteral("/")).toString().chopped(1);
    QXSDKClientSetup::setShared(setup);
    expectSuccess();
    EXPECT_EQ(other.requests().size(), 1U);
}

TEST_F(OAuthUserData, FailsWithTheStatusOfTheAnswer)
{
    linkAccount();
    for (const int status : {201, 204, 400, 403, 404, 429, 500, 503}) {
        server.script(kGraphQlPath, ScriptedAnswer::withStatus(status, "{}"));
        expectFailure(status);
    }
    EXPECT_TRUE(client->isUserLoggedIn());
}

TEST_F(OAuthUserData, FailsWhereTheAnswerIsNoJsonObject)
{
    linkAccount();
    for (const QByteArray& body : {QByteArray(), QByteArray("<html>"), QByteArray("[{}]"), QByteArray("{\"a\":")}) {
        server.script(kGraphQlPath, ScriptedAnswer::ok(body));
        expectFailure(500);
    }
}

TEST_F(OAuthUserData, FailsWithoutANumberWhereThereIsNoAnswer)
{
    linkAccount();
    server.script(kGraphQlPath, ScriptedAnswer::closed());
    expectFailure(0);
    server.stopListening();
    QXSDKClientSetup setup = *QXSDKClientSetup::shared();
    setup.apiBaseUrl = QString();
    QXSDKClientSetup::setShared(setup);
    expectFailure(0);
}

TEST_F(OAuthUserData, FailsWithoutANumberWhereTheAnswerNeverComes)
{
    linkAccount();
    requestTimeout = std::chrono::milliseconds(20);
    makeClient();
    ASSERT_TRUE(waitFor([&] { return client->isUserLoggedIn(); }));
    server.script(kGraphQlPath, ScriptedAnswer::never());
    expectFailure(0);
}

TEST_F(OAuthUserData, UsesAnAccessTokenForAsLongAsItLasts)
{
    linkForAnHour();
    clock.advance(std::chrono::seconds(3600 - 61));
    expectSuccess();
    EXPECT_THAT(tokensSent(), ElementsAre("Bearer access-1"));
}

TEST_F(OAuthUserData, ReplacesAnAccessTokenBeforeItRunsOut)
{
    linkForAnHour();
    clock.advance(std::chrono::seconds(3600 - 60));
    expectSuccess();
    EXPECT_THAT(tokensSent(), ElementsAre("Bearer access-2"));
    EXPECT_EQ(fieldOf(lastTokenForm(), QStringLiteral("grant_type")), QStringLiteral("refresh_token"));
    EXPECT_EQ(fieldOf(lastTokenForm(), QStringLiteral("refresh_token")), QStringLiteral("refresh-1"));
    EXPECT_EQ(fieldOf(lastTokenForm(), QStringLiteral("client_id")), QStringLiteral("test client"));
    EXPECT_TRUE(store->secret(QStringLiteral("test client"))->contains("access-2"));
    EXPECT_THAT(journal->words, IsEmpty());

    clock.advance(std::chrono::seconds(3600));
    expectSuccess();
    EXPECT_EQ(fieldOf(lastTokenForm(), QStringLiteral("refresh_token")), QStringLiteral("refresh-2"));
}

TEST_F(OAuthUserData, SendsATokenThatCantBeReplacedThoughItHasRunOut)
{
    server.script(kTokenPath, tokenAnswer("access-1", {}, {}, 10));
    linkAccount();
    clock.advance(std::chrono::hours(1));
    expectSuccess();
    EXPECT_THAT(tokensSent(), ElementsAre("Bearer access-1"));
}

TEST_F(OAuthUserData, QueriesAtTheSameTimeShareOneRefresh)
{
    linkForAnHour();
    clock.advance(std::chrono::hours(1));
    server.script(kTokenPath, ScriptedAnswer::held(tokenAnswer("access-2").body));
    std::vector<QueryEnd> ends(8);
    ends[0].sendTo(*client);
    waitForRequestsAt(kTokenPath, 2);
    for (std::size_t i = 1; i < ends.size(); ++i) {
        ends[i].sendTo(*client);
    }
    server.release(kTokenPath);
    for (const QueryEnd& end : ends) {
        end.wait();
        EXPECT_TRUE(end.response());
    }
    EXPECT_EQ(requestsAt(kTokenPath).size(), 2U);
    EXPECT_THAT(tokensSent(), testing::Each(QByteArray("Bearer access-2")));
}

TEST_F(OAuthUserData, ReplacesARefusedAccessTokenOnceAQuery)
{
    linkForAnHour();
    server.script(kGraphQlPath, ScriptedAnswer::withStatus(401));
    expectFailure(401);
    EXPECT_THAT(tokensSent(), ElementsAre("Bearer access-1", "Bearer access-2"));
    EXPECT_EQ(requestsAt(kTokenPath).size(), 2U);
    EXPECT_TRUE(client->isUserLoggedIn());
    EXPECT_THAT(journal->words, IsEmpty());
}

TEST_F(OAuthUserData, SendsAQueryAgainWithTheNewToken)
{
    linkForAnHour();
    server.script(kGraphQlPath, ScriptedAnswer::withStatus(401));
    server.script(kTokenPath, ScriptedAnswer::held(tokenAnswer("access-2").body));
    const QueryEnd end = fetch();
    waitForRequestsAt(kTokenPath, 2);
    server.script(kGraphQlPath, ScriptedAnswer::ok("{}"));
    server.release(kTokenPath);
    end.wait();
    EXPECT_TRUE(end.response());
    EXPECT_THAT(tokensSent(), ElementsAre("Bearer access-1", "Bearer access-2"));
    const auto requests = requestsAt(kGraphQlPath);
    EXPECT_EQ(requests[0].body, requests[1].body);
}

TEST_F(OAuthUserData, DoesntReplaceATokenThatAnotherQueryHasReplaced)
{
    linkForAnHour();
    server.script(kGraphQlPath, ScriptedAnswer{.status = 401, .hold = ScriptedAnswer::Hold::BeforeHead});
    std::vector<QueryEnd> ends(4);
    for (QueryEnd& end : ends) {
        end.sendTo(*client);
    }
    server.waitForHeld(4);
    server.script(kGraphQlPath, ScriptedAnswer::ok("{}"));
    server.release(kGraphQlPath);
    for (const QueryEnd& end : ends) {
        end.wait();
        EXPECT_TRUE(end.response());
    }
    EXPECT_EQ(requestsAt(kTokenPath).size(), 2U);
}

TEST_F(OAuthUserData, UnlinksWhereTheLinkIsntRenewed)
{
    linkForAnHour();
    clock.advance(std::chrono::hours(1));
    server.script(kTokenPath, ScriptedAnswer::withStatus(400, refusedLink));
    expectFailure(401, true);
    EXPECT_FALSE(client->isUserLoggedIn());
    EXPECT_FALSE(store->secret(QStringLiteral("test client")));
    EXPECT_THAT(wordsAfter(2), ElementsAre("unlinked", "changed"));
    EXPECT_TRUE(requestsAt(kGraphQlPath).empty());
    expectFailure(401, true);
    EXPECT_EQ(requestsAt(kTokenPath).size(), 2U);
}

TEST_F(OAuthUserData, UnlinksWhereARefusedTokenCantBeReplaced)
{
    server.script(kTokenPath, tokenAnswer("access-1"));
    linkAccount();
    server.script(kGraphQlPath, ScriptedAnswer::withStatus(401));
    expectFailure(401, true);
    EXPECT_FALSE(client->isUserLoggedIn());
    EXPECT_THAT(wordsAfter(2), ElementsAre("unlinked", "changed"));
}

TEST_F(OAuthUserData, KeepsTheLinkWhereTheRefreshFailsForAnotherReason)
{
    linkForAnHour();
    clock.advance(std::chrono::hours(1));
    const std::vector<std::pair<ScriptedAnswer, int>> answers = {
        {ScriptedAnswer::closed(), 0},
        {ScriptedAnswer::cut("{\"access_token\":\"x\"}", 5), 0},
        {ScriptedAnswer::withStatus(503), 503},
        {ScriptedAnswer::withStatus(400, R"({"error":"invalid_client"})"), 400},
        {ScriptedAnswer::withStatus(401, refusedLink), 401},
        {ScriptedAnswer::ok("garbage"), 500},
    };
    for (const auto& [answer, statusCode] : answers) {
        server.script(kTokenPath, answer);
        expectFailure(statusCode);
        EXPECT_TRUE(client->isUserLoggedIn());
    }
    server.script(kTokenPath, tokenAnswer("access-3"));
    expectSuccess();
    EXPECT_THAT(tokensSent(), ElementsAre("Bearer access-3"));
    EXPECT_THAT(journal->words, IsEmpty());
}

TEST_F(OAuthUserData, SendsQueriesAgainForAnAccountThatIsLinkedMeanwhile)
{
    linkAccount();
    server.script(kGraphQlPath, ScriptedAnswer::held(R"({"whose":"old"})"));
    const QueryEnd end = fetch();
    server.waitForHeld(1);
    server.script(kTokenPath, tokenAnswer("access-new"));
    server.script(kGraphQlPath, ScriptedAnswer::ok(R"({"whose":"new"})"));
    linkAccount();
    server.release(kGraphQlPath);
    end.wait();
    ASSERT_TRUE(end.response());
    EXPECT_EQ(end.response()->value(QStringLiteral("whose")).toString(), QStringLiteral("new"));
    EXPECT_THAT(tokensSent(), ElementsAre("Bearer access-1", "Bearer access-new"));
}

TEST_F(OAuthUserData, FailsWhenTheClientGoes)
{
    linkAccount();
    server.script(kGraphQlPath, ScriptedAnswer::never());
    const QueryEnd end = fetch();
    waitForRequestsAt(kGraphQlPath, 1);
    QXSDKLoginClient::setShared(nullptr);
    client.reset();
    end.wait();
    EXPECT_EQ(end.count(), 1);
    EXPECT_EQ(end.error().statusCode, 0);
    EXPECT_FALSE(end.isLoggedOut());
    EXPECT_TRUE(store->secret(QStringLiteral("test client")));
}

TEST_F(OAuthUserData, KeepsTheNewTokenOfARefreshThatTheClientDoesntSee)
{
    linkForAnHour();
    clock.advance(std::chrono::hours(1));
    server.script(kTokenPath, ScriptedAnswer::held(tokenAnswer("access-2", "refresh-2").body));
    const QueryEnd end = fetch();
    waitForRequestsAt(kTokenPath, 2);
    QXSDKLoginClient::setShared(nullptr);
    client.reset();
    end.wait();
    EXPECT_EQ(end.error().statusCode, 0);
    server.release(kTokenPath);
    ASSERT_TRUE(waitFor([&] { return store->secret(QStringLiteral("test client"))->contains("refresh-2"); }));
    EXPECT_TRUE(requestsAt(kGraphQlPath).empty());
}

TEST_F(OAuthUserData, ACallbackMayDestroyTheClient)
{
    linkAccount();
    QXSDKLoginClient::setShared(nullptr);
    std::atomic<bool> isCalled = false;
    auto* const raw = client.get();
    raw->fetchUserDataWithQuery(
        QStringLiteral("{me}"), std::nullopt,
        [&isCalled, held = std::move(client)](const QJsonObject&) mutable {
            held.reset();
            isCalled = true;
        },
        [](const QXSDKError&, bool) { FAIL(); });
    EXPECT_TRUE(waitFor([&] { return isCalled.load(); }));
}

} // namespace
