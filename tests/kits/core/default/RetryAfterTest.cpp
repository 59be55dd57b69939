#include "kits/core/default/RetryAfter.h"

#include <QtCore/QLocale>

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <utility>
#include <vector>

namespace kovalin::kits {
namespace {

using namespace std::chrono_literals;
using Delay = std::optional<std::chrono::milliseconds>;

// Sun, 06 Nov 1994 08:49:37 GMT
constexpr qint64 then = 784'111'777'000;

TEST(RetryAfter, ReadsSecondsAndTheThreeFormsOfADate)
{
    const std::vector<std::pair<QByteArray, Delay>> rows = {
        {"0", 0s},
        {"120", 120s},
        {"  7 ", 7s},
        {"Sun, 06 Nov 1994 08:49:37 GMT", 30s},
        {"Sunday, 06-Nov-94 08:49:37 GMT", 30s},
        {"Sun Nov  6 08:49:37 1994", 30s},
        {"Sun, 06 Nov 1994 08:49:07 GMT", 0s}, // now
        {"Sat, 05 Nov 1994 08:49:37 GMT", 0s}, // passed
    };
    for (const auto& [value, delay] : rows) {
        EXPECT_EQ(retryAfterIn(value, then - 30'000), delay) << value.constData();
    }
}

TEST(RetryAfter, TakesTwoDigitsOfThisCenturyForThisCentury)
{
    constexpr qint64 in2024 = 1'730'882'977'000; // Wed, 06 Nov 2024 08:49:37 GMT
    EXPECT_EQ(retryAfterIn("Wednesday, 06-Nov-24 08:49:37 GMT", in2024 - 1000), Delay(1s));
}

TEST(RetryAfter, IsAbsentForAnythingElse)
{
    for (const QByteArray& value :
         {QByteArray(), QByteArray(""), QByteArray("soon"), QByteArray("-1"), QByteArray("+1"), QByteArray("1.5"),
          QByteArray("1e3"), QByteArray("0x10"), QByteArray("12 s"), QByteArray("Sun, 32 Nov 1994 08:49:37 GMT"),
          QByteArray("06 Nov 1994 08:49:37"), QByteArray("\xff\xfe")}) {
        EXPECT_EQ(retryAfterIn(value, then), std::nullopt) << value.constData();
    }
}

TEST(RetryAfter, StaysFiniteForAnyCountOfSeconds)
{
    for (const QByteArray& value : {QByteArray("9223372036854775807"), QByteArray(400, '9')}) {
        const Delay delay = retryAfterIn(value, then);
        ASSERT_TRUE(delay.has_value());
        EXPECT_GT(*delay, std::chrono::years(50));
        EXPECT_LT(*delay, std::chrono::years(200));
    }
}

TEST(RetryAfter, ReadsEnglishDatesWhateverTheLocale)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(retryAfterIn("Mon, 12 Dec 1994 08:49:37 GMT", then), Delay(std::chrono::days(36)));
    QLocale::setDefault(before);
}

} // namespace
} // namespace kovalin::kits
