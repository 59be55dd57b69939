#include "picker/grid/GridTest.h"

#include <gmock/gmock.h>

// Loads, taps, scrolls and lifetimes of a grid.

using namespace kovalin::platform;
using namespace kovalin::test;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class StickerGridLoadingTest : public GridTest {};

TEST_F(StickerGridLoadingTest, TellsOfATapOnALoadedTile)
{
    const auto stickers = list({sticker("/red"), sticker("/blue")});
    show(stickers);
    ASSERT_TRUE(becomesLoaded(1));
    tapItem(1);
    ASSERT_THAT(delegate->selected, SizeIs(1));
    EXPECT_EQ(delegate->selected[0].first, stickers->at(1));
    EXPECT_EQ(delegate->selected[0].second.cacheKey(), cell(1)->imageView()->image().cacheKey());
    EXPECT_EQ(delegate->selected[0].second.pixelColor(0, 0), QColor(Qt::blue));
}

TEST_F(StickerGridLoadingTest, TakesATouchForATap)
{
    const auto stickers = list({sticker("/red")});
    show(stickers);
    ASSERT_TRUE(becomesLoaded(0));
    const std::unique_ptr<QPointingDevice> device(QTest::createTouchDevice());
    QTest::touchEvent(&window(), device.get()).press(0, middleOf(0).toPoint());
    EXPECT_EQ(cell(0)->transform().scaleX, double(0.85F)) << "at once, while pressed";
    QTest::touchEvent(&window(), device.get()).release(0, middleOf(0).toPoint());
    ASSERT_THAT(delegate->selected, SizeIs(1));
    EXPECT_EQ(delegate->selected[0].first, stickers->at(0));
    EXPECT_TRUE(cell(0)->transform().isIdentity());
}

TEST_F(StickerGridLoadingTest, TakesTheReturnKeyForATap)
{
    const auto stickers = list({sticker("/red"), sticker("/blue")});
    show(stickers);
    ASSERT_TRUE(becomesLoaded(1));
    grid->view()->forceActiveFocus(Qt::TabFocusReason);
    while (grid->view()->focusedItem() < 1) {
        const auto before = grid->view()->focusedItem();
        QTest::keyClick(&window(), Qt::Key_Right);
        ASSERT_NE(grid->view()->focusedItem(), before);
    }
    QTest::keyClick(&window(), Qt::Key_Return);
    ASSERT_THAT(delegate->selected, SizeIs(1));
    EXPECT_EQ(delegate->selected[0].first, stickers->at(1));
}

TEST_F(StickerGridLoadingTest, IgnoresATapOnALoadingTile)
{
    show(list({sticker("/held"), sticker("/fails")}));
    ASSERT_TRUE(becomesFailed(1));
    pictures.server.waitForHeld(1);
    tapItem(0);
    pictures.drain();
    EXPECT_THAT(delegate->selected, IsEmpty());
    EXPECT_TRUE(cell(0)->isLoading());
    EXPECT_EQ(pictures.requestsOf("/fails"), 1) << "nor is it a retry";
}

TEST_F(StickerGridLoadingTest, LoadsAllFailedTilesAnewForATapOnOne)
{
    show(list({sticker("/fails"), sticker("/red"), sticker("/fails-too")}));
    ASSERT_TRUE(becomesFailed(0));
    ASSERT_TRUE(becomesLoaded(1));
    ASSERT_TRUE(becomesFailed(2));
    pictures.hold("/fails", Qt::yellow);
    pictures.script("/fails-too", Qt::cyan);
    tapItem(2);
    EXPECT_TRUE(cell(0)->isLoading());
    pictures.server.release("/fails");
    EXPECT_TRUE(cell(1)->isLoaded());
    EXPECT_TRUE(becomesLoaded(0));
    EXPECT_TRUE(becomesLoaded(2));
    EXPECT_THAT(delegate->selected, IsEmpty());

    tapItem(2);
    EXPECT_THAT(delegate->selected, SizeIs(1)) << "no failed tile any more";
    EXPECT_EQ(pictures.requestsOf("/fails"), 2);
}

TEST_F(StickerGridLoadingTest, MayFailAgain)
{
    show(list({sticker("/fails")}));
    for (int time = 1; time <= 3; ++time) {
        ASSERT_TRUE(becomesFailed(0));
        EXPECT_EQ(pictures.requestsOf("/fails"), time);
        tapItem(0);
    }
    ASSERT_TRUE(becomesFailed(0));
}

TEST_F(StickerGridLoadingTest, TakesATapOnATileWithoutAnAddressForARetry)
{
    show(list({friendSticker("/two"), sticker("/fails")}));
    ASSERT_TRUE(becomesFailed(1));
    pictures.script("/fails", Qt::yellow);
    tapItem(0);
    EXPECT_TRUE(becomesLoaded(1));
    EXPECT_THAT(delegate->selected, IsEmpty());
}

TEST_F(StickerGridLoadingTest, LeavesAFailedTileThatWasAskedForAgainOutOfRetries)
{
    show(list({sticker("/fails"), sticker("/fails-too")}));
    ASSERT_TRUE(becomesFailed(0));
    ASSERT_TRUE(becomesFailed(1));
    grid->view()->reloadItemsAtIndexPaths({0});
    EXPECT_TRUE(hasFailed(*cell(0))) << "it has that address already";

    tapItem(1);
    EXPECT_TRUE(hasFailed(*cell(0)));
    ASSERT_TRUE(waitFor([this] { return pictures.requestsOf("/fails-too") == 2; }));
    ASSERT_TRUE(becomesFailed(1));

    pictures.script("/fails-too", Qt::yellow);
    tapItem(0);
    EXPECT_TRUE(becomesLoaded(1)) << "a tap on it loads the others";
    EXPECT_TRUE(hasFailed(*cell(0)));
    EXPECT_EQ(pictures.requestsOf("/fails"), 1);
}

// The first sticker

TEST_F(StickerGridLoadingTest, TellsOfItsFirstStickerOnce)
{
    show(list({sticker("/fails"), sticker("/held"), sticker("/red"), sticker("/blue")}));
    ASSERT_TRUE(becomesFailed(0));
    ASSERT_TRUE(becomesLoaded(2));
    ASSERT_TRUE(becomesLoaded(3));
    EXPECT_EQ(delegate->firstStickers, 1) << "whichever it is";
    pictures.server.release("/held");
    ASSERT_TRUE(becomesLoaded(1));
    grid->setKovalins(list({sticker("/blue")}));
    pictures.drain();
    EXPECT_EQ(delegate->firstStickers, 1);
}

TEST_F(StickerGridLoadingTest, TellsOfAFirstStickerFromTheCacheToo)
{
    show(list({sticker("/red")}));
    ASSERT_TRUE(becomesLoaded(0));
    grid->view()->removeFromSuperview();
    show(list({sticker("/red")}));
    ASSERT_TRUE(becomesLoaded(0));
    EXPECT_EQ(delegate->firstStickers, 2) << "one for each grid";
    EXPECT_EQ(pictures.requestsOf("/red"), 1);
}

TEST_F(StickerGridLoadingTest, TellsOfNoFirstStickerForAFailure)
{
    show(list({sticker("/fails")}));
    ASSERT_TRUE(becomesFailed(0));
    EXPECT_EQ(delegate->firstStickers, 0);
}

// Scrolling

TEST_F(StickerGridLoadingTest, TellsOfEachScroll)
{
    show(rows(9));
    delegate->scrolled.clear();
    grid->view()->setContentOffset({-4, 50}, false);
    ASSERT_THAT(delegate->scrolled, SizeIs(1));
    EXPECT_EQ(delegate->scrolled[0], QPointF(-4, 50));
    grid->setKovalins(rows(8));
    ASSERT_FALSE(delegate->scrolled.empty());
    EXPECT_EQ(delegate->scrolled.back(), QPointF(-4, -4));
}

TEST_F(StickerGridLoadingTest, GivesUpLoadsOfTilesThatShowOtherStickersAfterAScroll)
{
    KovalinStickerList stickers;
    for (int i = 0; i < 200; ++i) {
        const QByteArray path = "/held" + QByteArray::number(i);
        pictures.hold(path.constData(), Qt::green);
        stickers.append(sticker(path.constData()));
    }
    show(list(stickers));
    for (int offset = 0; offset < 3000; offset += 300) {
        grid->view()->setContentOffset({-4, double(offset)}, false);
        grab();
    }
    EXPECT_TRUE(waitFor([this] { return pictures.observer->removed > 50; }));
    qsizetype tiles = 0;
    for (qsizetype item = 0; item < stickers.size(); ++item) {
        tiles += cell(item) ? 1 : 0;
    }
    EXPECT_LT(tiles, 40);
}

TEST_F(StickerGridLoadingTest, NeverShowsOneStickersPictureInTheTileOfAnother)
{
    KovalinStickerList stickers = *rows(30);
    for (qsizetype i = 1; i < stickers.size(); i += 2) {
        const auto blue = sticker("/blue")->copy();
        blue->setComicId(stickers[i]->comicId());
        stickers[i] = blue;
    }
    show(list(stickers));
    ASSERT_TRUE(becomesLoaded(0));
    for (const double offset : {0, 900, 130, 1500, 40, 700}) {
        grid->view()->setContentOffset({-4, offset}, false);
        ASSERT_TRUE(waitFor([&] {
            bool isComplete = true;
            const QImage picture = grab();
            for (const qsizetype item : grid->view()->indexPathsForVisibleItems()) {
                const QRectF frame = grid->view()->frameOfItem(item).translated(-grid->view()->contentOffset());
                if (!grid->view()->bounds().contains(frame)) {
                    continue;
                }
                // In the picture, and outside of the loading picture's lines: what shows may be on its way from white.
                const QColor color = colorAt(picture, ratio(), frame.topLeft() + QPointF(8, 8));
                const bool isRed = item % 2 == 0;
                EXPECT_EQ(isRed ? color.red() : color.blue(), 255) << item;
                isComplete = isComplete && color == QColor(isRed ? Qt::red : Qt::blue);
            }
            return isComplete;
        }));
    }
}

// Lifetimes

TEST_F(StickerGridLoadingTest, MayGoWithDownloadsUnderWay)
{
    show(list({sticker("/held"), sticker("/fails")}));
    pictures.server.waitForHeld(1);
    grid->view()->removeFromSuperview();
    const std::weak_ptr<Grid> weak = grid;
    const std::weak_ptr<Cell> tile = cell(0);
    grid.reset();
    EXPECT_TRUE(weak.expired());
    pictures.server.release("/held");
    pictures.drain();
    EXPECT_TRUE(tile.expired());
    EXPECT_EQ(delegate->firstStickers, 0);
}

TEST_F(StickerGridLoadingTest, MayGoBeforeItsView)
{
    show(list({sticker("/held"), sticker("/fails"), sticker("/red")}));
    ASSERT_TRUE(becomesLoaded(2));
    ASSERT_TRUE(becomesFailed(1));
    pictures.server.waitForHeld(1);
    const auto view = grid->view();
    const auto tile = cell(0);
    grid.reset();
    pictures.server.release("/held");
    ASSERT_TRUE(waitFor([&] { return tile->isLoaded(); }));
    tap({43, 43});
    view->setContentOffset({0, 100}, false);
    view->setFrame({0, 0, 100, 100});
    grab();
    EXPECT_EQ(view->numberOfItems(), 3);
    view->reloadData();
    grab();
    EXPECT_EQ(view->numberOfItems(), 0);
    EXPECT_THAT(delegate->selected, IsEmpty());
}

TEST_F(StickerGridLoadingTest, WorksWithoutADelegate)
{
    show(rows(9));
    ASSERT_TRUE(becomesLoaded(0));
    delegate.reset();
    tapItem(0);
    grid->view()->setContentOffset({-4, 100}, false);
    grid->setKovalins(list({sticker("/blue")}));
    EXPECT_TRUE(becomesLoaded(0));
}

TEST_F(StickerGridLoadingTest, MayBeLetGoByItsDelegate)
{
    class Releasing final : public QXSDKKovalinStickerGridControllerDelegate {
    public:
        explicit Releasing(Grid::Ptr& held)
            : grid(held)
        {
        }
        void stickerGridControllerDidSelectSticker(const KovalinStickerPtr&, const QImage&) override
        {
            grid->view()->removeFromSuperview();
            grid.reset();
        }
        void stickerGridControllerDidScroll(ScrollView&) override {}
        void stickerGridControllerDidRenderFirstSticker() override {}
        Grid::Ptr& grid;
    };
    show(list({sticker("/red")}));
    ASSERT_TRUE(becomesLoaded(0));
    const auto releasing = std::make_shared<Releasing>(grid);
    grid->setDelegate(releasing);
    tapItem(0);
    EXPECT_FALSE(grid);
    drainMainQueue();
    grab();
}

} // namespace
