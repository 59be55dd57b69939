#include "kits/core/QXSDKError.h"

#include <gtest/gtest.h>

namespace {

TEST(QXSDKError, KeepsWhatItIsMadeOf)
{
    const auto error = errorWithStatusCode(401, QStringLiteral("what"), QStringLiteral("why"));
    EXPECT_EQ(error.statusCode, 401);
    EXPECT_EQ(error.code(), 401);
    EXPECT_EQ(error.description, QStringLiteral("what"));
    EXPECT_EQ(error.reason, QStringLiteral("why"));
    EXPECT_EQ(error, errorWithStatusCode(401, QStringLiteral("what"), QStringLiteral("why")));
    EXPECT_NE(error, errorWithStatusCode(500, QStringLiteral("what"), QStringLiteral("why")));
}

} // namespace
