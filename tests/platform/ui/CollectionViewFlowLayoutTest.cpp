#include "platform/ui/CollectionViewFlowLayout.h"

#include "support/MirroredLayout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace kovalin::platform;
using kovalin::test::MirroredLayout;
using testing::ElementsAre;

namespace {

std::vector<QRectF> frames(const CollectionViewFlowLayout& layout)
{
    std::vector<QRectF> all;
    for (qsizetype item = 0; item < layout.numberOfItems(); ++item) {
        all.push_back(layout.layoutAttributesForItemAtIndexPath(item).frame);
    }
    return all;
}

void prepare(CollectionViewFlowLayout& layout, const QList<QSizeF>& sizes, const QSizeF& available,
             bool isRightToLeft = false)
{
    layout.prepare(
        sizes.size(), [&](qsizetype item) { return sizes.at(item); }, available, isRightToLeft);
}

TEST(CollectionViewFlowLayout, FillsRowsAndSpreadsWhatIsLeftOver)
{
    CollectionViewFlowLayout layout;
    prepare(layout, QList<QSizeF>(5, QSizeF(40, 30)), {110, 500});
    EXPECT_THAT(frames(layout), ElementsAre(QRectF(0, 0, 40, 30), QRectF(70, 0, 40, 30), QRectF(0, 40, 40, 30),
                                            QRectF(70, 40, 40, 30), QRectF(0, 80, 40, 30)));
    EXPECT_EQ(layout.contentSize(), QSizeF(110, 110));
}

TEST(CollectionViewFlowLayout, KeepsTheSpacingOfTheRowsAboveInTheLastOne)
{
    CollectionViewFlowLayout layout;
    prepare(layout, QList<QSizeF>(5, QSizeF(30, 30)), {110, 500});
    EXPECT_EQ(frames(layout)[3].x(), 0);
    EXPECT_EQ(frames(layout)[4].x(), 40);
    CollectionViewFlowLayout single;
    prepare(single, QList<QSizeF>(2, QSizeF(30, 30)), {110, 500});
    EXPECT_EQ(frames(single)[1].x(), 40) << "the least where there is no row above";
}

TEST(CollectionViewFlowLayout, FitsPartsThatMissTheLineByARoundingAlone)
{
    CollectionViewFlowLayout layout;
    layout.setMinimumInteritemSpacing(0);
    layout.setMinimumLineSpacing(0);
    for (int columns = 4; columns < 60; ++columns) {
        const double width = columns * 100 + 37;
        const double side = width / columns;
        prepare(layout, QList<QSizeF>(columns * 2, QSizeF(side, side)), {width, 500});
        EXPECT_EQ(layout.contentSize(), QSizeF(width, 2 * side)) << columns;
    }
}

TEST(CollectionViewFlowLayout, PutsItemsOfDifferentHeightOntoTheMiddleOfTheirRow)
{
    CollectionViewFlowLayout layout;
    prepare(layout, {QSizeF(40, 10), QSizeF(40, 30)}, {110, 500});
    EXPECT_THAT(frames(layout), ElementsAre(QRectF(0, 10, 40, 10), QRectF(50, 0, 40, 30)));
}

TEST(CollectionViewFlowLayout, GivesAnItemThatIsTooWideARowOfItsOwn)
{
    CollectionViewFlowLayout layout;
    prepare(layout, {QSizeF(40, 10), QSizeF(300, 10), QSizeF(40, 10)}, {110, 500});
    EXPECT_THAT(frames(layout), ElementsAre(QRectF(0, 0, 40, 10), QRectF(0, 20, 300, 10), QRectF(0, 40, 40, 10)));
}

TEST(CollectionViewFlowLayout, PutsOneItemIntoTheMiddleOfEachColumnOfAStrip)
{
    CollectionViewFlowLayout layout;
    layout.setScrollDirection(ScrollDirection::Horizontal);
    prepare(layout, {QSizeF(50, 24), QSizeF(70, 24)}, {110, 40});
    EXPECT_THAT(frames(layout), ElementsAre(QRectF(0, 8, 50, 24), QRectF(60, 8, 70, 24)));
    EXPECT_EQ(layout.contentSize(), QSizeF(130, 40));
}

TEST(CollectionViewFlowLayout, FillsColumnsFromTopToBottom)
{
    CollectionViewFlowLayout layout;
    layout.setScrollDirection(ScrollDirection::Horizontal);
    prepare(layout, QList<QSizeF>(3, QSizeF(20, 20)), {110, 50});
    EXPECT_THAT(frames(layout), ElementsAre(QRectF(0, 0, 20, 20), QRectF(0, 30, 20, 20), QRectF(30, 15, 20, 20)));
}

TEST(CollectionViewFlowLayout, MirrorsOnlyWhereItIsToAndTheInterfaceReadsFromRightToLeft)
{
    MirroredLayout layout;
    prepare(layout, QList<QSizeF>(3, QSizeF(50, 50)), {110, 500}, true);
    EXPECT_THAT(frames(layout), ElementsAre(QRectF(60, 0, 50, 50), QRectF(0, 0, 50, 50), QRectF(60, 60, 50, 50)));
    EXPECT_TRUE(layout.isFlipped());
    prepare(layout, QList<QSizeF>(3, QSizeF(50, 50)), {110, 500}, false);
    EXPECT_EQ(frames(layout)[0].x(), 0);
    CollectionViewFlowLayout plain;
    prepare(plain, QList<QSizeF>(3, QSizeF(50, 50)), {110, 500}, true);
    EXPECT_EQ(frames(plain)[0].x(), 0);
}

TEST(CollectionViewFlowLayout, BeginsAMirroredStripThatIsShorterThanTheViewAtTheRight)
{
    MirroredLayout layout;
    layout.setScrollDirection(ScrollDirection::Horizontal);
    prepare(layout, {QSizeF(50, 40)}, {110, 40}, true);
    EXPECT_EQ(frames(layout)[0], QRectF(60, 0, 50, 40));
}

TEST(CollectionViewFlowLayout, TellsTheItemsOfTheLinesThatAnAreaTouches)
{
    CollectionViewFlowLayout layout;
    prepare(layout, QList<QSizeF>(20, QSizeF(50, 50)), {110, 500}); // rows at 0, 60, 120, …
    EXPECT_EQ(layout.itemsInRect({0, 0, 110, 50}), (CollectionViewRange{0, 2}));
    EXPECT_EQ(layout.itemsInRect({0, 0, 110, 60.5}), (CollectionViewRange{0, 4}));
    EXPECT_EQ(layout.itemsInRect({0, 50, 110, 10}), (CollectionViewRange{})) << "the gap";
    EXPECT_EQ(layout.itemsInRect({0, 49, 110, 1}), (CollectionViewRange{0, 2}));
    EXPECT_EQ(layout.itemsInRect({0, 120, 110, 50}, 1), (CollectionViewRange{2, 8}));
    EXPECT_EQ(layout.itemsInRect({0, -100, 110, 120}, 1), (CollectionViewRange{0, 4}));
    EXPECT_EQ(layout.itemsInRect({0, 550, 110, 900}, 1), (CollectionViewRange{16, 20}));
    EXPECT_TRUE(layout.itemsInRect({0, 900, 110, 900}, 1).isEmpty());
    EXPECT_TRUE(layout.itemsInRect({0, 0, 0, 0}, 1).isEmpty());
}

TEST(CollectionViewFlowLayout, TellsTheItemsOfAMirroredStrip)
{
    MirroredLayout layout;
    layout.setScrollDirection(ScrollDirection::Horizontal);
    prepare(layout, QList<QSizeF>(10, QSizeF(50, 40)), {100, 40}, true); // 590 wide
    EXPECT_EQ(layout.itemsInRect({490, 0, 100, 40}), (CollectionViewRange{0, 2}));
    EXPECT_EQ(layout.itemsInRect({0, 0, 100, 40}), (CollectionViewRange{8, 10}));
}

TEST(CollectionViewFlowLayout, FindsTheNearestItemOfTheNextLine)
{
    CollectionViewFlowLayout layout;
    prepare(layout, QList<QSizeF>(5, QSizeF(50, 50)), {110, 500});
    EXPECT_EQ(layout.itemInNeighbouringLine(1, 1), 3);
    EXPECT_EQ(layout.itemInNeighbouringLine(3, 1), 4) << "the last row is shorter";
    EXPECT_EQ(layout.itemInNeighbouringLine(4, -1), 2);
    EXPECT_EQ(layout.itemInNeighbouringLine(0, -1), 0);
    EXPECT_EQ(layout.itemInNeighbouringLine(4, 1), 4);
    EXPECT_EQ(layout.itemInNeighbouringLine(-1, 1), -1);
    EXPECT_EQ(layout.itemInNeighbouringLine(99, 1), 99);
}

TEST(CollectionViewFlowLayout, StandsOddSizesAndSpaces)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    CollectionViewFlowLayout layout;
    prepare(layout, {QSizeF(nan, 10), QSizeF(infinity, -5), QSizeF(-1, -1)}, {nan, -1});
    EXPECT_EQ(layout.numberOfItems(), 3);
    for (const QRectF& frame : frames(layout)) {
        EXPECT_TRUE(std::isfinite(frame.x() + frame.y() + frame.width() + frame.height()));
    }
    prepare(layout, {}, {110, 500});
    EXPECT_EQ(layout.contentSize(), QSizeF(110, 0));
    EXPECT_EQ(layout.layoutAttributesForItemAtIndexPath(0), CollectionViewLayoutAttributes());
    EXPECT_EQ(layout.layoutAttributesForItemAtIndexPath(-1), CollectionViewLayoutAttributes());
}

TEST(CollectionViewFlowLayout, RemembersWhereItemsStoodBefore)
{
    CollectionViewFlowLayout layout;
    prepare(layout, {QSizeF(50, 50), QSizeF(50, 50)}, {110, 500});
    prepare(layout, {QSizeF(110, 20)}, {110, 500});
    EXPECT_EQ(layout.finalLayoutAttributesForDisappearingItemAtIndexPath(1).frame, QRectF(60, 0, 50, 50));
    EXPECT_EQ(layout.initialLayoutAttributesForAppearingItemAtIndexPath(0).frame, QRectF(0, 0, 110, 20));
    EXPECT_EQ(layout.formerLayoutAttributesForItemAtIndexPath(1).frame, QRectF(60, 0, 50, 50));
}

} // namespace
