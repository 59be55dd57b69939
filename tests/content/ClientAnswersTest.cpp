#include "content/ClientAnswers.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <gtest/gtest.h>

namespace {

QJsonObject json(const char* text)
{
    return QJsonDocument::fromJson(text).object();
}

TEST(GraphQLErrorCode, Is401ForAFailedValidationAlone)
{
    EXPECT_EQ(QXSDKKovalinClientGraphQLErrorCode(json(R"({"errorType":"ValidationError"})")), 401);
    EXPECT_EQ(QXSDKKovalinClientGraphQLErrorCode(json(R"({"errorType":"validationerror"})")), 500);
    EXPECT_EQ(QXSDKKovalinClientGraphQLErrorCode(json(R"({"errorType":401})")), 500);
    EXPECT_EQ(QXSDKKovalinClientGraphQLErrorCode(json("{}")), 500);
    EXPECT_EQ(QXSDKKovalinClientGraphQLErrorCode(QJsonValue(QJsonValue::Null)), 500);
    EXPECT_EQ(QXSDKKovalinClientGraphQLErrorCode(QJsonValue(QJsonValue::Undefined)), 500);
}

TEST(DictFromUsers, IsAbsentForWhatIsNoArray)
{
    EXPECT_FALSE(QXSDKKovalinClientDictFromUsers(QJsonValue(QJsonValue::Undefined)));
    EXPECT_FALSE(QXSDKKovalinClientDictFromUsers(QJsonValue(QJsonValue::Null)));
    EXPECT_FALSE(QXSDKKovalinClientDictFromUsers(json("{}")));
    EXPECT_TRUE(QXSDKKovalinClientDictFromUsers(QJsonArray()));
}

TEST(DictFromUsers, SkipsWhatIsNoUserOrHasNoIdOrNoObject)
{
    const auto users = json(R"({"users":[
        7, null, "text", [],
        {"kovalin":{"id":"a"}},
        {"externalId":"","kovalin":{"id":"b"}},
        {"externalId":5,"kovalin":{"id":"c"}},
        {"externalId":"without"},
        {"externalId":"null","kovalin":null},
        {"externalId":"good","kovalin":{"id":"d"}},
        {"externalId":"bare","kovalin":{}}]})")
                           .value(QStringLiteral("users"));
    const auto kovalinByUser = QXSDKKovalinClientDictFromUsers(users);
    ASSERT_TRUE(kovalinByUser);
    EXPECT_EQ(kovalinByUser->size(), 2);
    EXPECT_EQ(kovalinByUser->value(QStringLiteral("good")).value(QStringLiteral("id")).toString(), QStringLiteral("d"));
    EXPECT_TRUE(kovalinByUser->contains(QStringLiteral("bare")));
}

TEST(DictFromUsers, KeepsTheLastOfAUserWhoComesTwice)
{
    const auto users =
        json(R"({"users":[{"externalId":"u","kovalin":{"id":"1"}},{"externalId":"u","kovalin":{"id":"2"}}]})")
            .value(QStringLiteral("users"));
    const auto kovalinByUser = QXSDKKovalinClientDictFromUsers(users);
    ASSERT_TRUE(kovalinByUser);
    EXPECT_EQ(kovalinByUser->value(QStringLiteral("u")).value(QStringLiteral("id")).toString(), QStringLiteral("2"));
}

TEST(ErrorIn, TellsTheFirstEntry)
{
    EXPECT_EQ(errorIn(json(R"({"errors":[{"errorType":"ValidationError"},{"errorType":"Other"}]})")),
              errorWithStatusCode(401, QStringLiteral("ValidationError"), QString()));
    EXPECT_EQ(errorIn(json(R"({"errors":[{"errorType":"Other"}]})")),
              errorWithStatusCode(500, QStringLiteral("Other"), QString()));
    for (const char* const without : {"{}", R"({"errors":[]})", R"({"errors":null})", R"({"errors":[null]})",
                                      R"({"errors":{"errorType":"ValidationError"}})"}) {
        EXPECT_EQ(errorIn(json(without)), errorWithStatusCode(500, QString(), QString())) << without;
    }
}

} // namespace
