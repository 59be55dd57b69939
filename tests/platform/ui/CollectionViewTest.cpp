#include "support/CollectionViewTest.h"

#include "platform/ui/Animation.h"
#include "support/LogLines.h"
#include "support/MirroredLayout.h"

#include <QtGui/QGuiApplication>
#include <QtTest/QTest>

#include <gmock/gmock.h>

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST_F(CollectionViewTest, PlacesItsCellsByTheLayout)
{
    fill(6);
    EXPECT_EQ(view->numberOfItems(), 6);
    EXPECT_EQ(itemsWithCells(), range(0, 6));
    EXPECT_EQ(cell(5)->frame(), QRectF(50, 50, 50, 50));
    EXPECT_EQ(cell(5)->number, 5);
    EXPECT_EQ(view->contentSize(), QSizeF(200, 100));
    EXPECT_EQ(colorAt({75, 75}), ListSource::colorOf(5));
    EXPECT_EQ(colorAt({125, 75}), QColor(Qt::white));
}

TEST_F(CollectionViewTest, HasCellsOnScreenAndOneRowAroundAlone)
{
    fill(10'000);
    EXPECT_EQ(itemsWithCells(), range(0, 20));
    EXPECT_EQ(view->indexPathsForVisibleItems(), range(0, 16));
    view->setContentOffset({0, 5000}, false);
    grab();
    EXPECT_EQ(itemsWithCells(), range(396, 420));
    EXPECT_EQ(view->indexPathsForVisibleItems(), range(400, 416));
    view->setContentOffset({0, 1e9}, false);
    grab();
    EXPECT_EQ(itemsWithCells(), range(9980, 10'000));
    EXPECT_LE(made, 28) << "whatever the list's length, and wherever it was";
    EXPECT_EQ(allCells(), made);
}

TEST_F(CollectionViewTest, TellsWhatIsVisibleBeforeCellsHaveFollowed)
{
    fill(1000);
    view->setContentOffset({0, 525}, false);
    EXPECT_EQ(view->indexPathsForVisibleItems(), range(40, 60));
}

TEST_F(CollectionViewTest, UsesCellsAgainWhileItScrolls)
{
    fill(1000);
    for (int y = 0; y < 2000; y += 30) {
        view->setContentOffset({0, double(y)}, false);
        grab();
        for (const qsizetype item : view->indexPathsForVisibleItems()) {
            ASSERT_TRUE(cell(item));
            ASSERT_EQ(cell(item)->number, item);
            ASSERT_TRUE(cell(item)->isVisible());
        }
    }
    EXPECT_LE(made, 28);
}

TEST_F(CollectionViewTest, AsksForWhatIsOnScreenFirst)
{
    fill(1000);
    source->asked.clear();
    view->setContentOffset({0, 5000}, false);
    grab();
    EXPECT_EQ(source->asked.mid(0, 16), range(400, 416));
    EXPECT_EQ(source->asked.size(), 24);
}

TEST_F(CollectionViewTest, TellsACellThatItLeavesItsItem)
{
    fill(1000);
    const auto first = cell(0);
    view->setContentOffset({0, 5000}, false);
    grab();
    EXPECT_EQ(first->reuses, 1);
    EXPECT_NE(first->number, 0);
}

TEST_F(CollectionViewTest, AsksForEverythingAnewAfterReload)
{
    fill(8);
    const auto third = cell(3);
    source->numbers = {7, 6, 5, 4, 3};
    view->reloadData();
    grab();
    EXPECT_EQ(itemsWithCells(), range(0, 5));
    EXPECT_EQ(cell(0)->number, 7);
    EXPECT_EQ(cell(3), third) << "what shows an item goes on to, so that nothing flickers";
}

TEST_F(CollectionViewTest, ReloadsSingleItemsInPlace)
{
    fill(8);
    const auto second = cell(2);
    source->numbers[2] = 99;
    source->asked.clear();
    view->reloadItemsAtIndexPaths({2, 500, -1});
    EXPECT_THAT(source->asked, ElementsAre(2));
    EXPECT_EQ(cell(2), second);
    EXPECT_EQ(second->number, 99);
    EXPECT_TRUE(second->isVisible());
    EXPECT_EQ(colorAt({125, 25}), ListSource::colorOf(99));
}

TEST_F(CollectionViewTest, FollowsItsSizeAndInsets)
{
    fill(100);
    view->setFrame({0, 0, 120, 100});
    grab();
    EXPECT_EQ(view->contentSize(), QSizeF(120, 2500));
    EXPECT_EQ(cell(1)->frame(), QRectF(70, 0, 50, 50));
    view->setContentInset({10, 20, 10, 0});
    grab();
    EXPECT_EQ(cell(1)->frame(), QRectF(50, 0, 50, 50));
    EXPECT_EQ(view->contentOffset(), QPointF(-10, -20));
    EXPECT_EQ(colorAt({85, 45}), ListSource::colorOf(1));
    view->setContentInset({10, 20, 60, 0});
    grab();
    EXPECT_EQ(view->contentSize().width(), 50) << "an inset alone asks for a layout";
}

TEST_F(CollectionViewTest, StaysAtItsEndWhenItGrowsThere)
{
    fill(100);
    view->setContentOffset({0, 1e9}, false);
    grab();
    const LogLines lines;
    view->setFrame({0, 0, 200, 190});
    grab();
    view->setFrame({0, 0, 200, 200});
    grab();
    EXPECT_EQ(view->contentOffset().y(), 25 * 50 - 200);
    EXPECT_EQ(itemsWithCells(), range(80, 100));
    EXPECT_EQ(LogLines::count(QStringLiteral("asks for itself again")), 0);
}

TEST_F(CollectionViewTest, StandsAListThatIsEmptyOrHasNoSource)
{
    fill(0);
    EXPECT_THAT(itemsWithCells(), IsEmpty());
    EXPECT_THAT(view->indexPathsForVisibleItems(), IsEmpty());
    fill(8);
    source.reset();
    view->reloadData();
    grab();
    EXPECT_EQ(view->numberOfItems(), 0);
    EXPECT_THAT(itemsWithCells(), IsEmpty());
    view->selectItem(0);
    tap({25, 25});
}

TEST_F(CollectionViewTest, ReportsACellThatNothingIsRegisteredFor)
{
    const LogLines lines;
    EXPECT_EQ(view->dequeueReusableCell(QStringLiteral("unknown"), 0), nullptr);
    EXPECT_EQ(LogLines::count(QStringLiteral("No cell is registered under \"unknown\"")), 1);
}

TEST_F(CollectionViewTest, KeepsNothingWithoutASize)
{
    source->numbers = {1, 2, 3};
    view->setFrame({});
    view->reloadData();
    root()->addSubview(view);
    grab();
    EXPECT_THAT(itemsWithCells(), IsEmpty());
    view->performBatchUpdates([&] {
        source->numbers.append(4);
        view->insertItemsAtIndexPaths({3});
    });
    EXPECT_EQ(view->numberOfItems(), 4);
    view->setFrame({0, 0, 200, 200});
    grab();
    EXPECT_EQ(itemsWithCells(), range(0, 4));
}

// Selection and highlight.

TEST_F(CollectionViewTest, SelectsTheItemThatIsTapped)
{
    fill(100);
    tap({125, 75});
    EXPECT_THAT(source->selected, ElementsAre(6));
    view->setContentOffset({0, 500}, false);
    grab();
    tap({125, 75});
    EXPECT_THAT(source->selected, ElementsAre(6, 46));
}

TEST_F(CollectionViewTest, HighlightsWhatIsPressedWhileTheFingerIsOnIt)
{
    fill(8);
    press({125, 75});
    EXPECT_TRUE(cell(6)->isHighlighted());
    move({128, 75});
    EXPECT_TRUE(cell(6)->isHighlighted());
    move({160, 75});
    EXPECT_FALSE(cell(6)->isHighlighted());
    release({160, 75});
    EXPECT_THAT(source->selected, IsEmpty());
    EXPECT_EQ(cell(6)->highlightChanges, 2);
}

TEST_F(CollectionViewTest, LetsAPressGoWhenItBecomesAScroll)
{
    fill(100);
    press({125, 175});
    EXPECT_TRUE(cell(14)->isHighlighted());
    for (int y = 170; y > 100; y -= 10) {
        move({125, double(y)});
    }
    EXPECT_FALSE(cell(14)->isHighlighted());
    release({125, 100});
    EXPECT_THAT(source->selected, IsEmpty());
    EXPECT_GT(view->contentOffset().y(), 0);
}

TEST_F(CollectionViewTest, SelectsByTouchToo)
{
    fill(8);
    const std::unique_ptr<QPointingDevice> device(QTest::createTouchDevice());
    QTest::touchEvent(&window(), device.get()).press(0, {75, 25}).commit();
    EXPECT_TRUE(cell(1)->isHighlighted());
    QTest::touchEvent(&window(), device.get()).release(0, {75, 25}).commit();
    EXPECT_FALSE(cell(1)->isHighlighted());
    EXPECT_THAT(source->selected, ElementsAre(1));
}

TEST_F(CollectionViewTest, ForgetsAPressOnACellThatLeaves)
{
    fill(8);
    press({25, 25});
    view->performBatchUpdates([&] {
        source->numbers.removeFirst();
        view->deleteItemsAtIndexPaths({0});
    });
    driver.step(0ms);
    release({25, 25});
    EXPECT_THAT(source->selected, IsEmpty());
}

TEST_F(CollectionViewTest, MayGoWhileItTellsOfASelection)
{
    fill(8);
    source->onSelect = [this](CollectionView&) {
        view->removeFromSuperview();
        view.reset();
    };
    tap({25, 25});
    drainMainQueue();
    EXPECT_EQ(view, nullptr);
    EXPECT_THAT(source->selected, ElementsAre(0));
}

// Directions.

TEST_F(CollectionViewTest, ScrollsToAnItemAsLittleAsShowsItWhole)
{
    fill(1000);
    view->scrollToItemAtIndexPath(3, false);
    EXPECT_EQ(view->contentOffset().y(), 0);
    view->scrollToItemAtIndexPath(17, false);
    EXPECT_EQ(view->contentOffset().y(), 50);
    view->scrollToItemAtIndexPath(400, false);
    EXPECT_EQ(view->contentOffset().y(), 100 * 50 - 150);
    view->scrollToItemAtIndexPath(399, false);
    EXPECT_EQ(view->contentOffset().y(), 100 * 50 - 150);
    view->scrollToItemAtIndexPath(0, false);
    EXPECT_EQ(view->contentOffset().y(), 0);
    view->scrollToItemAtIndexPath(1000, false);
    view->scrollToItemAtIndexPath(-1, false);
    EXPECT_EQ(view->contentOffset().y(), 0);
}

class MirroredCollectionViewTest : public CollectionViewTest {
protected:
    MirroredCollectionViewTest()
        : CollectionViewTest(std::make_shared<MirroredLayout>())
    {
    }
    ~MirroredCollectionViewTest() override { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }
};

TEST_F(MirroredCollectionViewTest, FollowsTheDirectionOfTheInterface)
{
    fill(6);
    EXPECT_EQ(cell(0)->frame().x(), 0);
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    grab();
    EXPECT_EQ(cell(0)->frame(), QRectF(150, 0, 50, 50));
    EXPECT_EQ(cell(5)->frame(), QRectF(100, 50, 50, 50));
    tap({125, 75});
    EXPECT_THAT(source->selected, ElementsAre(5));
}

} // namespace
