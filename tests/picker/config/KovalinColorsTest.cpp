#include "picker/config/KovalinColors.h"

#include <gtest/gtest.h>

namespace {

// QColor keeps 16 bits of each channel.
constexpr float kStep = 1.0F / 65535;

struct FixedColor {
    const char* name;
    QColor (*color)();
    const char* nearest; // in 8 bits a channel
};

void PrintTo(const FixedColor& color, std::ostream* stream)
{
    *stream << color.name;
}

class FixedColors : public testing::TestWithParam<FixedColor> {};

TEST_P(FixedColors, IsOpaqueAndNearestToItsEightBitValue)
{
    const QColor color = GetParam().color();
    EXPECT_STREQ(color.name(QColor::HexRgb).toUpper().toLatin1().constData(), GetParam().nearest);
    EXPECT_EQ(color.alphaF(), 1.0F);
    EXPECT_EQ(color.spec(), QColor::Rgb);
}

INSTANTIATE_TEST_SUITE_P(KovalinColors, FixedColors,
                         testing::Values(FixedColor{"kovalinBlue", kovalinBlue, "#1A9CFC"},
                                         FixedColor{"kovalinGreen", kovalinGreen, "#38C98D"},
                                         FixedColor{"kovalinDarkGreen", kovalinDarkGreen, "#288F64"},
                                         FixedColor{"kovalinErrorRed", kovalinErrorRed, "#E74C3C"},
                                         FixedColor{"kovalinGreyTextColor", kovalinGreyTextColor, "#808287"},
                                         FixedColor{"kovalinBorderColor", kovalinBorderColor, "#D9D9D9"},
                                         FixedColor{"kovalinNavIconColor", kovalinNavIconColor, "#858E98"}),
                         [](const auto& test) { return std::string(test.param.name); });

void expectRgb(const QColor& color, float red, float green, float blue)
{
    EXPECT_NEAR(color.redF(), red, kStep);
    EXPECT_NEAR(color.greenF(), green, kStep);
    EXPECT_NEAR(color.blueF(), blue, kStep);
}

TEST(FixedColors, HaveTheChannelsTheyAreDefinedBy)
{
    expectRgb(kovalinBlue(), 0.1F, 0.61F, 0.99F);
    expectRgb(kovalinErrorRed(), 0.9059F, 0.298F, 0.2353F);
    expectRgb(kovalinGreyTextColor(), 0.5F, 0.51F, 0.53F);
    expectRgb(kovalinBorderColor(), 0.85F, 0.85F, 0.85F);
    expectRgb(kovalinNavIconColor(), 0x85 / 255.0F, 0x8E / 255.0F, 0x98 / 255.0F);
}

/// A hue of 0.4305 lies in the third sixth of the circle, between green and cyan.
void expectGreen(const QColor& color, float brightness)
{
    constexpr float saturation = 0.72F;
    constexpr float beyondGreen = 0.4305F * 6 - 2;
    expectRgb(color, brightness * (1 - saturation), brightness, brightness * (1 - saturation * (1 - beyondGreen)));
}

TEST(FixedColors, GreensHaveTheHueTheyAreDefinedBy)
{
    expectGreen(kovalinGreen(), 0.79F);
    expectGreen(kovalinDarkGreen(), 0.56F);
}

} // namespace
