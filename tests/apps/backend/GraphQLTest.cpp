#include "apps/backend/OAuthFixture.h"
#include "kovalin-backend/ContentFolder.h"
#include "support/QtPrinting.h"

namespace kovalin::test {
namespace {

const QString kAvatar = QStringLiteral("{me{kovalin{avatar}}}");
const QString kPacks =
    QStringLiteral("query ($page: String!, $time: String, $locale: String){me{kovalin{packs(page: $page, "
                   "time: $time, locale: $locale)}}}");
const QString kUsers =
    QStringLiteral("query ($externalIds: [String!]!){users(externalIds: $externalIds) {externalId, kovalin{id}}}");
const QJsonObject kPage{{QStringLiteral("page"), QStringLiteral("kovalin-app")}};

class GraphQL : public OAuthFixture {
protected:
    GraphQL()
    {
        content.write(QStringLiteral("accounts.json"),
                      R"({"accounts":[{"id":"some","avatar":"a b/1"},{"id":"none","name":"None"}]})");
        content.write(QStringLiteral("users.json"),
                      R"({"users":[{"id":"u1","avatar":"a1"},{"id":"u2"},{"id":"ü","avatar":"ä"}]})");
    }

    [[nodiscard]] TaskEnd ask(const QString& document, const QJsonValue& variables = QJsonValue::Undefined)
    {
        return query(token(), bodyOf(document, variables));
    }

    [[nodiscard]] QJsonValue users(const QJsonArray& ids)
    {
        return objectIn(ask(kUsers, QJsonObject{{QStringLiteral("externalIds"), ids}}))[u"data"][u"users"];
    }

    [[nodiscard]] QString token(const QString& choice = QStringLiteral("approve"))
    {
        return link(account, choice).value(u"access_token").toString();
    }

    [[nodiscard]] static std::string errorTypeIn(const TaskEnd& end)
    {
        EXPECT_EQ(end.status(), 200);
        const QJsonObject answer = objectIn(end);
        EXPECT_FALSE(answer.contains(u"data"));
        EXPECT_FALSE(answer[u"errors"][0][u"message"].toString().isEmpty());
        return answer[u"errors"][0][u"errorType"].toString().toStdString();
    }

    QString account = QStringLiteral("some");
};

TEST_F(GraphQL, TellsWhereTheAvatarIs)
{
    const TaskEnd end = ask(kAvatar);
    EXPECT_EQ(end.status(), 200);
    EXPECT_EQ(end.response->header("Content-Type"), "application/json");
    EXPECT_EQ(end.data, QStringLiteral(R"({"data":{"me":{"kovalin":{"avatar":"%1/avatars/a%20b%2F1.png"}}}})")
                            .arg(server.baseUrl().toString())
                            .toUtf8());
}

TEST_F(GraphQL, GivesThePacksAsATextWithTheAddressesFilledIn)
{
    content.write(QStringLiteral("packs.json"),
                  R"({"packs": [{"id": "p", "stickers": [{"url": "{base}/stickers/x/{avatar}/%s.png"}]}]})");
    const QJsonValue packs = objectIn(ask(kPacks, kPage))[u"data"][u"me"][u"kovalin"][u"packs"];
    ASSERT_TRUE(packs.isString());
    EXPECT_EQ(packs.toString(),
              QStringLiteral(R"({"packs": [{"id": "p", "stickers": [{"url": "%1/stickers/x/a%20b%2F1/%s.png"}]}]})")
                  .arg(server.baseUrl().toString()));
}

TEST_F(GraphQL, HasNoPacksWithoutAFile)
{
    EXPECT_EQ(objectIn(ask(kPacks, kPage))[u"data"][u"me"][u"kovalin"][u"packs"], QStringLiteral(R"({"packs":[]})"));
}

TEST_F(GraphQL, HasNeitherForAnAccountWithoutAnAvatar)
{
    account = QStringLiteral("none");
    EXPECT_EQ(ask(kAvatar).data, R"({"data":{"me":{"kovalin":{}}}})");
    EXPECT_EQ(ask(kPacks, kPage).data, R"({"data":{"me":{"kovalin":{}}}})");
}

TEST_F(GraphQL, TellsTheAvatarsOfUsersInTheOrderInWhichTheyAreAsked)
{
    EXPECT_EQ(ask(kUsers,
                  QJsonObject{{QStringLiteral("externalIds"), QJsonArray{QStringLiteral("u2"), QStringLiteral("u1")}}})
                  .data,
              R"({"data":{"users":[{"externalId":"u2","kovalin":{}},{"externalId":"u1","kovalin":{"id":"a1"}}]}})");
    EXPECT_EQ(users({QStringLiteral("ü")})[0][u"kovalin"][u"id"], QStringLiteral("ä"));
}

TEST_F(GraphQL, LeavesOutUsersThatItDoesntKnowAndRepeats)
{
    const QString known = QStringLiteral("u1");
    EXPECT_EQ(users({known, QStringLiteral("u9"), known, QString()}).toArray().size(), 1);
    EXPECT_EQ(users({}).toArray().size(), 0);
    EXPECT_TRUE(users({}).isArray());
}

TEST_F(GraphQL, KnowsNoUsersWithoutAFile)
{
    const ContentFiles empty;
    EXPECT_TRUE(backend::ContentFolder(empty.path()).users().isEmpty());
}

TEST_F(GraphQL, KnowsItsDocumentsWordForWord)
{
    for (const QString& document : {kAvatar, kPacks, kUsers}) {
        EXPECT_EQ(errorTypeIn(ask(document + u' ', kPage)), "ValidationError");
        EXPECT_EQ(errorTypeIn(ask(document.toUpper(), kPage)), "ValidationError");
    }
    EXPECT_EQ(errorTypeIn(ask(QString())), "ValidationError");
    EXPECT_EQ(errorTypeIn(ask(QStringLiteral("{__schema{types{name}}}"))), "ValidationError");
}

TEST_F(GraphQL, RefusesVariablesThatDontFit)
{
    const QString externalIds = QStringLiteral("externalIds");
    EXPECT_EQ(errorTypeIn(ask(kPacks)), "ValidationError");
    EXPECT_EQ(errorTypeIn(ask(kPacks, QJsonObject{{QStringLiteral("page"), 1}})), "ValidationError");
    QJsonObject timed = kPage;
    timed.insert(QStringLiteral("time"), 5);
    EXPECT_EQ(errorTypeIn(ask(kPacks, timed)), "ValidationError");
    timed.insert(QStringLiteral("time"), QJsonValue::Null);
    EXPECT_FALSE(objectIn(ask(kPacks, timed)).contains(u"errors"));
    EXPECT_EQ(errorTypeIn(ask(kUsers)), "ValidationError");
    EXPECT_EQ(errorTypeIn(ask(kUsers, QJsonObject{{externalIds, QStringLiteral("u1")}})), "ValidationError");
    EXPECT_EQ(errorTypeIn(ask(kUsers, QJsonObject{{externalIds, QJsonArray{1}}})), "ValidationError");
}

TEST_F(GraphQL, RefusesABodyThatIsNoRequest)
{
    const QString good = token();
    for (const char* body : {"", "{", "[]", "{}", R"({"query":1})", R"({"query":"x","variables":[]})", "\xFF"}) {
        EXPECT_EQ(query(good, body).status(), 400) << body;
    }
    EXPECT_EQ(query(good, bodyOf(kAvatar, QJsonValue::Null)).status(), 200);
}

TEST_F(GraphQL, NeedsATokenThatIsGood)
{
    EXPECT_EQ(post(QStringLiteral("/api/graphql"), bodyOf(kAvatar)).status(), 401);
    EXPECT_EQ(query(QString(), bodyOf(kAvatar)).status(), 401);
    EXPECT_EQ(query(QStringLiteral("unknown"), "{").status(), 401);
    EXPECT_EQ(query(token().chopped(1), bodyOf(kUsers)).status(), 401);
}

TEST_F(GraphQL, NeedsTheScopeForWhatIsTheAccountsOwn)
{
    const QString withoutScope = token(QStringLiteral("approve-without-scope"));
    EXPECT_EQ(errorTypeIn(query(withoutScope, bodyOf(kAvatar))), "ValidationError");
    EXPECT_EQ(errorTypeIn(query(withoutScope, bodyOf(kPacks, kPage))), "ValidationError");
    const QJsonObject ids{{QStringLiteral("externalIds"), QJsonArray{QStringLiteral("u1")}}};
    EXPECT_EQ(objectIn(query(withoutScope, bodyOf(kUsers, ids)))[u"data"][u"users"].toArray().size(), 1);
}

TEST_F(GraphQL, FailsWithTheNameOfAFileOfAnotherForm)
{
    const QJsonObject nobody{{QStringLiteral("externalIds"), QJsonArray()}};
    for (const char* text : {"", "[]", R"({"packs":{}})", "{"}) {
        content.write(QStringLiteral("packs.json"), text);
        const TaskEnd end = ask(kPacks, kPage);
        EXPECT_EQ(end.status(), 500) << text;
        EXPECT_TRUE(end.data.contains("/packs.json: ")) << text;
    }
    for (const char* text : {"", "[]", R"({"users":{}})", R"({"users":[{"avatar":"a"}]})"}) {
        content.write(QStringLiteral("users.json"), text);
        const TaskEnd end = ask(kUsers, nobody);
        EXPECT_EQ(end.status(), 500) << text;
        EXPECT_TRUE(end.data.contains("/users.json: ")) << text;
    }
}

TEST_F(GraphQL, AnswersWhatARuleSays)
{
    const QByteArray document = R"({"data":{"me":null},  "errors":[{"errorType":"Odd"}]})";
    rule("/api/graphql body " + document);
    const TaskEnd end = ask(kAvatar);
    EXPECT_EQ(end.status(), 200);
    EXPECT_EQ(end.response->header("Content-Type"), "application/json");
    EXPECT_EQ(end.data, document);
}

TEST_F(GraphQL, CanBeToldToFailQueryByQuery)
{
    rule("/api/* 503");
    rule("/api/graphql 502");
    rule("/api/graphql#packs 501");
    rule("/api/graphql#users ok");
    EXPECT_EQ(ask(kAvatar).status(), 502);
    EXPECT_EQ(ask(kPacks, kPage).status(), 501);
    EXPECT_EQ(ask(kUsers).status(), 200);
    EXPECT_EQ(ask(QStringLiteral("other")).status(), 502);
    EXPECT_EQ(query(QString(), "{").status(), 502);
    rule("/api/graphql#avatar body {}");
    EXPECT_EQ(ask(kAvatar).data, "{}");
}

} // namespace
} // namespace kovalin::test
