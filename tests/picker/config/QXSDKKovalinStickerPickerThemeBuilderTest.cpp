#include "picker/config/QXSDKKovalinStickerPickerThemeBuilder.h"

#include "picker/config/ThemeFields.h"
#include "platform/foundation/Color.h"
#include "platform/foundation/PlatformException.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace {

using kovalin::platform::colorsEqual;
using kovalin::platform::PlatformException;
using Theme = QXSDKKovalinStickerPickerTheme;
using Builder = QXSDKKovalinStickerPickerThemeBuilder;

/// A theme that differs from every ready one in every field.
QXSDKKovalinStickerPickerThemePtr oddTheme()
{
    auto theme = std::make_shared<Theme>();
    int number = 0;
    for (const ThemeField& field : themeFields()) {
        ++number;
        (*theme.*field.write)(QColor(number, 100 + number, 200 + number, 50 + number));
    }
    theme->setShouldRandomizeSearchPillColors(false);
    theme->setSearchPillColors(QList<QColor>{QColor(7, 8, 9)});
    return theme;
}

void expectSameColors(const Theme& theme, const Theme& expected)
{
    for (const ThemeField& field : themeFields()) {
        EXPECT_TRUE(colorsEqual((theme.*field.read)(), (expected.*field.read)())) << field.name;
    }
}

TEST(ThemeBuilder, StartsFromThePlainTheme)
{
    const auto theme = Builder().build();
    expectSameColors(*theme, Theme());
    EXPECT_TRUE(theme->shouldRandomizeSearchPillColors());
    EXPECT_EQ(theme->searchPillColors(), std::nullopt);
}

TEST(ThemeBuilder, RoundTripOfTheDarkThemeDropsThePillColours)
{
    const auto dark = Theme::darkTheme();
    const auto theme = dark->toBuilder().build();
    EXPECT_NE(theme, dark);
    expectSameColors(*theme, *dark);
    EXPECT_FALSE(theme->shouldRandomizeSearchPillColors());
    EXPECT_EQ(theme->searchPillColors(), std::nullopt);
    EXPECT_TRUE(dark->searchPillColors());
}

TEST(ThemeBuilder, RoundTripKeepsEveryOtherField)
{
    const auto odd = oddTheme();
    const auto theme = odd->toBuilder().build();
    expectSameColors(*theme, *odd);
    EXPECT_FALSE(theme->shouldRandomizeSearchPillColors());
    EXPECT_EQ(theme->searchPillColors(), std::nullopt);
}

TEST(ThemeBuilder, ToBuilderIsNewAtEachCallAndLeavesItsTheme)
{
    const auto light = Theme::lightTheme();
    auto first = light->toBuilder();
    const auto second = light->toBuilder();
    EXPECT_NE(first.build(), second.build());
    first.withBackgroundColor(QColor(1, 2, 3));
    EXPECT_TRUE(colorsEqual(light->backgroundColor(), QColor(255, 255, 255)));
    EXPECT_TRUE(colorsEqual(second.build()->backgroundColor(), QColor(255, 255, 255)));
}

class ThemeBuilderFields : public testing::TestWithParam<ThemeField> {};

TEST_P(ThemeBuilderFields, AreSetWithoutATestAndReturnTheBuilder)
{
    Builder builder;
    for (const QColor& color : {QColor(1, 2, 3, 4), QColor()}) {
        EXPECT_EQ(&(builder.*GetParam().with)(color), &builder);
        EXPECT_TRUE(colorsEqual((*builder.build().*GetParam().read)(), color));
    }
}

INSTANTIATE_TEST_SUITE_P(ThemeBuilder, ThemeBuilderFields, testing::ValuesIn(themeFields()),
                         [](const auto& test) { return test.param.name; });

TEST(ThemeBuilder, SetsTheFlag)
{
    Builder builder;
    EXPECT_EQ(&builder.withShouldRandomizeSearchPillColors(false), &builder);
    EXPECT_FALSE(builder.build()->shouldRandomizeSearchPillColors());
    builder.withShouldRandomizeSearchPillColors(true);
    EXPECT_TRUE(builder.build()->shouldRandomizeSearchPillColors());
}

TEST(ThemeBuilder, TakesPillColoursAndTheirAbsence)
{
    Builder builder;
    const QList<QColor> colors{QColor(1, 2, 3), QColor(4, 5, 6)};
    EXPECT_EQ(&builder.withSearchPillColors(colors), &builder);
    EXPECT_EQ(builder.build()->searchPillColors(), colors);
    EXPECT_NO_THROW(builder.withSearchPillColors(std::nullopt));
    EXPECT_EQ(builder.build()->searchPillColors(), std::nullopt);
}

TEST(ThemeBuilder, RefusesAnEmptyListOfPillColoursAndChangesNothing)
{
    const QList<QColor> colors{QColor(1, 2, 3)};
    Builder builder;
    builder.withSearchPillColors(colors);
    try {
        builder.withSearchPillColors(QList<QColor>());
        FAIL() << "An empty list was taken.";
    } catch (const PlatformException& exception) {
        EXPECT_EQ(exception.name(), QStringLiteral("NSInvalidArgumentException"));
        EXPECT_EQ(exception.reason(), QStringLiteral("searchPillColors cannot be empty!"));
    }
    EXPECT_EQ(builder.build()->searchPillColors(), colors);
    expectSameColors(*builder.build(), Theme());
}

TEST(ThemeBuilder, HandsOutOneThemeAndGoesOnChangingIt)
{
    Builder builder;
    const auto theme = builder.build();
    EXPECT_EQ(builder.build(), theme);
    builder.withErrorRed(QColor(1, 2, 3));
    EXPECT_TRUE(colorsEqual(theme->errorRed(), QColor(1, 2, 3)));
}

TEST(ThemeBuilder, ThemeOutlivesIt)
{
    const auto theme = Theme::darkTheme()->toBuilder().withSearchColor(QColor(1, 2, 3)).build();
    EXPECT_TRUE(colorsEqual(theme->searchColor(), QColor(1, 2, 3)));
}

} // namespace
