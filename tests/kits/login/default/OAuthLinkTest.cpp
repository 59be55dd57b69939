#include "kits/login/default/OAuthLink.h"

#include <gtest/gtest.h>

namespace {

const QStringList asked = {QStringLiteral("one"), QStringLiteral("two")};

std::optional<OAuthLink> read(const QByteArray& body)
{
    return linkFromTokenAnswer(body, asked, 1000);
}

TEST(OAuthLink, HoldsWhatTheAnswerSays)
{
    const auto link = read(R"({"access_token":"a","token_type":"Bearer","refresh_token":"r","expires_in":3600,)"
                           R"("scope":"three  four"})");
    ASSERT_TRUE(link);
    EXPECT_EQ(link->accessToken, "a");
    EXPECT_EQ(link->refreshToken, QByteArray("r"));
    EXPECT_EQ(link->refreshTime, 1000 + 3600 - 60);
    EXPECT_EQ(link->scopes, (QStringList{QStringLiteral("three"), QStringLiteral("four")}));
}

TEST(OAuthLink, HasGrantedWhatWasAskedWhereTheAnswerSaysNothing)
{
    const auto link = read(R"({"access_token":"a","token_type":"BEARER"})");
    ASSERT_TRUE(link);
    EXPECT_EQ(link->scopes, asked);
    EXPECT_FALSE(link->refreshToken);
    EXPECT_FALSE(link->refreshTime);
}

TEST(OAuthLink, HasGrantedNothingWhereTheAnswerSaysSo)
{
    const auto link = read(R"({"access_token":"a","scope":""})");
    ASSERT_TRUE(link);
    EXPECT_TRUE(link->scopes.isEmpty());
}

TEST(OAuthLink, GivesUpATenthOfAShortLife)
{
    EXPECT_EQ(read(R"({"access_token":"a","expires_in":10})")->refreshTime, 1009);
    EXPECT_EQ(read(R"({"access_token":"a","expires_in":0})")->refreshTime, 1000);
    EXPECT_FALSE(read(R"({"access_token":"a","expires_in":-5})")->refreshTime);
    EXPECT_FALSE(read(R"({"access_token":"a","expires_in":"soon"})")->refreshTime);
}

TEST(OAuthLink, IsAbsentWhereTheAnswerCantBeUsed)
{
    for (const char* const body : {
             "",
             "garbage",
             "[]",
             "{}",
             R"({"access_token":""})",
             R"({"access_token":7})",
             R"({"access_token":null})",
             R"({"access_token":"a b"})",
             R"({"access_token":"a\r\nX-Evil: 1"})",
             R"({"access_token":"ä"})",
             R"({"access_token":"a","token_type":"mac"})",
         }) {
        EXPECT_FALSE(read(body)) << body;
    }
}

TEST(OAuthLink, KeepsWhatARefreshDoesntReplace)
{
    const OAuthLink link{.accessToken = "a",
                         .refreshToken = "r",
                         .scopes = {QStringLiteral("granted")},
                         .authenticationBaseUrl = QStringLiteral("https://auth")};
    const auto refreshed = refreshedLink(link, R"({"access_token":"b"})", 0);
    ASSERT_TRUE(refreshed);
    EXPECT_EQ(refreshed->accessToken, "b");
    EXPECT_EQ(refreshed->refreshToken, QByteArray("r"));
    EXPECT_EQ(refreshed->scopes, link.scopes);
    EXPECT_EQ(refreshed->authenticationBaseUrl, link.authenticationBaseUrl);
    EXPECT_EQ(refreshedLink(link, R"({"access_token":"b","refresh_token":"s"})", 0)->refreshToken, QByteArray("s"));
    EXPECT_FALSE(refreshedLink(link, "garbage", 0));
}

TEST(OAuthLink, ComesBackFromItsSecret)
{
    const OAuthLink full{.accessToken = "a",
                         .refreshToken = "r",
                         .refreshTime = 1234.5,
                         .scopes = asked,
                         .authenticationBaseUrl = QStringLiteral("https://auth")};
    const OAuthLink bare{.accessToken = "a", .authenticationBaseUrl = QStringLiteral("https://auth")};
    EXPECT_EQ(linkFromSecret(secretOf(full)), full);
    EXPECT_EQ(linkFromSecret(secretOf(bare)), bare);
}

TEST(OAuthLink, IsAbsentWhereTheSecretIsDamaged)
{
    const QByteArray secret = secretOf({.accessToken = "a", .authenticationBaseUrl = QStringLiteral("https://auth")});
    for (qsizetype size = 0; size < secret.size(); ++size) {
        EXPECT_FALSE(linkFromSecret(secret.first(size))) << size;
    }
    EXPECT_FALSE(linkFromSecret(QByteArray(secret).replace("\"version\":1", "\"version\":2")));
    EXPECT_FALSE(linkFromSecret(QByteArray(secret).replace("\"a\"", "7")));
}

} // namespace
