#include "kits/core/default/BatchSender.h"

#include "platform/net/UrlResponse.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <optional>

namespace kovalin::kits {
namespace {

using namespace std::chrono_literals;
using Kind = SendOutcome::Kind;

const QUrl asked(QStringLiteral("https://host/metrics"));

SendOutcome outcomeOfStatus(int status, const QUrl& from = asked)
{
    return outcomeOf(asked,
                     platform::UrlResponse{.statusCode = status, .headers = {{"Retry-After", "90"}}, .url = from},
                     std::nullopt, 0);
}

TEST(SendOutcome, GoesByTheStatus)
{
    const std::map<int, Kind> kinds = {
        {200, Kind::Arrived}, {201, Kind::Arrived}, {202, Kind::Arrived}, {204, Kind::Arrived}, {299, Kind::Arrived},
        {400, Kind::Refused}, {401, Kind::Refused}, {403, Kind::Refused}, {404, Kind::Refused}, {407, Kind::Refused},
        {408, Kind::Failed},  {409, Kind::Refused}, {413, Kind::Refused}, {428, Kind::Refused}, {429, Kind::Failed},
        {431, Kind::Refused}, {499, Kind::Refused}, {500, Kind::Failed},  {502, Kind::Failed},  {503, Kind::Failed},
        {599, Kind::Failed},  {100, Kind::Failed},  {302, Kind::Failed},  {304, Kind::Failed},  {0, Kind::Failed},
        {600, Kind::Failed},
    };
    for (const auto& [status, kind] : kinds) {
        const SendOutcome outcome = outcomeOfStatus(status);
        EXPECT_EQ(outcome.kind, kind) << status;
        EXPECT_EQ(outcome.retryAfter.has_value(), kind == Kind::Failed) << status;
        EXPECT_EQ(outcome.reason.isEmpty(), kind == Kind::Arrived) << status;
    }
    EXPECT_EQ(outcomeOfStatus(429).retryAfter, 90s);
}

TEST(SendOutcome, IsAFailureWhereTheAnswerCameFromElsewhere)
{
    const SendOutcome outcome = outcomeOfStatus(200, QUrl(QStringLiteral("https://login.example/")));
    EXPECT_EQ(outcome.kind, Kind::Failed);
    EXPECT_FALSE(outcome.reason.isEmpty());
}

TEST(SendOutcome, IsAFailureWithoutAnAnswer)
{
    const SendOutcome outcome = outcomeOf(
        asked, std::nullopt, platform::UrlError{platform::UrlError::Kind::TimedOut, QStringLiteral("late")}, 0);
    EXPECT_EQ(outcome.kind, Kind::Failed);
    EXPECT_EQ(outcome.reason, QStringLiteral("late"));
    EXPECT_EQ(outcome.retryAfter, std::nullopt);
}

} // namespace
} // namespace kovalin::kits
