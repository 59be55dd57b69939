#include "kits/login/default/OAuthLoginFixture.h"

#include <QtCore/QCryptographicHash>

#include <set>

using namespace kovalin::test;
using testing::ElementsAre;

namespace {

QByteArray challengeOf(const QByteArray& verifier)
{
    return QCryptographicHash::hash(verifier, QCryptographicHash::Sha256)
        .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

class OAuthLogin : public OAuthLoginFixture {
protected:
    /// Whether a login that goes on like this fails as it has to, with this status.
    void expectFailure(int statusCode)
    {
        const bool wasLinked = client->isUserLoggedIn();
        const std::size_t ends = loginEnds.size();
        journal->words.clear();
        login();
        waitForLogins(ends + 1);
        ASSERT_TRUE(loginEnds.back());
        EXPECT_EQ(loginEnds.back()->statusCode, statusCode) << loginEnds.back()->reason.toStdString();
        const std::string in = wasLinked ? " in" : "";
        EXPECT_THAT(wordsAfter(3), ElementsAre("start", "failed" + in, "completed" + in));
        EXPECT_EQ(client->isUserLoggedIn(), wasLinked);
    }
};

TEST_F(OAuthLogin, SendsTheBrowserToTheAuthorizationPage)
{
    linkAccount();
    ASSERT_EQ(opened.size(), 1U);
    EXPECT_EQ(opened.front().toString(QUrl::RemoveQuery), baseUrl() + QStringLiteral("/oauth2/authorize"));
    EXPECT_EQ(asked(QStringLiteral("response_type")), QStringLiteral("code"));
    EXPECT_EQ(asked(QStringLiteral("client_id")), QStringLiteral("test client"));
    EXPECT_EQ(asked(QStringLiteral("scope")), baseUrl() + QStringLiteral("/oauth2/api/user.kovalin.avatar"));
    EXPECT_EQ(asked(QStringLiteral("code_challenge_method")), QStringLiteral("S256"));
    EXPECT_EQ(QUrl(asked(QStringLiteral("redirect_uri"))).host(), QStringLiteral("127.0.0.1"));
    EXPECT_EQ(requestsAt("/oauth2/authorize").size(), 1U);
}

TEST_F(OAuthLogin, ProvesThatItHasAskedForTheCode)
{
    linkAccount();
    const auto requests = requestsAt(kTokenPath);
    ASSERT_EQ(requests.size(), 1U);
    const QByteArray& form = requests.front().body;
    EXPECT_EQ(requests.front().method, "POST");
    EXPECT_EQ(requests.front().header("Content-Type"), QByteArray("application/x-www-form-urlencoded"));
    EXPECT_EQ(fieldOf(form, QStringLiteral("grant_type")), QStringLiteral("authorization_code"));
    EXPECT_EQ(fieldOf(form, QStringLiteral("client_id")), QStringLiteral("test client"));
    EXPECT_EQ(fieldOf(form, QStringLiteral("redirect_uri")), asked(QStringLiteral("redirect_uri")));
    EXPECT_EQ(fieldOf(form, QStringLiteral("code")), QStringLiteral("the-code"));
    const QByteArray verifier = fieldOf(form, QStringLiteral("code_verifier")).toLatin1();
    EXPECT_GE(verifier.size(), 43);
    EXPECT_EQ(QString::fromLatin1(challengeOf(verifier)), asked(QStringLiteral("code_challenge")));
    EXPECT_FALSE(opened.front().toEncoded().contains(verifier));
}

TEST_F(OAuthLogin, SendsOnTheCodeThatWasMeant)
{
    redirect = [](const QByteArray& state) -> QByteArray {
        return "state=" + state + "&code=4%2F0a%2Bb%3D+c%20d%26e%C3%A4";
    };
    linkAccount();
    const QByteArray form = requestsAt(kTokenPath).front().body;
    EXPECT_EQ(fieldOf(form, QStringLiteral("code")), QStringLiteral("4/0a+b= c d&eä"));
    EXPECT_TRUE(form.contains("code=4%2F0a%2Bb%3D%20c%20d%26e%C3%A4&")) << form.constData();
}

TEST_F(OAuthLogin, HasSecretsOfItsOwnEachTime)
{
    std::set<QString> secrets;
    for (int i = 0; i < 3; ++i) {
        linkAccount();
        secrets.insert(asked(QStringLiteral("state")));
        secrets.insert(asked(QStringLiteral("code_challenge")));
    }
    EXPECT_EQ(secrets.size(), 6U);
}

TEST_F(OAuthLogin, IsLinkedWhenItTellsOf)
{
    EXPECT_FALSE(client->isUserLoggedIn());
    login();
    EXPECT_THAT(wordsAfter(4), ElementsAre("start", "succeeded in", "changed in", "completed in"));
    EXPECT_EQ(loginEnds.size(), 1U);
    EXPECT_TRUE(store->secret(QStringLiteral("test client")).has_value());
}

TEST_F(OAuthLogin, NeedsNoCompletion)
{
    client->loginFromViewController(nullptr, {});
    EXPECT_THAT(wordsAfter(3), ElementsAre("start", "succeeded in", "changed in"));
    canOpenBrowser = false;
    client->loginFromViewController(nullptr, {});
    EXPECT_EQ(wordsAfter(5).back(), "failed in");
}

TEST_F(OAuthLogin, AsksForTheScopesOfTheOptions)
{
    auto given = options();
    given.scopes = {QStringLiteral("one"), QStringLiteral("https://two/?a=b&c")};
    client = std::make_shared<QXSDKOAuthLoginClient>(given);
    QXSDKLoginClient::setShared(client);
    linkAccount();
    EXPECT_EQ(asked(QStringLiteral("scope")), QStringLiteral("one https://two/?a=b&c"));
    EXPECT_TRUE(client->hasAccessToScope(QStringLiteral("one")));
    EXPECT_TRUE(client->hasAccessToScope(QStringLiteral("https://two/?a=b&c")));
    EXPECT_FALSE(client->hasAccessToScope(QStringLiteral("three")));
}

TEST_F(OAuthLogin, KnowsWhatWasGranted)
{
    const QString avatar = baseUrl() + QStringLiteral("/oauth2/api/user.kovalin.avatar");
    EXPECT_FALSE(client->hasAccessToScope(avatar));
    server.script(kTokenPath, tokenAnswer("a", {}, "something else"));
    linkAccount();
    EXPECT_FALSE(client->hasAccessToScope(avatar));
    EXPECT_TRUE(client->hasAccessToScope(QStringLiteral("else")));
    server.script(kTokenPath, tokenAnswer("b"));
    linkAccount();
    EXPECT_TRUE(client->hasAccessToScope(avatar));
    EXPECT_FALSE(client->hasAccessToScope(QStringLiteral("else")));
}

TEST_F(OAuthLogin, FailsWhereTheUserRefuses)
{
    redirect = [](const QByteArray& state) -> QByteArray {
        return "error=access_denied&state=" + state;
    };
    expectFailure(403);
    EXPECT_TRUE(requestsAt(kTokenPath).empty());
}

TEST_F(OAuthLogin, FailsWhereTheServiceRefuses)
{
    redirect = [](const QByteArray& state) -> QByteArray {
        return "error=server_error&error_description=%3Cscript%3E&code=x&state=" + state;
    };
    expectFailure(0);
    EXPECT_TRUE(requestsAt(kTokenPath).empty());
}

TEST_F(OAuthLogin, FailsWhereTheRedirectIsOfAnotherLogin)
{
    for (const QByteArray& query : {QByteArray("code=x&state=other"), QByteArray("code=x"), QByteArray("code=x&state"),
                                    QByteArray("error=access_denied&state=other")}) {
        redirect = [query](const QByteArray&) {
            return query;
        };
        expectFailure(0);
    }
    redirect = [](const QByteArray& state) -> QByteArray {
        return "code=x&state=other&state=" + state;
    };
    expectFailure(0);
    EXPECT_TRUE(requestsAt(kTokenPath).empty());
}

TEST_F(OAuthLogin, FailsWhereTheRedirectHasNoCode)
{
    redirect = [](const QByteArray& state) -> QByteArray {
        return "code=&state=" + state;
    };
    expectFailure(0);
}

TEST_F(OAuthLogin, FailsWhereTheTokenEndpointRefuses)
{
    for (const int status : {400, 401, 403, 404, 500, 503}) {
        server.script(kTokenPath, ScriptedAnswer::withStatus(status, R"({"error":"invalid_grant"})"));
        expectFailure(status);
    }
}

TEST_F(OAuthLogin, FailsWhereTheTokenEndpointTalksNonsense)
{
    for (const QByteArray& body : {QByteArray("<html>"), QByteArray(""), QByteArray("{}"), QByteArray("[1]")}) {
        server.script(kTokenPath, ScriptedAnswer::ok(body));
        expectFailure(500);
    }
}

TEST_F(OAuthLogin, FailsWhereTheTokenEndpointBreaksOff)
{
    server.script(kTokenPath, ScriptedAnswer::closed());
    expectFailure(0);
    server.script(kTokenPath, ScriptedAnswer::cut(R"({"access_token":"a"})", 10));
    expectFailure(0);
    server.script(kTokenPath, ScriptedAnswer::garbage("no HTTP at all"));
    expectFailure(0);
}

TEST_F(OAuthLogin, FailsWhereTheTokenEndpointNeverAnswers)
{
    requestTimeout = std::chrono::milliseconds(20);
    makeClient();
    server.script(kTokenPath, ScriptedAnswer::never());
    expectFailure(0);
}

TEST_F(OAuthLogin, FailsWhereTheBrowserCantBeOpened)
{
    canOpenBrowser = false;
    expectFailure(0);
}

TEST_F(OAuthLogin, FailsWhereNothingIsSetUp)
{
    for (const QString& address :
         {QString(), QStringLiteral("no address"), QStringLiteral("file:///etc"), QStringLiteral("http://")}) {
        QXSDKClientSetup::setShared({.clientId = QStringLiteral("test client"), .authenticationBaseUrl = address});
        expectFailure(0);
    }
    EXPECT_TRUE(opened.empty());
}

TEST_F(OAuthLogin, FailsWhereTheRedirectNeverComes)
{
    redirect = [](const QByteArray&) {
        return QByteArray();
    };
    login();
    ASSERT_EQ(timers.size(), 1U);
    EXPECT_EQ(timers.front().delay, std::chrono::minutes(10));
    drainMainQueue();
    EXPECT_TRUE(loginEnds.empty());
    timers.front().due();
    waitForLogins(1);
    EXPECT_EQ(loginEnds.front()->statusCode, 0);
    EXPECT_THAT(wordsAfter(3), ElementsAre("start", "failed", "completed"));
}

TEST_F(OAuthLogin, ATimerThatComesDueAfterTheEndDoesNothing)
{
    linkAccount();
    EXPECT_TRUE(timers.front().held.expired());
    timers.front().due();
    drainMainQueue();
    EXPECT_EQ(loginEnds.size(), 1U);
}

TEST_F(OAuthLogin, AnEarlierLoginGivesWay)
{
    const auto comesBack = redirect;
    redirect = [](const QByteArray&) {
        return QByteArray();
    };
    login();
    redirect = comesBack;
    login();
    waitForLogins(2);
    EXPECT_TRUE(loginEnds[0]);
    EXPECT_FALSE(loginEnds[1]);
    EXPECT_THAT(wordsAfter(7), ElementsAre("start", testing::StartsWith("failed"), testing::StartsWith("completed"),
                                           "start", "succeeded in", "changed in", "completed in"));
}

TEST_F(OAuthLogin, ALoginMayBeginWhileTheBrowserIsOpened)
{
    auto given = options();
    bool isFirst = true;
    given.openUrl = [&, open = given.openUrl](const QUrl& url) {
        if (std::exchange(isFirst, false)) {
            login();
            return false;
        }
        return open(url);
    };
    client = std::make_shared<QXSDKOAuthLoginClient>(given);
    QXSDKLoginClient::setShared(client);
    login();
    waitForLogins(2);
    EXPECT_TRUE(loginEnds[0]);
    EXPECT_FALSE(loginEnds[1]);
    EXPECT_TRUE(client->isUserLoggedIn());
}

TEST_F(OAuthLogin, AnEarlierLoginGivesWayWhileItFetchesItsToken)
{
    server.script(kTokenPath, ScriptedAnswer::held(tokenAnswer("late").body));
    login();
    waitForRequestsAt(kTokenPath, 1);
    server.script(kTokenPath, tokenAnswer("early"));
    login();
    waitForLogins(2);
    EXPECT_TRUE(loginEnds[0]);
    EXPECT_FALSE(loginEnds[1]);
    server.release(kTokenPath);
    const QueryEnd end = fetch();
    end.wait();
    EXPECT_EQ(requestsAt(kGraphQlPath).front().header("Authorization"), QByteArray("Bearer early"));
}

TEST_F(OAuthLogin, AFailureKeepsWhatWasLinked)
{
    linkAccount();
    const auto secret = store->secret(QStringLiteral("test client"));
    redirect = [](const QByteArray& state) -> QByteArray {
        return "error=access_denied&state=" + state;
    };
    expectFailure(403);
    EXPECT_EQ(store->secret(QStringLiteral("test client")), secret);
    const QueryEnd end = fetch();
    end.wait();
    EXPECT_TRUE(end.response());
}

TEST_F(OAuthLogin, ALoginWhileLinkedReplacesTheLink)
{
    server.script(kTokenPath, tokenAnswer("old", {}, "few"));
    linkAccount();
    server.script(kTokenPath, tokenAnswer("new", {}, "few more"));
    login();
    EXPECT_THAT(wordsAfter(4), ElementsAre("start", "succeeded in", "changed in", "completed in"));
    EXPECT_TRUE(client->hasAccessToScope(QStringLiteral("more")));
    const QueryEnd end = fetch();
    end.wait();
    EXPECT_EQ(requestsAt(kGraphQlPath).back().header("Authorization"), QByteArray("Bearer new"));
    EXPECT_TRUE(requestsAt(kRevokePath).empty());
}

TEST_F(OAuthLogin, EndsWithTheClient)
{
    redirect = [](const QByteArray&) {
        return QByteArray();
    };
    login();
    QXSDKLoginClient::setShared(nullptr);
    client.reset();
    waitForLogins(1);
    EXPECT_TRUE(loginEnds.front());
    EXPECT_THAT(wordsAfter(3), ElementsAre("start", "failed", "completed"));
    EXPECT_TRUE(timers.front().held.expired());
}

TEST_F(OAuthLogin, EndsWithTheClientWhileItFetchesItsToken)
{
    server.script(kTokenPath, ScriptedAnswer::held(tokenAnswer("late").body));
    login();
    waitForRequestsAt(kTokenPath, 1);
    QXSDKLoginClient::setShared(nullptr);
    client.reset();
    waitForLogins(1);
    EXPECT_TRUE(loginEnds.front());
    server.release(kTokenPath);
}

TEST_F(OAuthLogin, ShowsOnePageForBothOutcomes)
{
    linkAccount();
    redirect = [](const QByteArray& state) -> QByteArray {
        return "error=access_denied&error_description=why&state=" + state;
    };
    expectFailure(403);
    ASSERT_EQ(pages.size(), 2U);
    const TaskEnd page = pages[0].wait();
    EXPECT_EQ(page.status(), 200);
    EXPECT_TRUE(page.data.contains("return to"));
    EXPECT_EQ(page.data, pages[1].wait().data);
}

} // namespace
