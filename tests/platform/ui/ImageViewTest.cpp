#include "platform/ui/ImageView.h"

#include "platform/ui/Animation.h"
#include "support/ManualAnimationDriver.h"
#include "support/SamplePictures.h"
#include "support/ViewTest.h"

#include <QtGui/QPainter>

#include <thread>

using namespace kovalin::platform;
using namespace std::chrono_literals;
using kovalin::test::waitFor;

namespace {

QImage filled(const QColor& color, const QSize& size = QSize(20, 20))
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

class ImageViewTest : public kovalin::test::ViewTest {
protected:
    ImageViewTest()
    {
        view->setFrame({0, 0, 100, 50});
        root()->addSubview(view);
    }

    /// Pictures are prepared on another thread.
    bool becomes(const QPointF& point, const QColor& color)
    {
        return waitFor([&] { return colorAt(point) == color; });
    }

    std::shared_ptr<ImageView> view = makeView<ImageView>();
};

TEST_F(ImageViewTest, nothingIsShownWithoutAPicture)
{
    EXPECT_EQ(colorAt({50, 25}), QColor(Qt::white));
    EXPECT_EQ(view->sizeThatFits({100, 100}), QSizeF(0, 0));
}

TEST_F(ImageViewTest, aPictureFillsTheView)
{
    view->setImage(filled(Qt::red));
    EXPECT_TRUE(becomes({50, 25}, Qt::red));
    const QImage picture = grab();
    EXPECT_EQ(colorAt(picture, ratio(), {1, 1}), QColor(Qt::red));
    EXPECT_EQ(colorAt(picture, ratio(), {99, 49}), QColor(Qt::red));
}

TEST_F(ImageViewTest, aPictureMayKeepItsProportions)
{
    view->setContentMode(ContentMode::AspectFit);
    view->setImage(filled(Qt::red));
    EXPECT_TRUE(becomes({50, 25}, Qt::red));
    const QImage picture = grab();
    EXPECT_EQ(colorAt(picture, ratio(), {50, 1}), QColor(Qt::red));
    EXPECT_EQ(colorAt(picture, ratio(), {20, 25}), QColor(Qt::white));
    EXPECT_EQ(colorAt(picture, ratio(), {80, 25}), QColor(Qt::white));
}

TEST_F(ImageViewTest, aPictureMayKeepItsSize)
{
    view->setContentMode(ContentMode::Center);
    QImage image = filled(Qt::red, {40, 40});
    image.setDevicePixelRatio(2);
    view->setImage(image);
    EXPECT_EQ(view->sizeThatFits({5, 5}), QSizeF(20, 20));
    EXPECT_TRUE(becomes({50, 25}, Qt::red));
    const QImage picture = grab();
    EXPECT_EQ(colorAt(picture, ratio(), {41, 16}), QColor(Qt::red));
    EXPECT_EQ(colorAt(picture, ratio(), {38, 25}), QColor(Qt::white));
    EXPECT_EQ(colorAt(picture, ratio(), {50, 13}), QColor(Qt::white));
}

TEST_F(ImageViewTest, aTemplateIsShownInItsTint)
{
    view->setTintColor(Qt::blue);
    view->setImage(filled(Qt::red), true);
    EXPECT_TRUE(becomes({50, 25}, Qt::blue));
    view->setTintColor(Qt::green);
    EXPECT_TRUE(becomes({50, 25}, Qt::green));
    view->setImage(view->image(), false);
    EXPECT_TRUE(becomes({50, 25}, Qt::red));
}

TEST_F(ImageViewTest, aTemplatesTransparencyStays)
{
    QImage image = filled(Qt::transparent);
    QPainter(&image).fillRect(0, 0, 10, 20, Qt::red);
    view->setTintColor(Qt::blue);
    view->setImage(image, true);
    EXPECT_TRUE(becomes({20, 25}, Qt::blue));
    EXPECT_EQ(colorAt({80, 25}), QColor(Qt::white));
}

TEST_F(ImageViewTest, aPictureIsMadeForTheWindowsPixels)
{
    // Two pixels to a point: at a ratio of 2 each is a pixel of the window's.
    QImage image(200, 100, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, x % 2 ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
        }
    }
    view->setImage(image);
    EXPECT_TRUE(waitFor([&] { return colorAt({50.5, 25}) != QColor(Qt::white); }));
    const QImage picture = grab();
    if (ratio() == 2) {
        EXPECT_EQ(picture.pixelColor(100, 50), QColor(Qt::white));
        EXPECT_EQ(picture.pixelColor(101, 50), QColor(Qt::black));
    } else {
        EXPECT_NEAR(picture.pixelColor(50, 25).red(), 127, 2);
        EXPECT_NEAR(picture.pixelColor(51, 25).red(), 127, 2);
    }
}

TEST_F(ImageViewTest, theFormerPictureStaysUntilTheNewOneIsReady)
{
    view->setImage(filled(Qt::red));
    ASSERT_TRUE(becomes({50, 25}, Qt::red));
    EXPECT_TRUE(view->isImageReady());
    view->setImage(filled(Qt::blue));
    EXPECT_FALSE(view->isImageReady());
    // However often it is drawn: nothing but the one or the other.
    EXPECT_TRUE(waitFor([&] {
        const QColor color = colorAt({50, 25});
        EXPECT_TRUE(color == QColor(Qt::red) || color == QColor(Qt::blue));
        return color == QColor(Qt::blue);
    }));
    EXPECT_TRUE(view->isImageReady());
    view->setImage({});
    EXPECT_FALSE(view->isImageReady());
}

TEST_F(ImageViewTest, aNullPictureTakesTheFormerAwayAtOnce)
{
    view->setImage(filled(Qt::red));
    ASSERT_TRUE(becomes({50, 25}, Qt::red));
    view->setImage(filled(Qt::blue));
    grab();
    view->setImage({});
    EXPECT_EQ(colorAt({50, 25}), QColor(Qt::white));
    // What was under way comes too late.
    view->setImage(filled(Qt::green));
    EXPECT_TRUE(becomes({50, 25}, Qt::green));
}

TEST_F(ImageViewTest, aNewSizeShowsThePictureAllTheWhile)
{
    view->setImage(filled(Qt::red));
    ASSERT_TRUE(becomes({50, 25}, Qt::red));
    view->setFrame({0, 0, 150, 150});
    EXPECT_EQ(colorAt({140, 140}), QColor(Qt::red));
}

TEST_F(ImageViewTest, aHiddenViewShowsItsPictureOnceShown)
{
    view->setHidden(true);
    view->setImage(filled(Qt::red));
    EXPECT_EQ(colorAt({50, 25}), QColor(Qt::white));
    view->setHidden(false);
    EXPECT_TRUE(becomes({50, 25}, Qt::red));
}

TEST_F(ImageViewTest, aTransitionDissolvesPictures)
{
    kovalin::test::ManualAnimationDriver time;
    QImage red = filled(Qt::red, (view->bounds().size() * ratio()).toSize());
    QImage blue = filled(Qt::blue, red.size());
    view->setImage(red); // of the right size, so they need no preparation
    ASSERT_TRUE(becomes({50, 25}, Qt::red));
    bool isCompleted = false;
    transition(
        view, 200ms, [&] { view->setImage(blue); }, [&] { isCompleted = true; });
    EXPECT_EQ(colorAt({50, 25}), QColor(Qt::red));
    time.step(100ms);
    const QColor half = colorAt({50, 25});
    EXPECT_GT(half.red(), 50);
    EXPECT_GT(half.blue(), 100);
    EXPECT_LT(half.blue(), 250);
    time.step(100ms);
    EXPECT_EQ(colorAt({50, 25}), QColor(Qt::blue));
    EXPECT_TRUE(waitFor([&] { return isCompleted; }));
}

TEST_F(ImageViewTest, aViewMayGoWhileItsPictureIsPrepared)
{
    for (int round = 0; round < 20; ++round) {
        auto other = makeView<ImageView>();
        other->setFrame({0, 0, 90, 90});
        root()->addSubview(other);
        other->setImage(kovalin::test::noise(quint32(round), QSize(100, 100)));
        grab();
        other->removeFromSuperview();
        if (round % 2) {
            std::thread([other = std::move(other)]() mutable { other.reset(); }).join();
        }
        other.reset();
        kovalin::test::drainMainQueue();
    }
    view->setImage(filled(Qt::red));
    EXPECT_TRUE(becomes({50, 25}, Qt::red));
}

TEST(Images, oddPicturesGiveNone)
{
    EXPECT_TRUE(preparedImage({}, {10, 10}, {}).isNull());
    EXPECT_TRUE(preparedImage(filled(Qt::red), {0, 10}, {}).isNull());
    EXPECT_EQ(naturalSize({}), QSizeF(0, 0));
}

TEST(Images, aPictureInItsPlaceBeginsOnAWholePixel)
{
    EXPECT_EQ(contentRect({20, 20}, {0, 0, 51, 51}, ContentMode::Center, 1), QRectF(16, 16, 20, 20));
    EXPECT_EQ(contentRect({20, 20}, {0, 0, 51, 51}, ContentMode::Center, 2), QRectF(15.5, 15.5, 20, 20));
    EXPECT_EQ(contentRect({20, 10}, {0, 0, 40, 40}, ContentMode::AspectFit, 1), QRectF(0, 10, 40, 20));
    EXPECT_EQ(contentRect({20, 10}, {0, 0, 40, 40}, ContentMode::Fill, 1), QRectF(0, 0, 40, 40));
}

} // namespace
