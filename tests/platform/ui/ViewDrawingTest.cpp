#include "support/ViewTest.h"

using namespace kovalin::platform;

namespace {

// Every test runs at one pixel to a point, and again at two.
class ViewDrawingTest : public kovalin::test::ViewTest {
protected:
    /// Of a pixel of the window.
    static QColor pixel(const QImage& picture, int x, int y) { return picture.pixelColor(x, y); }
};

TEST_F(ViewDrawingTest, aBackgroundFillsTheBoundsToThePixel)
{
    addView({10, 20, 30, 40}, Qt::red);
    const QImage picture = grab();
    const int scale = int(ratio());
    EXPECT_EQ(picture.width(), side * scale);
    EXPECT_EQ(pixel(picture, 10 * scale, 20 * scale), QColor(Qt::red));
    EXPECT_EQ(pixel(picture, 40 * scale - 1, 60 * scale - 1), QColor(Qt::red));
    EXPECT_EQ(pixel(picture, 10 * scale - 1, 30 * scale), QColor(Qt::white));
    EXPECT_EQ(pixel(picture, 40 * scale, 30 * scale), QColor(Qt::white));
}

TEST_F(ViewDrawingTest, aBackgroundMayBeTakenAway)
{
    const auto view = addView({0, 0, 100, 100}, Qt::red);
    grab();
    view->setBackgroundColor({});
    EXPECT_EQ(colorAt({50, 50}), QColor(Qt::white));
}

TEST_F(ViewDrawingTest, roundCornersLeaveTheCornersOut)
{
    const auto view = addView({0, 0, 100, 60}, Qt::blue);
    view->setCornerRadius(20);
    const QImage picture = grab();
    const int scale = int(ratio());
    EXPECT_EQ(pixel(picture, 0, 0), QColor(Qt::white));
    EXPECT_EQ(pixel(picture, 100 * scale - 1, 60 * scale - 1), QColor(Qt::white));
    EXPECT_EQ(colorAt(picture, ratio(), {50, 30}), QColor(Qt::blue));
    // The middles of the sides reach their edges.
    EXPECT_EQ(pixel(picture, 50 * scale, 0), QColor(Qt::blue));
    EXPECT_EQ(pixel(picture, 0, 30 * scale), QColor(Qt::blue));
    EXPECT_EQ(pixel(picture, 50 * scale, 60 * scale - 1), QColor(Qt::blue));
    // Just within and without of the arc on its diagonal, some 5.9 points from the corner.
    EXPECT_EQ(colorAt(picture, ratio(), {7.5, 7.5}), QColor(Qt::blue));
    EXPECT_EQ(colorAt(picture, ratio(), {4, 4}), QColor(Qt::white));
}

TEST_F(ViewDrawingTest, cornersAreDrawnInDevicePixels)
{
    addView({0, 0, 100, 60}, Qt::blue)->setCornerRadius(20);
    const QImage picture = grab();
    // Along an arc drawn at the window's ratio, only a pixel or two of each row are neither of the colours.
    const int scale = int(ratio());
    int mixed = 0;
    for (int y = 2 * scale; y < 20 * scale; ++y) {
        for (int x = 0; x < 20 * scale; ++x) {
            const QColor color = pixel(picture, x, y);
            mixed += color != QColor(Qt::blue) && color != QColor(Qt::white) ? 1 : 0;
        }
    }
    EXPECT_GT(mixed, 0);
    EXPECT_LT(mixed, 18 * scale * 2);
}

TEST_F(ViewDrawingTest, aRadiusOfHalfTheHeightMakesAPill)
{
    for (const double height : {24.0, 25.0}) {
        const auto view = addView({0, 0, 100, height}, Qt::blue);
        view->setCornerRadius(1000);
        const QImage picture = grab();
        EXPECT_EQ(pixel(picture, 0, 0), QColor(Qt::white));
        EXPECT_EQ(colorAt(picture, ratio(), {50, height / 2}), QColor(Qt::blue));
        EXPECT_EQ(colorAt(picture, ratio(), {2, height / 2}), QColor(Qt::blue));
        EXPECT_EQ(colorAt(picture, ratio(), {98, height / 2}), QColor(Qt::blue));
        EXPECT_EQ(colorAt(picture, ratio(), {50, height + 1}), QColor(Qt::white));
        view->removeFromSuperview();
    }
}

TEST_F(ViewDrawingTest, translucentPiecesDontOverlap)
{
    const auto view = addView({0, 0, 25, 25}, QColor(0, 0, 0, 128));
    view->setCornerRadius(12.5);
    const QImage picture = grab();
    for (int x = 5; x < 20; ++x) {
        EXPECT_NEAR(colorAt(picture, ratio(), {double(x), 12}).red(), 127, 2) << x;
        EXPECT_NEAR(colorAt(picture, ratio(), {12, double(x)}).red(), 127, 2) << x;
    }
}

TEST_F(ViewDrawingTest, aBorderLiesInsideOfTheBounds)
{
    const auto view = addView({10, 10, 100, 60}, Qt::yellow);
    view->setBorder(2, Qt::black);
    const QImage picture = grab();
    const int scale = int(ratio());
    EXPECT_EQ(pixel(picture, 10 * scale - 1, 40 * scale), QColor(Qt::white));
    EXPECT_EQ(pixel(picture, 10 * scale, 40 * scale), QColor(Qt::black));
    EXPECT_EQ(pixel(picture, 12 * scale - 1, 40 * scale), QColor(Qt::black));
    EXPECT_EQ(pixel(picture, 12 * scale, 40 * scale), QColor(Qt::yellow));
    EXPECT_EQ(pixel(picture, 10 * scale, 10 * scale), QColor(Qt::black));
    EXPECT_EQ(pixel(picture, 110 * scale - 1, 70 * scale - 1), QColor(Qt::black));
}

TEST_F(ViewDrawingTest, aBorderNeedsNoBackground)
{
    const auto view = addView({10, 10, 100, 60});
    view->setBorder(2, Qt::black);
    view->setCornerRadius(8);
    const QImage picture = grab();
    EXPECT_EQ(colorAt(picture, ratio(), {11, 40}), QColor(Qt::black));
    EXPECT_EQ(colorAt(picture, ratio(), {60, 40}), QColor(Qt::white));
}

TEST_F(ViewDrawingTest, aCrispShadowFollowsItsPath)
{
    const auto view = addView({50, 50, 100, 40}, Qt::yellow);
    view->setCornerRadius(20);
    view->setShadow({.color = Qt::black, .path = QRectF(-1, -1, 102, 43), .pathCornerRadius = 21});
    const QImage picture = grab();
    EXPECT_EQ(colorAt(picture, ratio(), {100, 70}), QColor(Qt::yellow));
    EXPECT_EQ(colorAt(picture, ratio(), {100, 49}), QColor(Qt::black));
    EXPECT_EQ(colorAt(picture, ratio(), {100, 91}), QColor(Qt::black));
    EXPECT_EQ(colorAt(picture, ratio(), {100, 93}), QColor(Qt::white));
    EXPECT_EQ(colorAt(picture, ratio(), {100, 48}), QColor(Qt::white));
    EXPECT_EQ(colorAt(picture, ratio(), {50, 50}), QColor(Qt::white));
}

TEST_F(ViewDrawingTest, aBlurredShadowFadesAndIsMoved)
{
    const auto view = addView({50, 50, 100, 100}, Qt::yellow);
    view->setShadow({.color = Qt::black, .radius = 6, .offset = {0, 10}});
    const QImage picture = grab();
    EXPECT_EQ(colorAt(picture, ratio(), {100, 100}), QColor(Qt::yellow));
    const int near = colorAt(picture, ratio(), {100, 155}).red();
    const int edge = colorAt(picture, ratio(), {100, 160}).red();
    const int far = colorAt(picture, ratio(), {100, 165}).red();
    EXPECT_LT(near, edge);
    EXPECT_LT(edge, far);
    EXPECT_NEAR(edge, 128, 25);
    EXPECT_EQ(colorAt(picture, ratio(), {100, 180}), QColor(Qt::white));
    EXPECT_EQ(colorAt(picture, ratio(), {100, 48}), QColor(Qt::white));
}

TEST_F(ViewDrawingTest, whatIsDrawnFollowsEveryChange)
{
    const auto view = addView({0, 0, 100, 100}, Qt::red);
    view->setCornerRadius(10);
    grab();
    view->setBackgroundColor(Qt::green);
    EXPECT_EQ(colorAt({50, 50}), QColor(Qt::green));
    view->setCornerRadius(0);
    EXPECT_EQ(colorAt({0.25, 0.25}), QColor(Qt::green));
    view->setFrame({0, 0, 50, 50});
    EXPECT_EQ(colorAt({75, 75}), QColor(Qt::white));
    view->setFrame({});
    EXPECT_EQ(colorAt({10, 10}), QColor(Qt::white));
    view->setFrame({0, 0, 50, 50});
    EXPECT_EQ(colorAt({25, 25}), QColor(Qt::green));
}

TEST_F(ViewDrawingTest, whatIsDrawnAfterAFirstFrameIsInItsPlace)
{
    const auto bordered = addView({});
    bordered->setBorder(2, Qt::red);
    const auto plain = addView({100, 100, 50, 50});
    grab();
    bordered->setFrame({20, 30, 50, 50});
    plain->setBackgroundColor(Qt::green);
    plain->setShadow({.color = Qt::blue, .offset = {0, 10}});
    const QImage picture = grab();
    EXPECT_EQ(colorAt(picture, ratio(), {45, 31}), QColor(Qt::red));
    EXPECT_EQ(colorAt(picture, ratio(), {25, 1}), QColor(Qt::white));
    EXPECT_EQ(colorAt(picture, ratio(), {125, 125}), QColor(Qt::green));
    EXPECT_EQ(colorAt(picture, ratio(), {125, 155}), QColor(Qt::blue));
}

TEST_F(ViewDrawingTest, anotherWindowDrawsItAnew)
{
    const auto view = addView({0, 0, 100, 100}, Qt::red);
    view->setCornerRadius(10);
    view->setShadow({.color = Qt::black, .radius = 2});
    grab();
    QQuickWindow other;
    other.resize(side, side);
    other.show();
    ASSERT_TRUE(kovalin::test::waitFor([&] { return other.isExposed(); }));
    view->setParentItem(other.contentItem());
    EXPECT_EQ(colorAt(other.grabWindow(), other.effectiveDevicePixelRatio(), {50, 50}), QColor(Qt::red));
    view->setParentItem(root().get());
    EXPECT_EQ(colorAt({50, 50}), QColor(Qt::red));
}

TEST_F(ViewDrawingTest, everythingIsDrawnAtAnAnimationsHalfWay)
{
    const auto view = addView({10.3, 10.7, 50.2, 20.9}, Qt::red);
    view->setCornerRadius(10);
    view->setTransform(ViewTransform::scale(0.85, 0.85));
    EXPECT_EQ(colorAt({35, 21}), QColor(Qt::red));
}

} // namespace
