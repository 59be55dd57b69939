#include "support/CollectionViewTest.h"
#include "support/MirroredLayout.h"

#include <QtGui/QGuiApplication>
#include <QtTest/QTest>

// A collection view that scrolls sideways from right to left.

using namespace kovalin::platform;
using namespace std::chrono_literals;
using kovalin::test::MirroredLayout;

namespace {

std::shared_ptr<MirroredLayout> sideways()
{
    auto layout = std::make_shared<MirroredLayout>();
    layout->setScrollDirection(ScrollDirection::Horizontal);
    return layout;
}

/// One row of items of 50 × 150, 200 points wide, with insets of 10 and 20 points.
class CollectionViewRightToLeftTest : public kovalin::test::CollectionViewTest {
protected:
    CollectionViewRightToLeftTest()
        : CollectionViewTest(sideways())
    {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        source->size = {50, 150};
        view->setContentInset({10, 0, 20, 0});
    }
    ~CollectionViewRightToLeftTest() override { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }

    /// Of the item's right edge, from the view's.
    [[nodiscard]] double fromRight(qsizetype item) const
    {
        return view->bounds().width() - (view->frameOfItem(item).right() - view->contentOffset().x());
    }
    void insert(int number, qsizetype item)
    {
        view->performBatchUpdates([&] {
            source->numbers.insert(item, number);
            view->insertItemsAtIndexPaths({item});
        });
    }
    void settle()
    {
        driver.step(0ms);
        driver.step(1s);
        kovalin::test::drainMainQueue();
        grab();
    }
};

TEST_F(CollectionViewRightToLeftTest, BeginsAtTheRight)
{
    fill(20);
    EXPECT_EQ(fromRight(0), 20);
    EXPECT_EQ(view->contentOffset(), QPointF(1000 + 20 - 200, 0));
    EXPECT_EQ(view->contentOffset(), view->contentOffsetOfBeginning());
    ASSERT_TRUE(cell(0));
    EXPECT_EQ(colorAt({155, 50}), source->colorOf(0));
}

TEST_F(CollectionViewRightToLeftTest, BeginsAtTheRightAlsoWithFewItems)
{
    fill(2);
    EXPECT_EQ(fromRight(0), 20);
    EXPECT_EQ(view->contentOffset(), QPointF(-10, 0));
    EXPECT_EQ(view->contentOffset(), view->contentOffsetOfBeginning());
}

TEST_F(CollectionViewRightToLeftTest, BeginsAtTheLeftWhereReadingDoes)
{
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    fill(20);
    EXPECT_EQ(view->contentOffset(), QPointF(-10, 0));
    EXPECT_EQ(view->contentOffsetOfBeginning(), QPointF(-10, 0));
}

TEST_F(CollectionViewRightToLeftTest, StaysAtItsBeginningWhenItemsComeAndGo)
{
    fill(20);
    insert(77, 20);
    EXPECT_EQ(fromRight(0), 20);
    insert(78, 0);
    EXPECT_EQ(fromRight(0), 20);
    EXPECT_EQ(cell(0)->number, 78);
    source->numbers.resize(3);
    view->reloadData();
    grab();
    EXPECT_EQ(fromRight(0), 20);
    source->numbers.resize(30);
    view->reloadData();
    grab();
    EXPECT_EQ(fromRight(0), 20);
}

TEST_F(CollectionViewRightToLeftTest, KeepsItsPlaceWhenItemsComeBeyond)
{
    fill(20);
    view->setContentOffset({500, 0}, false);
    grab();
    const double before = fromRight(5);
    insert(77, 20);
    EXPECT_EQ(fromRight(5), before);
    settle();
    EXPECT_EQ(fromRight(5), before);
}

TEST_F(CollectionViewRightToLeftTest, LetsItemsGlideFromWhereTheyAreOnScreen)
{
    fill(20);
    const auto first = cell(0);
    const auto onScreen = [&] {
        return first->x() - view->contentOffset().x();
    };
    const double before = onScreen();
    insert(77, 0);
    EXPECT_EQ(cell(1), first);
    EXPECT_EQ(onScreen(), before) << "it has just begun";
    settle();
    EXPECT_EQ(onScreen(), before - 50);
}

TEST_F(CollectionViewRightToLeftTest, KeepsItsDistanceFromItsBeginningWhenItsSizeChanges)
{
    fill(20);
    for (const double width : {120.0, 190.0, 60.0, 200.0}) {
        view->setFrame({0, 0, width, side});
        grab();
        EXPECT_EQ(fromRight(0), 20) << width;
    }
    view->setContentOffset({500, 0}, false);
    grab();
    const double before = fromRight(0);
    view->setFrame({0, 0, 120, side});
    grab();
    EXPECT_EQ(fromRight(0), before);
}

TEST_F(CollectionViewRightToLeftTest, FollowsTheDirectionOfTheInterface)
{
    fill(20);
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    grab();
    EXPECT_EQ(view->contentOffset(), QPointF(-10, 0));
    view->setContentOffset({90, 0}, false);
    grab();
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    grab();
    EXPECT_EQ(fromRight(0), 20 - 100) << "as far in reading";
}

TEST_F(CollectionViewRightToLeftTest, IsScrolledByKeysToWhatComesNext)
{
    fill(20);
    view->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(view->focusedItem(), 0);
    for (int i = 0; i < 8; ++i) {
        QTest::keyClick(&window(), Qt::Key_Left);
    }
    EXPECT_EQ(view->focusedItem(), 8);
    EXPECT_GE(view->frameOfItem(8).left(), view->contentOffset().x());
}

} // namespace
