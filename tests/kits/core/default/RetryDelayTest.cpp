#include "kits/core/default/RetryDelay.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <optional>
#include <vector>

namespace kovalin::kits {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

constexpr RetryRules rules{.first = 5s, .longest = 15min, .longestRetryAfter = 1h};
constexpr quint32 most = std::numeric_limits<quint32>::max();

struct Row {
    int failures;
    std::optional<milliseconds> retryAfter;
    quint32 random;
    milliseconds delay;
};

TEST(RetryDelay, DoublesUpToTheLongestLessWhatChanceTakesOff)
{
    const std::vector<Row> rows = {
        {1, std::nullopt, 0, 5s},
        {2, std::nullopt, 0, 10s},
        {3, std::nullopt, 0, 20s},
        {8, std::nullopt, 0, 640s},
        {9, std::nullopt, 0, 15min},
        {10, std::nullopt, 0, 15min},
        {1'000'000'000, std::nullopt, 0, 15min},
        {1, std::nullopt, 0x8000'0000U, 3750ms},
        {1, std::nullopt, most, 2501ms}, // half a millisecond short of a half, rounded down
        {2, std::nullopt, 0x4000'0000U, 8750ms},
        // What the server asks for, where that is more.
        {1, 0s, 0, 5s},
        {1, 4s, most, 4s},
        {1, 90s, 0, 90s},
        {1, 1h, 0, 1h},
        {1, 2h, 0, 1h},
        {12, 2h, most, 1h},
        {12, 1s, 0, 15min},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(retryDelay(rules, row.failures, row.retryAfter, row.random), row.delay)
            << row.failures << " failures, random " << row.random;
    }
}

TEST(RetryDelay, IsTheLongestAtOnceWhereThatIsTheShorter)
{
    EXPECT_EQ(retryDelay({.first = 5s, .longest = 1s, .longestRetryAfter = 0s}, 1, 10s, 0), 1s);
}

} // namespace
} // namespace kovalin::kits
