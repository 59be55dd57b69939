#include "content/QXSDKKovalinFriendCache.h"

#include <gtest/gtest.h>

namespace {

TEST(QXSDKKovalinFriendCache, KnowsUsersWithAnAvatarWithoutOneAndNobodyElse)
{
    QXSDKKovalinFriendCache cache;
    cache.updateWithData({{QStringLiteral("with"), QStringLiteral("a")}, {QStringLiteral("without"), std::nullopt}});
    EXPECT_TRUE(cache.hasEntryForUser(QStringLiteral("with")));
    EXPECT_EQ(cache.avatarIdForUser(QStringLiteral("with")), QStringLiteral("a"));
    EXPECT_TRUE(cache.hasEntryForUser(QStringLiteral("without")));
    EXPECT_FALSE(cache.avatarIdForUser(QStringLiteral("without")));
    EXPECT_FALSE(cache.hasEntryForUser(QStringLiteral("unknown")));
    EXPECT_FALSE(cache.avatarIdForUser(QStringLiteral("unknown")));
}

TEST(QXSDKKovalinFriendCache, OverwritesWhatComesAgainAndKeepsTheRest)
{
    QXSDKKovalinFriendCache cache;
    cache.updateWithData({{QStringLiteral("a"), QStringLiteral("1")}, {QStringLiteral("b"), QStringLiteral("2")}});
    cache.updateWithData({{QStringLiteral("a"), std::nullopt}, {QStringLiteral("c"), QStringLiteral("3")}});
    EXPECT_FALSE(cache.avatarIdForUser(QStringLiteral("a")));
    EXPECT_TRUE(cache.hasEntryForUser(QStringLiteral("a")));
    EXPECT_EQ(cache.avatarIdForUser(QStringLiteral("b")), QStringLiteral("2"));
    EXPECT_EQ(cache.avatarIdForUser(QStringLiteral("c")), QStringLiteral("3"));
}

TEST(QXSDKKovalinFriendCache, IsOneForTheProcess)
{
    EXPECT_EQ(QXSDKKovalinFriendCache::shared(), QXSDKKovalinFriendCache::shared());
}

} // namespace
