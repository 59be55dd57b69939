#include "kovalin-backend/accounts/Grants.h"

#include "support/ManualClock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

namespace kovalin::backend {
namespace {

using namespace std::chrono_literals;

class GrantsInTime : public testing::Test {
protected:
    /// From RFC 7636, appendix B.
    [[nodiscard]] QByteArray add()
    {
        return grants.add({.clientId = QStringLiteral("c"),
                           .redirectUri = QStringLiteral("r"),
                           .challenge = "E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM",
                           .accountId = QStringLiteral("a"),
                           .scopes = {QStringLiteral("s")}});
    }

    [[nodiscard]] std::optional<IssuedTokens> redeem(const QByteArray& code)
    {
        return grants.redeem({.code = code,
                              .clientId = QStringLiteral("c"),
                              .redirectUri = QStringLiteral("r"),
                              .verifier = "dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk"});
    }

    test::ManualClock clock;
    Grants grants{90s};
};

TEST_F(GrantsInTime, HaveCodesForTenMinutes)
{
    const QByteArray early = add();
    const QByteArray late = add();
    clock.advance(599s);
    EXPECT_TRUE(redeem(early));
    clock.advance(1s);
    EXPECT_FALSE(redeem(late));
}

TEST_F(GrantsInTime, HaveAccessTokensForTheirLife)
{
    const auto tokens = redeem(add());
    ASSERT_TRUE(tokens);
    EXPECT_EQ(tokens->accessTokenLife, 90s);
    clock.advance(89s);
    const auto access = grants.access(tokens->accessToken);
    ASSERT_TRUE(access);
    EXPECT_EQ(access->accountId, QStringLiteral("a"));
    EXPECT_EQ(access->scopes, QStringList{QStringLiteral("s")});
    clock.advance(1s);
    EXPECT_FALSE(grants.access(tokens->accessToken));
    const auto fresh = grants.refresh(tokens->refreshToken, QStringLiteral("c"));
    ASSERT_TRUE(fresh);
    EXPECT_TRUE(grants.access(fresh->accessToken));
}

TEST_F(GrantsInTime, HaveNothingForEmptyTexts)
{
    static_cast<void>(add());
    EXPECT_FALSE(redeem(""));
    EXPECT_FALSE(grants.refresh("", QStringLiteral("c")));
    EXPECT_FALSE(grants.access(""));
    grants.revoke("");
}

TEST_F(GrantsInTime, ForgetTheOldest)
{
    std::vector<QByteArray> codes;
    for (std::size_t i = 0; i < Grants::kMostKept + 1; ++i) {
        codes.push_back(add());
    }
    EXPECT_FALSE(redeem(codes[0]));
    EXPECT_TRUE(redeem(codes[1]));
    EXPECT_TRUE(redeem(codes.back()));
}

} // namespace
} // namespace kovalin::backend
