#include "picker/config/QXSDKKovalinStickerPickerConfigBuilder.h"
#include "picker/config/ThemeFields.h"
#include "platform/foundation/Color.h"

#include <gtest/gtest.h>

namespace {

using kovalin::platform::colorsEqual;
using Config = QXSDKKovalinStickerPickerConfig;
using Builder = QXSDKKovalinStickerPickerConfigBuilder;
using Theme = QXSDKKovalinStickerPickerTheme;

void expectPlain(const Theme& theme)
{
    for (const ThemeField& field : themeFields()) {
        EXPECT_TRUE(colorsEqual((theme.*field.read)(), field.colors.plain)) << field.name;
    }
    EXPECT_EQ(theme.searchPillColors(), std::nullopt);
}

TEST(Config, ShowsEverythingInAPlainThemeByDefault)
{
    const Config config;
    EXPECT_TRUE(config.showSearchBar());
    EXPECT_TRUE(config.showSearchPills());
    ASSERT_NE(config.theme(), nullptr);
    expectPlain(*config.theme());
}

TEST(Config, HasADefaultThemeOfItsOwn)
{
    EXPECT_NE(Config().theme(), Config().theme());
}

TEST(Config, IsReadAndWrittenWithoutABuilder)
{
    Config config;
    config.setShowSearchBar(false);
    EXPECT_FALSE(config.showSearchBar());
    EXPECT_TRUE(config.showSearchPills());
    config.setShowSearchBar(true);
    config.setShowSearchPills(false);
    EXPECT_TRUE(config.showSearchBar());
    EXPECT_FALSE(config.showSearchPills());
    const auto theme = Theme::darkTheme();
    config.setTheme(theme);
    EXPECT_EQ(config.theme(), theme);
}

TEST(Config, TakesAPlainThemeForNone)
{
    Config config;
    config.setTheme(Theme::darkTheme());
    config.setTheme(nullptr);
    ASSERT_NE(config.theme(), nullptr);
    expectPlain(*config.theme());
}

TEST(ConfigBuilder, StartsFromTheDefaults)
{
    const auto config = Builder().build();
    EXPECT_TRUE(config->showSearchBar());
    EXPECT_TRUE(config->showSearchPills());
    expectPlain(*config->theme());
}

TEST(ConfigBuilder, SetsEachChoiceAndReturnsItself)
{
    Builder builder;
    const auto theme = Theme::lightTheme();
    EXPECT_EQ(&builder.withShowSearchBar(false), &builder);
    EXPECT_FALSE(builder.build()->showSearchBar());
    EXPECT_TRUE(builder.build()->showSearchPills());
    EXPECT_EQ(&builder.withShowSearchPills(false), &builder);
    EXPECT_FALSE(builder.build()->showSearchPills());
    EXPECT_EQ(&builder.withTheme(theme), &builder);
    EXPECT_EQ(builder.build()->theme(), theme);
}

TEST(ConfigBuilder, HandsOutOneConfig)
{
    const Builder builder;
    EXPECT_EQ(builder.build(), builder.build());
}

TEST(ConfigBuilder, GoesOnChangingTheConfigThatItHandedOut)
{
    Builder builder;
    const auto config = builder.build();
    const auto theme = Theme::darkTheme();
    builder.withTheme(theme).withShowSearchBar(false).withShowSearchPills(false);
    EXPECT_EQ(config->theme(), theme);
    EXPECT_FALSE(config->showSearchBar());
    EXPECT_FALSE(config->showSearchPills());
}

TEST(ConfigBuilder, ConfigOutlivesIt)
{
    const auto config = Builder().withShowSearchPills(false).build();
    EXPECT_FALSE(config->showSearchPills());
}

} // namespace
