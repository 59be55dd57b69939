#include "picker/grid/QXSDKKovalinFlowLayout.h"

#include <gtest/gtest.h>

using namespace kovalin::platform;

namespace {

class QXSDKKovalinFlowLayoutTest : public testing::Test {
protected:
    QXSDKKovalinFlowLayoutTest()
    {
        layout.setMinimumLineSpacing(0);
        layout.setMinimumInteritemSpacing(0);
        layout.prepare(
            3, [](qsizetype) { return QSizeF(50, 50); }, {100, 400}, false);
    }

    QXSDKKovalinFlowLayout layout;
};

TEST_F(QXSDKKovalinFlowLayoutTest, LetsItemsGrowFromHalfTheirSizeAndClearInTheirPlace)
{
    const auto attributes = layout.initialLayoutAttributesForAppearingItemAtIndexPath(1);
    EXPECT_EQ(attributes.frame, QRectF(50, 0, 50, 50));
    EXPECT_EQ(attributes.transform, ViewTransform::scale(0.5, 0.5));
    EXPECT_EQ(attributes.alpha, 0.0);
}

TEST_F(QXSDKKovalinFlowLayoutTest, LetsItemsShrinkToHalfTheirSizeAndClearWhereTheyWere)
{
    layout.prepare(
        3, [](qsizetype) { return QSizeF(100, 100); }, {100, 400}, false);
    const auto attributes = layout.finalLayoutAttributesForDisappearingItemAtIndexPath(1);
    EXPECT_EQ(attributes.frame, QRectF(50, 0, 50, 50));
    EXPECT_EQ(attributes.transform, ViewTransform::scale(0.5, 0.5));
    EXPECT_EQ(attributes.alpha, 0.0);
}

TEST_F(QXSDKKovalinFlowLayoutTest, LeavesItemsThatAreThereAlone)
{
    const auto attributes = layout.layoutAttributesForItemAtIndexPath(1);
    EXPECT_TRUE(attributes.transform.isIdentity());
    EXPECT_EQ(attributes.alpha, 1.0);
}

TEST_F(QXSDKKovalinFlowLayoutTest, MirrorsItemsForLanguagesFromRightToLeft)
{
    EXPECT_TRUE(layout.flipsHorizontallyInOppositeLayoutDirection());
    layout.prepare(
        3, [](qsizetype) { return QSizeF(50, 50); }, {100, 400}, true);
    EXPECT_EQ(layout.layoutAttributesForItemAtIndexPath(0).frame, QRectF(50, 0, 50, 50));
}

} // namespace
