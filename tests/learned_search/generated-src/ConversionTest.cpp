#include "learned_search/generated-src/ListConversion.h"
#include "learned_search/generated-src/NumberConversion.h"
#include "learned_search/generated-src/OptionalConversion.h"
#include "learned_search/generated-src/StatusEnumsConversion.h"
#include "learned_search/generated-src/StringConversion.h"
#include "support/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

using namespace djinni;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using vole::learned_search::StatusEnums;

namespace {

constexpr std::int32_t least32 = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t greatest32 = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t least64 = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t greatest64 = std::numeric_limits<std::int64_t>::max();

struct Text {
    QString platform;
    std::string cpp;
};

const Text texts[] = {
    {u""_s, ""},
    {u"happy birthday"_s, "happy birthday"},
    {u"Gr\u00FC\u00DFe"_s, "Gr\xC3\xBC\xC3\x9F"
                           "e"},
    {u"\U0001F600"_s, "\xF0\x9F\x98\x80"},
    {u"100%1 %s %@"_s, "100%1 %s %@"},
    {u"\uFEFFin front"_s, "\xEF\xBB\xBFin front"},
    {QString(u'\0') + u'a' + QChar(u'\0'), std::string("\0a\0", 3)},
    {u"\uFFFF"_s, "\xEF\xBF\xBF"},
};

template <class Conversion, class Value>
void expectUnchanged(Value value)
{
    static_assert(std::is_same_v<typename Conversion::Cpp, Value>);
    static_assert(std::is_same_v<typename Conversion::Platform, Value>);
    EXPECT_EQ(Conversion::toCpp(value), value);
    EXPECT_EQ(Conversion::fromCpp(value), value);
}

} // namespace

TEST(StringConversion, IsUtf8InBothDirections)
{
    for (const Text& text : texts) {
        EXPECT_EQ(StringConversion::toCpp(text.platform), text.cpp);
        EXPECT_EQ(StringConversion::fromCpp(text.cpp), text.platform);
    }
}

TEST(StringConversion, TakesANullQStringForAnEmptyText)
{
    EXPECT_EQ(StringConversion::toCpp(QString()), "");
}

TEST(StringConversion, ReplacesWhatIsNotWellFormed)
{
    EXPECT_EQ(StringConversion::toCpp(QString(QChar(0xD800)) + u'a'), "?a");
    EXPECT_EQ(StringConversion::fromCpp("a\xFFz"), u"a\uFFFDz"_s);
    EXPECT_EQ(StringConversion::fromCpp("cut \xC3"), u"cut \uFFFD"_s);
    EXPECT_EQ(StringConversion::fromCpp("\x80"), u"\uFFFD"_s) << "the text before leaves nothing behind";
}

TEST(OptionalConversion, KeepsAbsentAndEmptyTextsApart)
{
    using Conversion = OptionalConversion<StringConversion>;

    EXPECT_EQ(Conversion::toCpp(std::nullopt), std::nullopt);
    EXPECT_EQ(Conversion::fromCpp(std::nullopt), std::nullopt);
    EXPECT_EQ(Conversion::toCpp(QString()), std::string());
    EXPECT_EQ(Conversion::fromCpp(std::string()), QString());
    EXPECT_EQ(Conversion::toCpp(u"\u00E4"_s), "\xC3\xA4");
    EXPECT_EQ(Conversion::fromCpp("\xC3\xA4"), u"\u00E4"_s);
}

TEST(OptionalConversion, KeepsAbsentNumbersAndZeroApart)
{
    using Conversion = OptionalConversion<Int32Conversion>;

    for (const std::optional<std::int32_t> number :
         {std::optional<std::int32_t>(), {0}, {-1}, {7}, {least32}, {greatest32}}) {
        EXPECT_EQ(Conversion::toCpp(number), number);
        EXPECT_EQ(Conversion::fromCpp(number), number);
    }
}

TEST(NumberConversion, LeavesNumbersAsTheyAre)
{
    for (const std::int32_t number : {0, 1, -1, least32, greatest32}) {
        expectUnchanged<Int32Conversion>(number);
    }
    for (const std::int64_t number : {std::int64_t(0), std::int64_t(-1), least64, greatest64}) {
        expectUnchanged<Int64Conversion>(number);
    }
    expectUnchanged<BoolConversion>(true);
    expectUnchanged<BoolConversion>(false);
}

TEST(ListConversion, KeepsTheOrderOfNumbers)
{
    using Conversion = ListConversion<Int32Conversion>;

    EXPECT_THAT(Conversion::fromCpp({9, least32, 7, 9, greatest32}), ElementsAre(9, least32, 7, 9, greatest32));
    EXPECT_THAT(Conversion::toCpp({9, -7, 9}), ElementsAre(9, -7, 9));
    EXPECT_TRUE(Conversion::fromCpp({}).isEmpty());
    EXPECT_TRUE(Conversion::toCpp({}).empty());
}

TEST(ListConversion, KeepsTheOrderOfTexts)
{
    using Conversion = ListConversion<StringConversion>;
    static_assert(std::is_same_v<Conversion::Platform, QStringList>);

    EXPECT_EQ(Conversion::fromCpp({"z", "", "\xC3\xA4", "z"}), QStringList({u"z"_s, u""_s, u"\u00E4"_s, u"z"_s}));
    EXPECT_THAT(Conversion::toCpp({u"z"_s, QString(), u"\u00E4"_s}), ElementsAre("z", "", "\xC3\xA4"));
}

TEST(StatusEnumsConversion, IsTheSameNumberInAWiderType)
{
    static_assert(std::is_same_v<std::underlying_type_t<QXNativeStatusEnums>, std::int64_t>);
    EXPECT_EQ(StatusEnumsConversion::toCpp(QXNativeStatusEnums::SUCCESS), StatusEnums::SUCCESS);
    EXPECT_EQ(StatusEnumsConversion::toCpp(QXNativeStatusEnums::MAIN_THREAD_REFUSED), StatusEnums::MAIN_THREAD_REFUSED);
    EXPECT_EQ(StatusEnumsConversion::toCpp(QXNativeStatusEnums::FILE_FAILED), StatusEnums::FILE_FAILED);
    EXPECT_EQ(StatusEnumsConversion::toCpp(QXNativeStatusEnums::DOWNLOAD_FAILED), StatusEnums::DOWNLOAD_FAILED);
    EXPECT_EQ(int(QXNativeStatusEnums::SUCCESS), 0);
    EXPECT_EQ(int(QXNativeStatusEnums::MAIN_THREAD_REFUSED), 1);
    EXPECT_EQ(int(QXNativeStatusEnums::FILE_FAILED), 2);
    EXPECT_EQ(int(QXNativeStatusEnums::DOWNLOAD_FAILED), 3);
}

TEST(StatusEnumsConversion, LetsNumbersWithoutANamePass)
{
    for (const std::int32_t number : {0, 1, 2, 3, 4, 99, -1, least32, greatest32}) {
        EXPECT_EQ(StatusEnumsConversion::toCpp(QXNativeStatusEnums(number)), StatusEnums(number));
        EXPECT_EQ(StatusEnumsConversion::fromCpp(StatusEnums(number)), QXNativeStatusEnums(number));
    }
}
