#include "picker/config/QXSDKKovalinStickerPickerTheme.h"

#include "picker/config/ThemeFields.h"
#include "platform/foundation/Color.h"

#include <gtest/gtest.h>

namespace {

using kovalin::platform::colorsEqual;
using Theme = QXSDKKovalinStickerPickerTheme;

class ThemeColorFields : public testing::TestWithParam<ThemeField> {
protected:
    static QColor read(const Theme& theme) { return (theme.*GetParam().read)(); }
};

TEST_P(ThemeColorFields, HaveTheColoursOfTheirTheme)
{
    EXPECT_TRUE(colorsEqual(read(Theme()), GetParam().colors.plain));
    EXPECT_TRUE(colorsEqual(read(*Theme::lightTheme()), GetParam().colors.light));
    EXPECT_TRUE(colorsEqual(read(*Theme::darkTheme()), GetParam().colors.dark));
}

TEST_P(ThemeColorFields, KeepWhatIsSetAndLeaveTheOthers)
{
    const QColor color = QColor::fromRgbF(0.2F, 0.4F, 0.6F, 0.8F);
    Theme theme;
    (theme.*GetParam().write)(color);
    for (const ThemeField& field : themeFields()) {
        const QColor expected = field.name == GetParam().name ? color : field.colors.plain;
        EXPECT_TRUE(colorsEqual((theme.*field.read)(), expected)) << field.name;
    }
    EXPECT_TRUE(theme.shouldRandomizeSearchPillColors());
    EXPECT_EQ(theme.searchPillColors(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Theme, ThemeColorFields, testing::ValuesIn(themeFields()),
                         [](const auto& test) { return test.param.name; });

TEST(Theme, RandomizesPillColoursByDefaultOnly)
{
    EXPECT_TRUE(Theme().shouldRandomizeSearchPillColors());
    EXPECT_FALSE(Theme::lightTheme()->shouldRandomizeSearchPillColors());
    EXPECT_FALSE(Theme::darkTheme()->shouldRandomizeSearchPillColors());
}

TEST(Theme, HasNoPillColoursByDefaultAndOneInTheReadyThemes)
{
    EXPECT_EQ(Theme().searchPillColors(), std::nullopt);
    const auto light = Theme::lightTheme()->searchPillColors();
    ASSERT_TRUE(light && light->size() == 1);
    EXPECT_TRUE(colorsEqual(light->first(), QColor(255, 255, 255)));
    const auto dark = Theme::darkTheme()->searchPillColors();
    ASSERT_TRUE(dark && dark->size() == 1);
    EXPECT_TRUE(colorsEqual(dark->first(), QColor(0x36, 0x38, 0x3A)));
}

TEST(Theme, TakesPillColoursAndTheFlag)
{
    Theme theme;
    theme.setShouldRandomizeSearchPillColors(false);
    EXPECT_FALSE(theme.shouldRandomizeSearchPillColors());

    const QList<QColor> colors{QColor(1, 2, 3), QColor(4, 5, 6)};
    theme.setSearchPillColors(colors);
    EXPECT_EQ(theme.searchPillColors(), colors);
    theme.setSearchPillColors(QList<QColor>());
    EXPECT_EQ(theme.searchPillColors(), QList<QColor>());
    theme.setSearchPillColors(std::nullopt);
    EXPECT_EQ(theme.searchPillColors(), std::nullopt);
}

TEST(Theme, ShadowsHaveTheAlphaThatIsDefined)
{
    constexpr float step = 1.0F / 65535;
    EXPECT_NEAR(Theme::lightTheme()->searchPillShadowColor().alphaF(), 0.04F, step);
    EXPECT_NEAR(Theme::darkTheme()->searchPillShadowColor().alphaF(), 0.12F, step);
    EXPECT_EQ(Theme().searchPillShadowColor().alpha(), 0);
    EXPECT_TRUE(Theme().searchPillShadowColor().isValid());
}

TEST(Theme, ReadyThemesAreNewAtEachCall)
{
    const auto first = Theme::lightTheme();
    first->setBackgroundColor(QColor(1, 2, 3));
    const auto second = Theme::lightTheme();
    EXPECT_NE(first, second);
    EXPECT_TRUE(colorsEqual(second->backgroundColor(), QColor(255, 255, 255)));
    EXPECT_NE(Theme::darkTheme(), Theme::darkTheme());
}

} // namespace
