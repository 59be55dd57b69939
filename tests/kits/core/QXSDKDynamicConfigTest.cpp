#include "kits/core/QXSDKDynamicConfig.h"

#include <QtCore/QJsonDocument>

#include <gtest/gtest.h>

namespace {

QXSDKDynamicConfig configOf(const char* json)
{
    return QXSDKDynamicConfig(QJsonDocument::fromJson(json).object());
}

const QStringList enabled{QStringLiteral("enabled")};

TEST(QXSDKDynamicConfig, GivesWhatIsThere)
{
    EXPECT_TRUE(configOf(R"({"enabled":true})").boolValue(enabled, false));
    EXPECT_FALSE(configOf(R"({"enabled":false})").boolValue(enabled, true));
}

TEST(QXSDKDynamicConfig, GivesTheDefaultWhereNothingIsThere)
{
    EXPECT_TRUE(configOf("{}").boolValue(enabled, true));
    EXPECT_FALSE(configOf("{}").boolValue(enabled, false));
    EXPECT_TRUE(configOf(R"({"Enabled":false})").boolValue(enabled, true));
}

TEST(QXSDKDynamicConfig, GivesTheDefaultForWhatIsNeitherTrueNorFalse)
{
    for (const char* json : {R"({"enabled":null})", R"({"enabled":0})", R"({"enabled":"false"})", R"({"enabled":{}})",
                             R"({"enabled":[false]})"}) {
        EXPECT_TRUE(configOf(json).boolValue(enabled, true)) << json;
    }
}

TEST(QXSDKDynamicConfig, FollowsAPathOfKeys)
{
    const auto config = configOf(R"({"a":{"b":{"c":true}},"x":true})");
    EXPECT_TRUE(config.boolValue({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}, false));
    EXPECT_FALSE(config.boolValue({QStringLiteral("a"), QStringLiteral("b")}, false));
    EXPECT_FALSE(config.boolValue({QStringLiteral("x"), QStringLiteral("b")}, false)) << "a step through a value";
    EXPECT_TRUE(config.boolValue({}, true));
}

} // namespace
