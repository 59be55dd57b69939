#include "support/ViewTest.h"

#include <limits>

using namespace kovalin::platform;

namespace {

class ViewValuesTest : public kovalin::test::ViewTest {};

TEST_F(ViewValuesTest, framesChangeAtOnce)
{
    const auto view = makeView<View>();
    view->setFrame({10, 20, 30, 40});
    EXPECT_EQ(view->frame(), QRectF(10, 20, 30, 40));
    EXPECT_EQ(view->bounds(), QRectF(0, 0, 30, 40));
    EXPECT_EQ(view->center(), QPointF(25, 40));
    EXPECT_EQ(view->position(), QPointF(10, 20));
    EXPECT_EQ(view->size(), QSizeF(30, 40));

    view->setCenter({100, 100});
    EXPECT_EQ(view->frame(), QRectF(85, 80, 30, 40));
}

TEST_F(ViewValuesTest, impossibleValuesBecomePossibleOnes)
{
    const auto view = makeView<View>();
    view->setFrame({std::numeric_limits<double>::quiet_NaN(), 5, -3, std::numeric_limits<double>::infinity()});
    EXPECT_EQ(view->frame(), QRectF(0, 5, 0, 0));
    view->setAlpha(7);
    EXPECT_EQ(view->alpha(), 1);
    view->setAlpha(-7);
    EXPECT_EQ(view->alpha(), 0);
    EXPECT_EQ(view->opacity(), 0);
}

TEST_F(ViewValuesTest, whatAHostDoesToTheItemBecomesTheFrame)
{
    const auto view = makeView<View>();
    view->setParentItem(window().contentItem());
    view->setSize({70, 80});
    view->setPosition({5, 6});
    EXPECT_EQ(view->frame(), QRectF(5, 6, 70, 80));
}

TEST_F(ViewValuesTest, alphaIsSeen)
{
    const auto view = addView({0, 0, 100, 100}, Qt::black);
    view->setAlpha(0.5);
    EXPECT_NEAR(colorAt({50, 50}).red(), 128, 2);
    view->setHidden(true);
    EXPECT_EQ(colorAt({50, 50}), QColor(Qt::white));
}

TEST_F(ViewValuesTest, aScaleIsAboutTheCentre)
{
    const auto view = addView({50, 50, 100, 100}, Qt::black);
    view->setTransform(ViewTransform::scale(0.5, 0.5));
    EXPECT_EQ(view->frame(), QRectF(50, 50, 100, 100));
    const QImage picture = grab();
    EXPECT_EQ(colorAt(picture, ratio(), {70, 100}), QColor(Qt::white));
    EXPECT_EQ(colorAt(picture, ratio(), {80, 100}), QColor(Qt::black));
    EXPECT_EQ(colorAt(picture, ratio(), {120, 100}), QColor(Qt::black));
    EXPECT_EQ(colorAt(picture, ratio(), {130, 100}), QColor(Qt::white));
}

TEST_F(ViewValuesTest, aScaleStaysAboutTheCentreOfANewSize)
{
    const auto view = addView({0, 0, 10, 10}, Qt::black);
    view->setTransform(ViewTransform::scale(0.5, 0.5));
    view->setFrame({50, 50, 100, 100});
    EXPECT_EQ(view->mapToItem(root().get(), QPointF(0, 0)), QPointF(75, 75));
}

TEST_F(ViewValuesTest, aNegativeScaleMirrors)
{
    const auto view = addView({0, 0, 100, 100});
    const auto left = makeView<View>();
    left->setFrame({0, 0, 20, 100});
    left->setBackgroundColor(Qt::black);
    view->addSubview(left);
    view->setTransform(ViewTransform::scale(-1, 1));
    const QImage picture = grab();
    EXPECT_EQ(colorAt(picture, ratio(), {10, 50}), QColor(Qt::white));
    EXPECT_EQ(colorAt(picture, ratio(), {90, 50}), QColor(Qt::black));
}

TEST_F(ViewValuesTest, depthIsKeptAndNotSeen)
{
    const auto view = addView({50, 50, 100, 100}, Qt::black);
    const QImage before = grab();
    ViewTransform deep;
    deep.depth = 50;
    view->setTransform(deep);
    EXPECT_EQ(view->transform().depth, 50);
    EXPECT_FALSE(view->transform().isIdentity());
    EXPECT_EQ(grab(), before);
    view->setTransform({});
    EXPECT_TRUE(view->transform().isIdentity());
}

TEST_F(ViewValuesTest, aTranslationMovesWhatIsSeenAlone)
{
    const auto view = addView({0, 0, 50, 50}, Qt::black);
    view->setTransform(ViewTransform::translation(100, 0));
    EXPECT_EQ(view->frame(), QRectF(0, 0, 50, 50));
    EXPECT_EQ(colorAt({125, 25}), QColor(Qt::black));
    EXPECT_EQ(colorAt({25, 25}), QColor(Qt::white));
}

TEST_F(ViewValuesTest, clippingCutsSubviews)
{
    const auto view = addView({0, 0, 50, 50});
    const auto large = makeView<View>();
    large->setFrame({0, 0, 100, 100});
    large->setBackgroundColor(Qt::black);
    view->addSubview(large);
    EXPECT_EQ(colorAt({75, 75}), QColor(Qt::black));
    view->setClipsToBounds(true);
    EXPECT_EQ(colorAt({75, 75}), QColor(Qt::white));
    EXPECT_EQ(colorAt({25, 25}), QColor(Qt::black));
}

TEST_F(ViewValuesTest, safeAreasReachSubviewsAsFarAsTheyLieInThem)
{
    const auto view = addView({0, 10, 100, 190});
    EXPECT_EQ(view->safeAreaInsets(), QMarginsF());
    root()->setSafeAreaInsets({0, 30, 0, 20});
    EXPECT_EQ(root()->safeAreaInsets(), QMarginsF(0, 30, 0, 20));
    EXPECT_EQ(view->safeAreaInsets(), QMarginsF(0, 20, 0, 20));
    view->setFrame({0, 50, 100, 50});
    EXPECT_EQ(view->safeAreaInsets(), QMarginsF());
}

TEST_F(ViewValuesTest, theRatioIsTheWindows)
{
    EXPECT_EQ(root()->devicePixelRatio(), window().effectiveDevicePixelRatio());
    EXPECT_EQ(makeView<View>()->devicePixelRatio(), 1);
}

} // namespace
