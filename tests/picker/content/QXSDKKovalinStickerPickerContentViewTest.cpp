#include "picker/content/ContentViewTest.h"
#include "picker/tags/QXSDKKovalinTagTileFactory.h"

// What a content view is made of, how it lays that out, and its browsing state.

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::IsEmpty;

namespace {

class QXSDKKovalinStickerPickerContentViewTest : public ContentViewTest {
protected:
    [[nodiscard]] static QXSDKKovalinStickerPickerConfigPtr configOf(const QXSDKKovalinStickerPickerThemePtr& theme)
    {
        return QXSDKKovalinStickerPickerConfigBuilder().withTheme(theme).build();
    }
    [[nodiscard]] QColor colorOfTag(qsizetype item) const { return strip()->tagTiles()->at(item)->color(); }
};

TEST_F(QXSDKKovalinStickerPickerContentViewTest, hasItsPartsInTheirOrder)
{
    make();
    ASSERT_EQ(view->subviews().size(), 3);
    EXPECT_TRUE(grid());
    EXPECT_TRUE(strip());
    EXPECT_TRUE(bar());
    EXPECT_EQ(view->scrollView(), grid());
    EXPECT_EQ(view->maxNavbarOffset(), 80);
    EXPECT_EQ(view->objectName(), QStringLiteral("qxsdk_kovalin_content"));
    EXPECT_EQ(view->type(), QXSDKKovalinViewTypeContent);
    EXPECT_EQ(view->frame(), QRectF(0, 0, width, height));
    EXPECT_THAT(*view->kovalins(), IsEmpty());
    EXPECT_THAT(*strip()->tagTiles(), IsEmpty());
    EXPECT_TRUE(noResultsOf(*strip())->isHidden());
}

TEST_F(QXSDKKovalinStickerPickerContentViewTest, keepsALinkageIdForItsOwner)
{
    make();
    EXPECT_TRUE(view->friendLinkageId().isEmpty());
    view->setFriendLinkageId(QStringLiteral("id"));
    EXPECT_EQ(view->friendLinkageId(), QStringLiteral("id"));
}

// Layout

TEST_F(QXSDKKovalinStickerPickerContentViewTest, laysOutBothBars)
{
    open();
    EXPECT_EQ(grid()->frame(), QRectF(0, 0, width, height));
    EXPECT_EQ(grid()->contentInset(), QMarginsF(4, 84, 4, 4));
    EXPECT_EQ(bar()->frame(), QRectF(0, 0, width, 40));
    EXPECT_EQ(strip()->frame(), QRectF(0, 40, width, 40));
    EXPECT_FALSE(bar()->isHidden());
}

TEST_F(QXSDKKovalinStickerPickerContentViewTest, laysOutTheTagsAlone)
{
    setContent(rows(20));
    open(configWith(false, true));
    EXPECT_EQ(grid()->contentInset().top(), 44);
    EXPECT_EQ(bar()->frame(), QRectF(0, 0, 0, 0));
    EXPECT_TRUE(bar()->isHidden());
    EXPECT_EQ(strip()->frame(), QRectF(0, 0, width, 40));
    EXPECT_EQ(view->maxNavbarOffset(), 80);
    scrollTo(30);
    EXPECT_EQ(strip()->frame().y(), -30);
}

TEST_F(QXSDKKovalinStickerPickerContentViewTest, laysOutTheSearchBarAlone)
{
    setContent(rows(20));
    open(configWith(true, false));
    EXPECT_EQ(grid()->contentInset().top(), 44);
    EXPECT_EQ(bar()->frame(), QRectF(0, 0, width, 40));
    EXPECT_EQ(strip()->frame(), QRectF(0, 40, 0, 0));
    EXPECT_EQ(view->maxNavbarOffset(), 80);
    scrollTo(80);
    EXPECT_EQ(bar()->frame().y(), -40);
}

TEST_F(QXSDKKovalinStickerPickerContentViewTest, laysOutNoBars)
{
    open(configWith(false, false));
    EXPECT_EQ(grid()->contentInset().top(), 4);
    EXPECT_EQ(bar()->frame(), QRectF(0, 0, 0, 0));
    EXPECT_EQ(strip()->frame(), QRectF(0, 0, 0, 0));
    EXPECT_EQ(view->maxNavbarOffset(), 80);
}

TEST_F(QXSDKKovalinStickerPickerContentViewTest, showsBothBarsAndTheDefaultThemeWithoutAConfiguration)
{
    open(nullptr);
    EXPECT_EQ(bar()->frame().height(), 40);
    EXPECT_EQ(strip()->frame().height(), 40);
    EXPECT_EQ(grid()->contentInset().top(), 84);
    EXPECT_EQ(strip()->backgroundColor(), QXSDKKovalinStickerPickerTheme().backgroundColor());
}

TEST_F(QXSDKKovalinStickerPickerContentViewTest, pushesTheTagsAwayTwiceAsFastAsTheSearchBar)
{
    setContent(rows(20));
    open();
    scrollTo(30);
    EXPECT_EQ(view->navbarOffset(), 30);
    EXPECT_EQ(bar()->frame(), QRectF(0, -15, width, 40));
    EXPECT_EQ(strip()->frame(), QRectF(0, 10, width, 40));
    scrollTo(500);
    EXPECT_EQ(view->navbarOffset(), 80);
    EXPECT_EQ(bar()->frame().y(), -40);
    EXPECT_EQ(strip()->frame().y(), -40);
    scrollTo(480);
    EXPECT_EQ(bar()->frame().y(), -30);
    EXPECT_EQ(strip()->frame().y(), -20);
    EXPECT_EQ(grid()->frame(), QRectF(0, 0, width, height));
}

TEST_F(QXSDKKovalinStickerPickerContentViewTest, isLaidOutAnewForAnotherSize)
{
    open();
    view->setFrame({0, 0, 200, 300});
    grab();
    EXPECT_EQ(grid()->frame(), QRectF(0, 0, 200, 300));
    EXPECT_EQ(bar()->frame(), QRectF(0, 0, 200, 40));
    EXPECT_EQ(strip()->frame(), QRectF(0, 40, 200, 40));
    tapTag(0);
    EXPECT_EQ(results()->frame(), QRectF(0, 0, 200, 300));
    view->setFrame({0, 0, 320, 200});
    grab();
    EXPECT_EQ(results()->frame(), QRectF(0, 0, 320, 200));
}

TEST_F(QXSDKKovalinStickerPickerContentViewTest, isMirroredWhereReadingBeginsAtTheRight)
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    open();
    EXPECT_EQ(grid()->frameOfItem(0), QRectF(234, 0, 78, 78));
    EXPECT_NEAR(middleOfPill(*strip(), 0).x() + pillsOf(*strip())->frameOfItem(0).width() / 2, width - 10, 1e-6);
    EXPECT_EQ(bar()->frame(), QRectF(0, 0, width, 40));
    EXPECT_EQ(strip()->frame(), QRectF(0, 40, width, 40));
}

// Browsing

TEST_F(QXSDKKovalinStickerPickerContentViewTest, showsThePopularListWithTheDefaultTags)
{
    open();
    EXPECT_EQ(shown(), popular());
    EXPECT_EQ(textsOf(*strip()), defaultTags());
    EXPECT_THAT(engine->searches, IsEmpty());
}

TEST_F(QXSDKKovalinStickerPickerContentViewTest, leavesTheTagsAsTheyAreUntilThereIsAnIndex)
{
    engine->isReady = false;
    open();
    EXPECT_EQ(shown(), popular());
    EXPECT_THAT(*strip()->tagTiles(), IsEmpty());
    EXPECT_TRUE(noResultsOf(*strip())->isHidden());
    engine->tellProcessed();
    EXPECT_EQ(textsOf(*strip()), defaultTags());
}

TEST_F(QXSDKKovalinStickerPickerContentViewTest, isEmptyWithoutContent)
{
    provider = QXSDKKovalinStickerDataProvider::create(archive);
    open();
    EXPECT_THAT(*view->kovalins(), IsEmpty());
    EXPECT_THAT(*strip()->tagTiles(), IsEmpty());
}

TEST_F(QXSDKKovalinStickerPickerContentViewTest, takesAListOfItsOwnersAndItsLayoutFollows)
{
    setContent(rows(20));
    open();
    scrollTo(50);
    ASSERT_EQ(view->navbarOffset(), 50);
    view->setKovalins(std::make_shared<const KovalinStickerList>(rows(1, QStringLiteral("other"))));
    EXPECT_EQ(shown().first(), QStringLiteral("other0"));
    settle();
    EXPECT_EQ(view->navbarOffset(), 0) << "the list has gone back to its top";
    EXPECT_EQ(bar()->frame().y(), 0);
    view->setKovalins(nullptr);
    EXPECT_THAT(*view->kovalins(), IsEmpty());
}

// The colours of tags

TEST_F(QXSDKKovalinStickerPickerContentViewTest, givesTagsTheColoursOfTheirPacksWithoutColoursInTheTheme)
{
    engine->packsByTitle = {{QStringLiteral("Moods"), namedPack(QStringLiteral("moods"), QStringLiteral("Moods"))}};
    const auto theme = std::make_shared<QXSDKKovalinStickerPickerTheme>();
    theme->setShouldRandomizeSearchPillColors(false);
    for (const auto& none : {std::optional<QList<QColor>>(), std::optional(QList<QColor>())}) {
        theme->setSearchPillColors(none);
        open(configOf(theme));
        EXPECT_EQ(colorOfTag(1), QColor(Qt::red)) << "the pack's";
        EXPECT_EQ(colorOfTag(0), QXSDKKovalinTagTileFactory::defaultColors().at(5));
        view->removeFromSuperview();
    }
}

TEST_F(QXSDKKovalinStickerPickerContentViewTest, givesTagsTheThemesColoursWhereItHasSome)
{
    engine->packsByTitle = {{QStringLiteral("Moods"), namedPack(QStringLiteral("moods"), QStringLiteral("Moods"))}};
    const auto theme = std::make_shared<QXSDKKovalinStickerPickerTheme>();
    theme->setShouldRandomizeSearchPillColors(false);
    theme->setSearchPillColors(QList<QColor>{Qt::green, Qt::blue});
    open(configOf(theme));
    EXPECT_EQ(colorOfTag(0), QColor(Qt::blue));
    EXPECT_EQ(colorOfTag(1), QColor(Qt::blue)) << "a pack's colour doesn't count";
    view->removeFromSuperview();

    theme->setShouldRandomizeSearchPillColors(true);
    open(configOf(theme));
    EXPECT_EQ(colorOfTag(1), QXSDKRotateColorForTag(Qt::blue, QStringLiteral("Moods")));
}

} // namespace
