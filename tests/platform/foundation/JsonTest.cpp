#include "platform/foundation/Json.h"

#include <QtCore/QJsonDocument>

#include <gtest/gtest.h>

namespace {

using namespace kovalin::platform;

QJsonObject sample()
{
    const QByteArray text = R"({
        "text": "abc", "emptyText": "", "number": 1.5, "zero": 0, "true": true, "false": false, "null": null,
        "list": ["a", 1, "", null, ["b"], "c"], "emptyList": [],
        "object": {"inner": {"leaf": "x"}, "null": null}, "emptyObject": {}, "ключ": "знач"
    })";
    return QJsonDocument::fromJson(text).object();
}

TEST(Json, ReadsValuesOfTheTypeAskedFor)
{
    const QJsonObject object = sample();
    EXPECT_EQ(jsonString(object, u"text"), QStringLiteral("abc"));
    EXPECT_EQ(jsonString(object, u"ключ"), QStringLiteral("знач"));
    EXPECT_EQ(jsonNumber(object, u"number"), 1.5);
    EXPECT_EQ(jsonNumber(object, u"zero"), 0.0);
    EXPECT_EQ(jsonBool(object, u"true"), true);
    EXPECT_EQ(jsonBool(object, u"false"), false);
    EXPECT_EQ(jsonArray(object, u"list").value().size(), 6);
    EXPECT_EQ(jsonObject(object, u"object").value().size(), 2);
}

TEST(Json, CountsAMissingKeyAsAbsent)
{
    const QJsonObject object = sample();
    EXPECT_EQ(jsonString(object, u"missing"), std::nullopt);
    EXPECT_EQ(jsonStringList(object, u"missing"), std::nullopt);
    EXPECT_EQ(jsonArray(object, u"missing"), std::nullopt);
    EXPECT_EQ(jsonObject(object, u"missing"), std::nullopt);
    EXPECT_EQ(jsonBool(object, u"missing"), std::nullopt);
    EXPECT_EQ(jsonNumber(object, u"missing"), std::nullopt);
}

TEST(Json, CountsAValueOfAnotherTypeAsAbsent)
{
    const QJsonObject object = sample();
    for (const QString& key : object.keys()) {
        const QJsonValue::Type type = object.value(key).type();
        SCOPED_TRACE(key.toStdString());
        EXPECT_EQ(jsonString(object, key).has_value(), type == QJsonValue::String);
        EXPECT_EQ(jsonStringList(object, key).has_value(), type == QJsonValue::Array);
        EXPECT_EQ(jsonArray(object, key).has_value(), type == QJsonValue::Array);
        EXPECT_EQ(jsonObject(object, key).has_value(), type == QJsonValue::Object);
        EXPECT_EQ(jsonBool(object, key).has_value(), type == QJsonValue::Bool);
        EXPECT_EQ(jsonNumber(object, key).has_value(), type == QJsonValue::Double);
    }
}

TEST(Json, KeepsWhatIsPresentAndEmptyApartFromWhatIsAbsent)
{
    const QJsonObject object = sample();
    ASSERT_TRUE(jsonString(object, u"emptyText").has_value());
    EXPECT_TRUE(jsonString(object, u"emptyText")->isEmpty());
    ASSERT_TRUE(jsonStringList(object, u"emptyList").has_value());
    EXPECT_TRUE(jsonStringList(object, u"emptyList")->isEmpty());
    ASSERT_TRUE(jsonArray(object, u"emptyList").has_value());
    ASSERT_TRUE(jsonObject(object, u"emptyObject").has_value());
}

TEST(Json, LeavesElementsThatAreNoStringsOutOfAStringList)
{
    const QStringList expected = {QStringLiteral("a"), QString(), QStringLiteral("c")};
    EXPECT_EQ(jsonStringList(sample(), u"list"), expected);
}

TEST(Json, FollowsAPathThroughObjects)
{
    const QJsonValue root = sample();
    EXPECT_EQ(jsonValueAt(root, {u"object", u"inner", u"leaf"}), QJsonValue(QStringLiteral("x")));
    EXPECT_EQ(jsonValueAt(root, {u"object", u"null"}), QJsonValue(QJsonValue::Null));
    EXPECT_EQ(jsonValueAt(root, {}), root);
}

TEST(Json, GivesUndefinedForAStepThroughAnythingButAnObject)
{
    const QJsonValue root = sample();
    EXPECT_TRUE(jsonValueAt(root, {u"null", u"leaf"}).isUndefined());
    EXPECT_TRUE(jsonValueAt(root, {u"object", u"null", u"leaf"}).isUndefined());
    EXPECT_TRUE(jsonValueAt(root, {u"text", u"leaf"}).isUndefined());
    EXPECT_TRUE(jsonValueAt(root, {u"list", u"0"}).isUndefined());
    EXPECT_TRUE(jsonValueAt(root, {u"missing"}).isUndefined());
    EXPECT_TRUE(jsonValueAt(root, {u"missing", u"leaf"}).isUndefined());
    EXPECT_TRUE(jsonValueAt(QJsonValue(QJsonValue::Undefined), {u"leaf"}).isUndefined());
}

} // namespace
