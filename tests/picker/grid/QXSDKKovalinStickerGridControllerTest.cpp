#include "picker/grid/GridTest.h"
#include "picker/grid/QXSDKKovalinFlowLayout.h"
#include "platform/ui/Animation.h"
#include "support/QtPrinting.h"

#include <QtGui/QAccessible>
#include <QtGui/QGuiApplication>

#include <gmock/gmock.h>

// What a grid shows, and how it lays it out.

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::IsEmpty;

namespace {

class QXSDKKovalinStickerGridControllerTest : public GridTest {
protected:
    /// The side of tiles in a grid of this size.
    double sideIn(double w, double h)
    {
        grid->view()->setFrame({0, 0, w, h});
        const QSizeF size = grid->collectionViewLayoutSizeForItemAtIndexPath(*grid->view(), 0);
        EXPECT_EQ(size.width(), size.height());
        return size.width();
    }
    /// How many tiles the first row has.
    int columnsIn(double w)
    {
        grid->view()->setFrame({0, 0, w, 1000});
        grid->view()->layoutIfNeeded();
        int columns = 0;
        while (grid->view()->frameOfItem(columns).y() == 0 && columns < grid->kovalins()->size()) {
            ++columns;
        }
        return columns;
    }
    Grid::Layout horizontal()
    {
        auto layout = std::make_shared<QXSDKKovalinFlowLayout>();
        layout->setScrollDirection(ScrollDirection::Horizontal);
        return layout;
    }
};

TEST_F(QXSDKKovalinStickerGridControllerTest, StartsEmptyWithoutAFriend)
{
    grid = Grid::create(pictures.cache);
    EXPECT_TRUE(grid->kovalins()->isEmpty());
    EXPECT_EQ(grid->friendAvatarId(), std::nullopt);
    EXPECT_EQ(grid->topInset(), 0);
    EXPECT_TRUE(Grid::create(nullptr, std::make_shared<QXSDKKovalinStickerPickerConfig>(), pictures.cache)
                    ->kovalins()
                    ->isEmpty());
}

TEST_F(QXSDKKovalinStickerGridControllerTest, MakesItsViewOfAFlowLayoutWithoutSpacing)
{
    grid = Grid::create(pictures.cache);
    const auto layout = grid->view()->collectionViewLayout();
    EXPECT_TRUE(std::dynamic_pointer_cast<QXSDKKovalinFlowLayout>(layout));
    EXPECT_EQ(layout->minimumLineSpacing(), 0);
    EXPECT_EQ(layout->minimumInteritemSpacing(), 0);
    EXPECT_EQ(layout->scrollDirection(), ScrollDirection::Vertical);
    EXPECT_EQ(grid->view()->contentInset(), QMarginsF(4, 4, 4, 4));
    EXPECT_EQ(grid->view()->frame(), QRectF());
    EXPECT_FALSE(grid->view()->delaysContentTouches());
    EXPECT_FALSE(grid->view()->backgroundColor().isValid());
}

TEST_F(QXSDKKovalinStickerGridControllerTest, TakesALayoutOfTheOwners)
{
    const auto layout = horizontal();
    EXPECT_EQ(Grid::create(rows(1), layout, pictures.cache)->view()->collectionViewLayout(), layout);
    const auto other = horizontal();
    const auto config = std::make_shared<QXSDKKovalinStickerPickerConfig>();
    config->theme()->setTitleTextColor(Qt::red);
    grid = Grid::create(rows(1), other, config, pictures.cache);
    EXPECT_EQ(grid->view()->collectionViewLayout(), other);
    showGrid();
    EXPECT_EQ(cell(0)->imageView()->tintColor(), QColor(Qt::red));
}

TEST_F(QXSDKKovalinStickerGridControllerTest, ShowsTheFirstListAsItIs)
{
    const auto stickers = list({sticker("/red"), friendSticker("/two")});
    show(stickers);
    EXPECT_EQ(grid->kovalins(), stickers);
    EXPECT_EQ(grid->view()->numberOfItems(), 2);
    EXPECT_TRUE(becomesLoaded(0));
    EXPECT_EQ(urlOf(0), pictures.url("/red"));
    EXPECT_EQ(urlOf(1), std::nullopt) << "a place for a friend is no address";
    EXPECT_TRUE(cell(1)->imageView()->image().isNull());
}

TEST_F(QXSDKKovalinStickerGridControllerTest, ShowsStickersInTheirTiles)
{
    show(list({sticker("/red"), sticker("/blue")}));
    EXPECT_TRUE(waitFor([this] { return colorAt(middleOf(0)) == QColor(Qt::red); }));
    EXPECT_TRUE(waitFor([this] { return colorAt(middleOf(1)) == QColor(Qt::blue); }));
    EXPECT_EQ(cell(0)->frame(), QRectF(0, 0, 78, 78));
    EXPECT_EQ(cell(1)->frame(), QRectF(78, 0, 78, 78));
    EXPECT_EQ(colorAt({7, 7}), QColor(Qt::white));
    EXPECT_EQ(colorAt({10, 10}), QColor(Qt::red));
}

// Sizes

TEST_F(QXSDKKovalinStickerGridControllerTest, HasFourTilesInARowAndOneMoreForEachFull100Points)
{
    grid = Grid::create(rows(3), std::make_shared<QXSDKKovalinStickerPickerConfig>(), pictures.cache);
    EXPECT_EQ(sideIn(320, 500), 78);
    EXPECT_EQ(sideIn(412, 500), 101);
    EXPECT_EQ(sideIn(428, 500), 105);
    EXPECT_EQ(sideIn(507.9, 500), 499.9 / 4);
    EXPECT_EQ(sideIn(508, 500), 100);
    EXPECT_EQ(sideIn(608, 500), 100);
    EXPECT_EQ(sideIn(700, 500), 692.0 / 6);
}

TEST_F(QXSDKKovalinStickerGridControllerTest, FillsEachRowWhateverTheWidth)
{
    show(rows(3));
    for (double w = 100; w < 700; w += 7.3) {
        const int columns = columnsIn(w);
        EXPECT_EQ(columns, std::max(4, static_cast<int>((w - 8) / 100))) << w;
        EXPECT_NEAR(grid->view()->frameOfItem(columns - 1).right(), w - 8, 1e-6) << w;
        EXPECT_EQ(grid->view()->frameOfItem(0).x(), 0);
    }
}

TEST_F(QXSDKKovalinStickerGridControllerTest, HasOneRowOfTheViewsHeightWhereItScrollsHorizontally)
{
    grid = Grid::create(rows(3), horizontal(), pictures.cache);
    EXPECT_EQ(sideIn(320, 100), 92);
    EXPECT_EQ(sideIn(2000, 100), 92);
    grid->view()->layoutIfNeeded();
    EXPECT_EQ(grid->view()->frameOfItem(11).y(), 0);
}

TEST_F(QXSDKKovalinStickerGridControllerTest, MirrorsItsTilesWhereTheLanguageIsRead)
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    show(list({sticker("/red"), sticker("/blue")}));
    EXPECT_EQ(cell(0)->frame(), QRectF(234, 0, 78, 78));
    EXPECT_EQ(cell(1)->frame(), QRectF(156, 0, 78, 78));
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(QXSDKKovalinStickerGridControllerTest, BeginsBelowWhatLiesOverIt)
{
    show(rows(9));
    grid->setTopInset(80);
    EXPECT_EQ(grid->topInset(), 80);
    EXPECT_EQ(grid->view()->contentInset(), QMarginsF(4, 84, 4, 4));
    EXPECT_EQ(grid->view()->scrollIndicatorInsets(), QMarginsF(0, 80, 0, 0));
    EXPECT_EQ(grid->view()->contentOffset(), QPointF(-4, -84));
    grid->setTopInset(0);
    EXPECT_EQ(grid->view()->contentInset(), QMarginsF(4, 4, 4, 4));
    EXPECT_EQ(grid->view()->scrollIndicatorInsets(), QMarginsF());
}

// Lists

TEST_F(QXSDKKovalinStickerGridControllerTest, LeavesTwoPersonStickersOutWithoutAFriend)
{
    show(list({}));
    const auto red = sticker("/red");
    const auto blue = sticker("/blue");
    grid->setKovalins(list({red, friendSticker("/two"), blue}));
    EXPECT_EQ(*grid->kovalins(), KovalinStickerList({red, blue}));
    EXPECT_EQ(grid->view()->numberOfItems(), 2);
    EXPECT_TRUE(becomesLoaded(1));
}

TEST_F(QXSDKKovalinStickerGridControllerTest, ShowsTheVeryListThatIsSetWithAFriend)
{
    show(list({}));
    grid->setFriendAvatarId(QStringLiteral("a"));
    pictures.script("/two/a", Qt::yellow);
    const auto stickers = list({sticker("/red"), friendSticker("/two")});
    grid->setKovalins(stickers);
    EXPECT_EQ(grid->kovalins(), stickers);
    ASSERT_TRUE(becomesLoaded(1));
    EXPECT_EQ(urlOf(1), pictures.url("/two/a"));
}

TEST_F(QXSDKKovalinStickerGridControllerTest, StaysWhereItIsForTheVeryListThatItShows)
{
    show(list({}));
    grid->setFriendAvatarId(QStringLiteral("a"));
    const auto stickers = rows(9);
    grid->setKovalins(stickers);
    grab();
    grid->view()->setContentOffset({-4, 100}, false);
    grid->setKovalins(stickers);
    EXPECT_EQ(grid->view()->contentOffset(), QPointF(-4, 100));
    grid->setKovalins(list(*stickers));
    EXPECT_EQ(grid->view()->contentOffset(), QPointF(-4, -4)) << "an equal list is another one";
}

TEST_F(QXSDKKovalinStickerGridControllerTest, ScrollsToTheTopForAnotherList)
{
    show(rows(9));
    grid->setTopInset(40);
    grid->view()->setContentOffset({-4, 300}, false);
    grab();
    grid->setKovalins(rows(8));
    EXPECT_EQ(grid->view()->contentOffset(), QPointF(-4, -44));
    EXPECT_FALSE(grid->view()->isMoving());
}

TEST_F(QXSDKKovalinStickerGridControllerTest, ShowsEachStickerInItsOwnTileAfterAScrollAndAnotherList)
{
    KovalinStickerList stickers = *rows(20);
    stickers[0] = sticker("/blue");
    show(list(stickers));
    grid->view()->setContentOffset({-4, 1000}, false);
    grab();
    KovalinStickerList turned = stickers;
    std::swap(turned[0], turned[1]);
    turned[3] = sticker("/held");
    grid->setKovalins(list(turned));
    ASSERT_TRUE(becomesLoaded(2));
    for (const qsizetype item : grid->view()->indexPathsForVisibleItems()) {
        ASSERT_TRUE(cell(item));
        EXPECT_EQ(urlOf(item)->toString(), turned[item]->url()) << item;
    }
}

TEST_F(QXSDKKovalinStickerGridControllerTest, IsClearedByAnEmptyList)
{
    show(rows(9));
    grid->view()->setContentOffset({-4, 100}, false);
    grid->setKovalins(list({}));
    EXPECT_TRUE(grid->kovalins()->isEmpty());
    EXPECT_EQ(grid->view()->numberOfItems(), 0);
    EXPECT_EQ(grid->view()->contentOffset(), QPointF(-4, -4));
    EXPECT_THAT(grid->view()->indexPathsForVisibleItems(), IsEmpty());
    grid->setKovalins(nullptr);
    EXPECT_TRUE(grid->kovalins()->isEmpty());
}

TEST_F(QXSDKKovalinStickerGridControllerTest, LetsStickersThatStayGlideAndOthersGrow)
{
    const auto red = sticker("/red");
    show(list({red, sticker("/blue")}));
    const auto tile = cell(0);
    grid->setKovalins(list({sticker("/held"), red}));
    EXPECT_EQ(cell(1), tile);
    EXPECT_EQ(tile->frame(), QRectF(78, 0, 78, 78));
    EXPECT_EQ(tile->x(), 0) << "on screen it is on its way";
    EXPECT_EQ(cell(0)->opacity(), 0);
    EXPECT_TRUE(waitFor([&] { return tile->x() == 78 && cell(0)->opacity() == 1; }));
}

TEST_F(QXSDKKovalinStickerGridControllerTest, LeavesACellAsItIsWhereItsListIsShorterThanWhatIsDisplayed)
{
    show(list({sticker("/red")}));
    const auto made = grid->collectionViewCellForItemAtIndexPath(*grid->view(), 7);
    ASSERT_TRUE(made);
    EXPECT_EQ(static_cast<Cell&>(*made).imageURL(), std::nullopt);
    EXPECT_EQ(grid->collectionViewAccessibilityLabelForItemAtIndexPath(*grid->view(), 7), QString());
}

// The friend

TEST_F(QXSDKKovalinStickerGridControllerTest, DoesNothingForTheFirstFriend)
{
    const auto stickers = list({sticker("/red"), friendSticker("/two")});
    show(stickers);
    ASSERT_TRUE(becomesLoaded(0));
    grid->setFriendAvatarId(QStringLiteral("a"));
    EXPECT_EQ(grid->friendAvatarId(), QStringLiteral("a"));
    EXPECT_EQ(grid->kovalins(), stickers);
    EXPECT_EQ(urlOf(1), std::nullopt);
}

TEST_F(QXSDKKovalinStickerGridControllerTest, LoadsOnlyTheTwoPersonTilesOnScreenForAnotherFriend)
{
    KovalinStickerList stickers = *rows(9);
    stickers[1] = friendSticker("/two");
    stickers[34] = friendSticker("/far");
    show(list({}));
    grid->setFriendAvatarId(QStringLiteral("a"));
    grid->setKovalins(list(stickers));
    grab();
    ASSERT_TRUE(becomesLoaded(0));
    ASSERT_TRUE(becomesFailed(1));
    grid->view()->setContentOffset({-4, 20}, false);
    grab();

    const auto red = cell(0)->imageView()->image();
    pictures.script("/two/b", Qt::yellow);
    grid->setFriendAvatarId(QStringLiteral("b"));
    EXPECT_EQ(urlOf(1), pictures.url("/two/b"));
    EXPECT_TRUE(cell(0)->isLoaded());
    EXPECT_EQ(cell(0)->imageView()->image().cacheKey(), red.cacheKey());
    EXPECT_TRUE(becomesLoaded(1));
    EXPECT_EQ(grid->view()->contentOffset(), QPointF(-4, 20)) << "nothing scrolls";
    EXPECT_EQ(pictures.requestsOf("/far/a") + pictures.requestsOf("/far/b"), 0);
    EXPECT_EQ(pictures.requestsOf("/red"), 1);

    grid->setFriendAvatarId(QStringLiteral("b"));
    pictures.drain();
    EXPECT_EQ(pictures.requestsOf("/two/b"), 1) << "the same friend";
}

TEST_F(QXSDKKovalinStickerGridControllerTest, DropsTwoPersonStickersAndScrollsToTheTopWhenTheFriendIsGone)
{
    KovalinStickerList stickers = *rows(9);
    stickers[1] = friendSticker("/two");
    show(list({}));
    grid->setFriendAvatarId(QStringLiteral("a"));
    grid->setKovalins(list(stickers));
    grab();
    grid->view()->setContentOffset({-4, 100}, false);
    grid->setFriendAvatarId(std::nullopt);
    EXPECT_EQ(grid->friendAvatarId(), std::nullopt);
    stickers.removeAt(1);
    EXPECT_EQ(*grid->kovalins(), stickers);
    EXPECT_EQ(grid->view()->numberOfItems(), 35);
    EXPECT_EQ(grid->view()->contentOffset(), QPointF(-4, -4));

    const auto shown = grid->kovalins();
    grid->setFriendAvatarId(std::nullopt);
    EXPECT_EQ(grid->kovalins(), shown) << "no friend as before";
}

TEST_F(QXSDKKovalinStickerGridControllerTest, NamesTilesByTheirStickersFirstTags)
{
    KovalinStickerList stickers = *rows(100);
    for (qsizetype item = 0; item < stickers.size(); ++item) {
        const auto named = stickers.at(item)->copy();
        named->setTags(QStringList{QStringLiteral("wave %1").arg(item), QStringLiteral("hi")});
        stickers[item] = named;
    }
    show(list(stickers));
    QAccessibleInterface* const tiles = QAccessible::queryAccessibleInterface(grid->view().get());
    ASSERT_NE(tiles, nullptr);
    EXPECT_EQ(tiles->role(), QAccessible::List);
    ASSERT_EQ(tiles->childCount(), 400) << "whatever has a tile on screen";
    EXPECT_EQ(tiles->child(0)->role(), QAccessible::ListItem);
    EXPECT_EQ(tiles->child(0)->text(QAccessible::Name), QStringLiteral("wave 0"));
    EXPECT_EQ(tiles->child(399)->text(QAccessible::Name), QStringLiteral("wave 399"));
    EXPECT_EQ(cell(0)->objectName(), QStringLiteral("qxsdk_kovalin_sticker"));
}

TEST_F(QXSDKKovalinStickerGridControllerTest, GivesATileThatAnAssistiveToolPresses)
{
    KovalinStickerList stickers = *rows(100);
    stickers[300] = sticker("/blue");
    show(list(stickers));
    ASSERT_TRUE(becomesLoaded(0));
    QAccessibleInterface* const tiles = QAccessible::queryAccessibleInterface(grid->view().get());
    const auto press = [&](int item) {
        tiles->child(item)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    };
    press(0);
    ASSERT_EQ(delegate->selected.size(), 1U);
    EXPECT_EQ(delegate->selected[0].first, grid->kovalins()->at(0));
    press(300);
    EXPECT_EQ(delegate->selected.size(), 1U) << "it isn't loaded yet, and comes on screen";
    EXPECT_TRUE(grid->view()->indexPathsForVisibleItems().contains(300));
    ASSERT_TRUE(becomesLoaded(300));
    press(300);
    EXPECT_EQ(delegate->selected.size(), 2U);
}

} // namespace
