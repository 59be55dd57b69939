#include "picker/config/QXSDKKovalinStickerPickerTheme.h"
#include "picker/grid/CellTest.h"
#include "platform/foundation/Color.h"
#include "support/ManualAnimationDriver.h"

#include <gmock/gmock.h>

// How a sticker's tile looks.

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class StickerTileLookTest : public CellTest {};

TEST_F(StickerTileLookTest, ShowsTheLoadingPictureInTheColourOfTitles)
{
    QXSDKKovalinStickerPickerTheme theme;
    theme.setTitleTextColor(Qt::red);
    cell->applyTheme(theme);
    EXPECT_TRUE(colorsEqual(cell->imageView()->tintColor(), Qt::red));
    // It is faint, and red alone.
    bool isSeen = false;
    for (int y = 0; y < shown().height(); ++y) {
        for (int x = 0; x < shown().width(); ++x) {
            const QColor color = shown().pixelColor(x, y);
            isSeen = isSeen || color.alpha() > 40;
            ASSERT_TRUE(color.alpha() < 10 || (color.red() > 200 && color.green() < 30 && color.blue() < 30));
        }
    }
    EXPECT_TRUE(isSeen);
    load("/blue");
    cell->applyTheme(theme);
    EXPECT_EQ(shown().pixelColor(0, 0), QColor(Qt::blue)) << "stickers keep their colours";
}

TEST_F(StickerTileLookTest, DrawsItsPicturesForTheWindowsPixelsOnceForAllCells)
{
    EXPECT_EQ(shown().devicePixelRatio(), ratio());
    EXPECT_EQ(shown().size(), (QSizeF(70, 70) * ratio()).toSize());
    EXPECT_EQ(retryIcon().image().size(), (QSizeF(24, 24) * ratio()).toSize());
    EXPECT_TRUE(showsLoadingPicture()) << "the very same picture as another tile's";
}

TEST_F(StickerTileLookTest, DissolvesIntoThePictureInAQuarterOfASecond)
{
    ManualAnimationDriver driver;
    load("/red");
    EXPECT_THAT(delegate->told, ElementsAre("succeeded")) << "without waiting for the dissolve";
    EXPECT_EQ(colorAt(corner()), QColor(Qt::white));
    driver.step(0ms);
    driver.step(125ms);
    EXPECT_NEAR(colorAt(corner()).green(), 127, 3);
    EXPECT_EQ(colorAt(corner()).red(), 255);
    driver.step(124ms);
    EXPECT_GT(colorAt(corner()).green(), 0);
    driver.step(1ms);
    EXPECT_EQ(colorAt(corner()), QColor(Qt::red));
}

TEST_F(StickerTileLookTest, TakesTheFormerStickerAwayWithTheNextFrame)
{
    load("/red");
    ASSERT_TRUE(waitFor([this] { return colorAt(corner()) == QColor(Qt::red); }));
    cell->setImageURL(pictures.url("/held"));
    QImage picture = grab();
    EXPECT_EQ(colorAt(picture, ratio(), corner()), QColor(Qt::white));
    EXPECT_TRUE(hasLoadingPicture(picture)) << "at once";

    // As a cell that was put aside, and is used again.
    load("/red");
    ASSERT_TRUE(waitFor([this] { return colorAt(corner()) == QColor(Qt::red); }));
    cell->setHidden(true);
    grab();
    cell->setImageURL(pictures.url("/held"));
    cell->setHidden(false);
    picture = grab();
    EXPECT_EQ(colorAt(picture, ratio(), corner()), QColor(Qt::white));
    EXPECT_TRUE(hasLoadingPicture(picture));
}

TEST_F(StickerTileLookTest, TakesAStickerAwayThatIsBeingScaled)
{
    load("/red");
    ASSERT_TRUE(waitFor([this] { return colorAt(corner()) == QColor(Qt::red); }));
    cell->setFrame({10, 20, 150, 150});
    grab();
    cell->setImageURL(pictures.url("/held"));
    EXPECT_EQ(colorAt(corner()), QColor(Qt::white));
    EXPECT_TRUE(waitFor([this] { return hasLoadingPicture(grab()); }));
}

TEST_F(StickerTileLookTest, ShrinksWhilePressed)
{
    press(middle());
    EXPECT_TRUE(cell->isHighlighted());
    EXPECT_EQ(cell->transform().scaleX, double(0.85F));
    EXPECT_EQ(cell->transform().depth, 50);
    release(middle());
    EXPECT_FALSE(cell->isHighlighted());
    EXPECT_TRUE(cell->transform().isIdentity());
}

} // namespace
