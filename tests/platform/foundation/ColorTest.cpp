#include "platform/foundation/Color.h"

#include <QtCore/QString>

#include <gtest/gtest.h>

namespace {

using kovalin::platform::colorsEqual;
using kovalin::platform::colorWithHexString;

struct HexCase {
    const char* name;
    QString text;
    QRgb expected;
};

void PrintTo(const HexCase& hexCase, std::ostream* stream)
{
    *stream << hexCase.name;
}

std::string nameOfHexCase(const testing::TestParamInfo<HexCase>& info)
{
    return info.param.name;
}

class ColorWithHexString : public testing::TestWithParam<HexCase> {};

TEST_P(ColorWithHexString, Reads)
{
    const QColor color = colorWithHexString(GetParam().text);
    EXPECT_EQ(color.name(QColor::HexArgb), QColor::fromRgba(GetParam().expected).name(QColor::HexArgb));
    EXPECT_EQ(color.spec(), QColor::Rgb);
}

const QString kNul = QString(QChar(u'\0'));

INSTANTIATE_TEST_SUITE_P(
    Color, ColorWithHexString,
    testing::Values(HexCase{"Empty", QString(), 0xFF000000},
                    HexCase{"OnlySigns", QStringLiteral("########"), 0xFF000000},
                    HexCase{"TooShort", QStringLiteral("#12345"), 0xFF000000},
                    HexCase{"ShortForm", QStringLiteral("#FFF"), 0xFF000000},
                    HexCase{"White", QStringLiteral("#FFFFFF"), 0xFFFFFFFF},
                    HexCase{"NoSign", QStringLiteral("FFFFFF"), 0xFFFFFFFF},
                    HexCase{"MixedCase", QStringLiteral("#1a2B3c"), 0xFF1A2B3C},
                    HexCase{"SignsAnywhere", QStringLiteral("##12##34##56"), 0xFF123456},
                    HexCase{"SignAtTheEnd", QStringLiteral("123456#"), 0xFF123456},
                    HexCase{"NoDigits", QStringLiteral("ghijkl"), 0xFF000000},
                    HexCase{"StopsAtALetter", QStringLiteral("12G456"), 0xFF000012},
                    HexCase{"StopsAtASpace", QStringLiteral("12 456"), 0xFF000012},
                    HexCase{"StopsAtNul", QStringLiteral("1234") + kNul + QStringLiteral("56"), 0xFF001234},
                    HexCase{"BeginsWithNul", kNul + QStringLiteral("123456"), 0xFF000000},
                    HexCase{"SevenDigits", QStringLiteral("1234567"), 0xFF234567},
                    HexCase{"EightDigits", QStringLiteral("#80123456"), 0xFF123456},
                    HexCase{"Largest", QStringLiteral("7FFFFFFFFF123456"), 0xFF123456},
                    HexCase{"TooLarge", QStringLiteral("8000000000123456"), 0xFFFFFFFF},
                    HexCase{"TwentyDigits", QStringLiteral("FFFFFFFFFFFFFFFFFFFF"), 0xFFFFFFFF},
                    HexCase{"TooSmall", QStringLiteral("-FFFFFFFFFFFFFFFFFFFF"), 0xFF000000},
                    HexCase{"HexPrefix", QStringLiteral("0x1234"), 0xFF001234},
                    HexCase{"HexPrefixUpperCase", QStringLiteral("0XABCDEF"), 0xFFABCDEF},
                    HexCase{"HexPrefixAlone", QStringLiteral("0xGGGG"), 0xFF000000},
                    HexCase{"Negative", QStringLiteral("-00001"), 0xFFFFFFFF},
                    HexCase{"NegativeTwo", QStringLiteral("-000100"), 0xFFFFFF00},
                    HexCase{"Plus", QStringLiteral("+123456"), 0xFF123456},
                    HexCase{"TwoSigns", QStringLiteral("--1234"), 0xFF000000},
                    HexCase{"LeadingSpace", QStringLiteral(" \t\n123456"), 0xFF123456},
                    HexCase{"SpaceCountsForTheLength", QStringLiteral("     1"), 0xFF000001},
                    HexCase{"FullWidthDigits", QStringLiteral("\uFF11\uFF12\uFF13\uFF14\uFF15\uFF16"), 0xFF000000},
                    HexCase{"NoBreakSpaceIsNoSpace", QStringLiteral("\u00A0123456"), 0xFF000000},
                    HexCase{"LengthInUtf16Units", QStringLiteral("1234\U0001F600"), 0xFF001234},
                    HexCase{"LoneSurrogate", QStringLiteral("12345") + QChar(0xD83D), 0xFF012345}),
    nameOfHexCase);

TEST(ColorWithHexString, GivesExactChannelsAndFullAlpha)
{
    const QColor color = colorWithHexString(u"336699");
    EXPECT_EQ(color.redF(), QColor::fromRgbF(0x33 / 255.0F, 0, 0).redF());
    EXPECT_EQ(color.green(), 0x66);
    EXPECT_EQ(color.blue(), 0x99);
    EXPECT_EQ(color.alphaF(), 1.0F);
}

TEST(ColorsEqual, ComparesRedGreenBlueAndAlpha)
{
    EXPECT_TRUE(colorsEqual(QColor(1, 2, 3, 4), QColor(1, 2, 3, 4)));
    EXPECT_FALSE(colorsEqual(QColor(1, 2, 3, 4), QColor(0, 2, 3, 4)));
    EXPECT_FALSE(colorsEqual(QColor(1, 2, 3, 4), QColor(1, 0, 3, 4)));
    EXPECT_FALSE(colorsEqual(QColor(1, 2, 3, 4), QColor(1, 2, 0, 4)));
    EXPECT_FALSE(colorsEqual(QColor(1, 2, 3, 4), QColor(1, 2, 3, 0)));
}

TEST(ColorsEqual, LooksThroughTheColourModel)
{
    const QColor red = QColor::fromRgbF(1, 0, 0);
    EXPECT_NE(red, QColor::fromHsvF(0, 1, 1));
    EXPECT_TRUE(colorsEqual(red, QColor::fromHsvF(0, 1, 1)));
    EXPECT_TRUE(colorsEqual(red, red.toCmyk()));
}

TEST(ColorsEqual, SeesDifferencesBelowEightBits)
{
    EXPECT_FALSE(colorsEqual(QColor::fromRgba64(0x8000, 0, 0), QColor::fromRgba64(0x8001, 0, 0)));
}

TEST(ColorsEqual, KeepsAnInvalidColourApartFromBlack)
{
    EXPECT_TRUE(colorsEqual(QColor(), QColor()));
    EXPECT_FALSE(colorsEqual(QColor(), QColor(0, 0, 0)));
}

} // namespace
