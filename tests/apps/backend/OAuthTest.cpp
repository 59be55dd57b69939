#include "apps/backend/OAuthFixture.h"
#include "support/ManualClock.h"
#include "support/QtPrinting.h"

#include <chrono>

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;

const QString kAuto = QStringLiteral("auto");
const QString kApprove = QStringLiteral("approve");
const QString kAccess = QStringLiteral("access_token");
const QString kRefresh = QStringLiteral("refresh_token");

class Authorization : public OAuthFixture {
protected:
    [[nodiscard]] TaskEnd page(const Fields& changes = {}) { return get(QString::fromLatin1(authorizePath(changes))); }
};

TEST_F(Authorization, ShowsAPageToChooseOn)
{
    content.write(QStringLiteral("accounts.json"),
                  R"({"accounts":[{"id":"one","name":"First one","avatar":"a/1"},{"id":"two"}]})");
    const TaskEnd end = page();
    EXPECT_EQ(end.status(), 200);
    EXPECT_EQ(end.response->header("Content-Type"), "text/html; charset=utf-8");
    for (const char* part : {R"(<strong>tests</strong>)", R"(name="account" value="one" checked)", "First one",
                             R"(src="/avatars/a%2F1.png?size=96")", R"(name="account" value="two">)",
                             R"(name="auto" value="approve")", R"(name="auto" value="approve-without-scope")",
                             R"(name="auto" value="deny")", R"(name="state" value="a state &amp; more")"}) {
        EXPECT_TRUE(end.data.contains(part)) << part;
    }
}

TEST_F(Authorization, EscapesAllThatThePageShows)
{
    const QString evil = QStringLiteral("\"><script>x</script>&'%1%2");
    content.write(QStringLiteral("accounts.json"),
                  R"({"accounts":[{"id":"\"><script>x","name":"<script>x%1","avatar":"\"><script>x"}]})");
    Fields changes;
    for (const char* name : {"client_id", "scope", "state", "account", "\"><script>x"}) {
        changes.insert(QString::fromLatin1(name), evil);
    }
    const TaskEnd end = page(changes);
    EXPECT_EQ(end.status(), 200);
    EXPECT_FALSE(end.data.contains("<script"));
    EXPECT_TRUE(end.data.contains("<strong>&quot;&gt;&lt;script&gt;x&lt;/script&gt;&amp;'%1%2</strong>"));
    EXPECT_TRUE(end.data.contains("%1</label>"));
    EXPECT_TRUE(end.response->header("Content-Security-Policy")->startsWith("default-src 'none'"));
}

TEST_F(Authorization, SendsBackWithACodeAndTheState)
{
    const QUrl url = redirected({{kAuto, kApprove}});
    EXPECT_EQ(url.toString(QUrl::RemoveQuery), kRedirect);
    EXPECT_FALSE(valueIn(url, QStringLiteral("code")).isEmpty());
    EXPECT_EQ(valueIn(url, QStringLiteral("state")), QStringLiteral("a state & more"));
    EXPECT_FALSE(valueIn(url, QStringLiteral("error")).size() > 0);
}

TEST_F(Authorization, KeepsTheQueryOfTheRedirectAndSendsNoStateWhereThereIsNone)
{
    const QUrl url = redirected({{kAuto, kApprove},
                                 {QStringLiteral("state"), {}},
                                 {QStringLiteral("redirect_uri"), QStringLiteral("http://localhost:1/x?y=%2F")}});
    EXPECT_TRUE(url.toString(QUrl::FullyEncoded).startsWith(QStringLiteral("http://localhost:1/x?y=%2F&code=")));
    EXPECT_FALSE(QUrlQuery(url).hasQueryItem(QStringLiteral("state")));
}

TEST_F(Authorization, SendsBackARefusal)
{
    const QUrl url = redirected({{kAuto, QStringLiteral("deny")}});
    EXPECT_EQ(valueIn(url, QStringLiteral("error")), QStringLiteral("access_denied"));
    EXPECT_EQ(valueIn(url, QStringLiteral("state")), QStringLiteral("a state & more"));
    EXPECT_FALSE(QUrlQuery(url).hasQueryItem(QStringLiteral("code")));
}

TEST_F(Authorization, TellsTheClientWhatIsWrongWithItsRequest)
{
    const auto errorWith = [this](const char* name, const char* value) {
        return valueIn(redirected({{kAuto, kApprove}, {QString::fromLatin1(name), QString::fromLatin1(value)}}),
                       QStringLiteral("error"))
            .toStdString();
    };
    EXPECT_EQ(errorWith("response_type", "token"), "unsupported_response_type");
    EXPECT_EQ(errorWith("code_challenge_method", "plain"), "invalid_request");
    EXPECT_EQ(errorWith("code_challenge_method", ""), "invalid_request");
    EXPECT_EQ(errorWith("code_challenge", ""), "invalid_request");
    EXPECT_EQ(errorWith("code_challenge", "short"), "invalid_request");
}

TEST_F(Authorization, SendsNobodyToAnotherMachine)
{
    for (const char* uri :
         {"", "https://127.0.0.1:9/", "http://example.com/", "http://127.0.0.1.example.com/", "http://user@127.0.0.1/",
          "http://127.0.0.1/#x", "file:///x", "javascript:x", "127.0.0.1", "http://127.0.0.1/\r\nX: y"}) {
        const TaskEnd end = page({{kAuto, kApprove}, {QStringLiteral("redirect_uri"), QString::fromLatin1(uri)}});
        EXPECT_EQ(end.status(), 400) << uri;
    }
    for (const char* uri : {"http://127.0.0.1:9/", "http://[::1]:9/x", "http://localhost/x"}) {
        EXPECT_TRUE(
            redirected({{kAuto, kApprove}, {QStringLiteral("redirect_uri"), QString::fromLatin1(uri)}}).isValid())
            << uri;
    }
}

TEST_F(Authorization, AnswersWhatItCantMakeSenseOf)
{
    EXPECT_EQ(page({{QStringLiteral("client_id"), {}}}).status(), 400);
    EXPECT_EQ(page({{kAuto, QStringLiteral("yes")}}).status(), 400);
    EXPECT_EQ(page({{kAuto, kApprove}, {QStringLiteral("account"), QStringLiteral("nobody")}}).status(), 400);
}

TEST_F(Authorization, NeedsNoBrowserByARule)
{
    rule("/accounts/oauth2/authorize with auto=approve-without-scope&account=newcomer");
    const QString code = valueIn(redirected({{kAuto, QStringLiteral("deny")}}), QStringLiteral("code"));
    EXPECT_EQ(objectIn(askToken(redeeming(code))).value(u"scope"), QStringLiteral("other"));
    rule("/accounts/oauth2/authorize with auto=deny");
    EXPECT_EQ(valueIn(redirected({}), QStringLiteral("error")), QStringLiteral("access_denied"));
    rule("/accounts/oauth2/authorize ok");
    EXPECT_EQ(page().status(), 200);
}

TEST_F(Authorization, FailsWithTheNameOfAFileOfAnotherForm)
{
    for (const char* text :
         {"", "[]", R"({"accounts":{}})", R"({"accounts":[]})", R"({"accounts":[{}]})", R"({"accounts":[{"id":""}]})",
          R"({"accounts":[1]})", R"({"accounts":[{"id":"a","avatar":7}]})", R"({"accounts":[{"id":"a","avatar":""}]})",
          R"({"accounts":[{"id":"a"},{"id":"a"}]})"}) {
        content.write(QStringLiteral("accounts.json"), text);
        const TaskEnd end = page();
        EXPECT_EQ(end.status(), 500) << text;
        EXPECT_TRUE(end.data.contains("/accounts.json: ")) << text;
    }
}

class Tokens : public OAuthFixture {};

TEST_F(Tokens, ComeForACode)
{
    const TaskEnd end = askToken(redeeming(code()));
    EXPECT_EQ(end.status(), 200);
    EXPECT_EQ(end.response->header("Cache-Control"), "no-store");
    const QJsonObject answer = objectIn(end);
    EXPECT_EQ(answer.value(u"token_type"), QStringLiteral("Bearer"));
    EXPECT_EQ(answer.value(u"expires_in"), 3600);
    EXPECT_EQ(answer.value(u"scope").toString(), QString(avatarScope + QStringLiteral(" other")));
    EXPECT_EQ(accessWith(answer.value(kAccess).toString()), 200);
    EXPECT_EQ(accessWith(answer.value(kRefresh).toString()), 401);
}

TEST_F(Tokens, AreGrantedWithoutTheAvatarWhereThatIsWithheld)
{
    EXPECT_EQ(link({}, QStringLiteral("approve-without-scope")).value(u"scope"), QStringLiteral("other"));
}

TEST_F(Tokens, ComeOnceForACodeAndEndWithItsSecondUse)
{
    const QString once = code();
    const QString token = objectIn(askToken(redeeming(once))).value(kAccess).toString();
    EXPECT_EQ(accessWith(token), 200);
    const TaskEnd again = askToken(redeeming(once));
    EXPECT_EQ(again.status(), 400);
    EXPECT_EQ(errorIn(again), QStringLiteral("invalid_grant"));
    EXPECT_EQ(accessWith(token), 401);
}

TEST_F(Tokens, ComeForNothingButWhatWasAgreedTo)
{
    for (const char* name : {"code", "redirect_uri", "client_id", "code_verifier"}) {
        const QString good = code();
        Fields fields = redeeming(good);
        fields[QString::fromLatin1(name)] += u'x';
        const TaskEnd end = askToken(fields);
        EXPECT_EQ(end.status(), 400) << name;
        EXPECT_EQ(errorIn(end), QStringLiteral("invalid_grant")) << name;
        EXPECT_EQ(errorIn(askToken(redeeming(good))), QStringLiteral("invalid_grant")) << name;
    }
}

TEST_F(Tokens, TellWhatIsMissing)
{
    for (const char* name : {"grant_type", "code", "redirect_uri", "client_id", "code_verifier"}) {
        Fields fields = redeeming(QStringLiteral("x"));
        fields.remove(QString::fromLatin1(name));
        EXPECT_EQ(errorIn(askToken(fields)), QStringLiteral("invalid_request")) << name;
    }
    EXPECT_EQ(errorIn(askToken({})), QStringLiteral("invalid_request"));
    EXPECT_EQ(errorIn(askToken({{QStringLiteral("grant_type"), QStringLiteral("password")}})),
              QStringLiteral("unsupported_grant_type"));
}

TEST_F(Tokens, ReplaceOneAnotherWithEachRefresh)
{
    const QJsonObject first = link();
    const QJsonObject second = objectIn(askToken(refreshing(first.value(kRefresh).toString())));
    EXPECT_EQ(second.value(u"scope"), first.value(u"scope"));
    EXPECT_NE(second.value(kRefresh), first.value(kRefresh));
    EXPECT_EQ(accessWith(first.value(kAccess).toString()), 401);
    EXPECT_EQ(accessWith(second.value(kAccess).toString()), 200);
    const QJsonObject third = objectIn(askToken(refreshing(second.value(kRefresh).toString())));
    EXPECT_EQ(accessWith(third.value(kAccess).toString()), 200);
}

TEST_F(Tokens, EndWithTheSecondUseOfARefreshToken)
{
    const QString old = link().value(kRefresh).toString();
    const QJsonObject second = objectIn(askToken(refreshing(old)));
    EXPECT_EQ(errorIn(askToken(refreshing(old))), QStringLiteral("invalid_grant"));
    EXPECT_EQ(accessWith(second.value(kAccess).toString()), 401);
    EXPECT_EQ(errorIn(askToken(refreshing(second.value(kRefresh).toString()))), QStringLiteral("invalid_grant"));
}

TEST_F(Tokens, AreRefreshedForTheirOwnClientAlone)
{
    Fields fields = refreshing(link().value(kRefresh).toString());
    fields[QStringLiteral("client_id")] = QStringLiteral("other");
    EXPECT_EQ(errorIn(askToken(fields)), QStringLiteral("invalid_grant"));
}

TEST_F(Tokens, EndWhenTheyAreRevoked)
{
    const QString revoke = QStringLiteral("/accounts/oauth2/revoke");
    for (const QString& which : {kAccess, kRefresh}) {
        const QJsonObject tokens = link();
        EXPECT_EQ(post(revoke, "token=unknown").status(), 200);
        EXPECT_EQ(accessWith(tokens.value(kAccess).toString()), 200);
        EXPECT_EQ(post(revoke, "token=" + tokens.value(which).toString().toLatin1()).status(), 200);
        EXPECT_EQ(accessWith(tokens.value(kAccess).toString()), 401);
        EXPECT_EQ(errorIn(askToken(refreshing(tokens.value(kRefresh).toString()))), QStringLiteral("invalid_grant"));
    }
    EXPECT_EQ(errorIn(post(revoke, "")), QStringLiteral("invalid_request"));
}

TEST_F(Tokens, ExpireWhenTheyAreToldTo)
{
    const QJsonObject tokens = link();
    EXPECT_EQ(post(QStringLiteral("/control/expire-tokens"), "").status(), 204);
    EXPECT_EQ(accessWith(tokens.value(kAccess).toString()), 401);
    const QJsonObject fresh = objectIn(askToken(refreshing(tokens.value(kRefresh).toString())));
    EXPECT_EQ(accessWith(fresh.value(kAccess).toString()), 200);
    server.expireAccessTokens();
    EXPECT_EQ(accessWith(fresh.value(kAccess).toString()), 401);
}

TEST_F(Tokens, BelongToNobodyOnceTheAccountIsGone)
{
    const QString token = link(QStringLiteral("newcomer")).value(kAccess).toString();
    EXPECT_EQ(accessWith(token), 200);
    content.write(QStringLiteral("accounts.json"), R"({"accounts":[{"id":"other"}]})");
    EXPECT_EQ(accessWith(token), 401);
}

TEST_F(Tokens, CanBeToldToFailLikeAllElse)
{
    rule("/accounts/oauth2/* 503");
    EXPECT_EQ(askToken({}).status(), 503);
    EXPECT_EQ(get(QString::fromLatin1(authorizePath())).status(), 503);
}

} // namespace
} // namespace kovalin::test
