#include "platform/foundation/VectorImage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using kovalin::platform::VectorImage;

/// 20 by 10 points: the left half is blue, the right half red at half opacity.
VectorImage halves()
{
    return VectorImage::fromSvg(R"(<svg xmlns="http://www.w3.org/2000/svg" width="20" height="10" viewBox="0 0 20 10">
        <rect x="0" y="0" width="10" height="10" fill="#00F"/>
        <rect x="10" y="0" width="10" height="10" fill="#F00" fill-opacity="0.5"/></svg>)");
}

TEST(VectorImage, IsNullAtFirst)
{
    const VectorImage picture;
    EXPECT_TRUE(picture.isNull());
    EXPECT_TRUE(picture.size().isEmpty());
    EXPECT_TRUE(picture.image({10, 10}, 1).isNull());
    EXPECT_TRUE(picture.asTemplate().isNull());
    EXPECT_EQ(picture.asTemplate(), picture);
}

TEST(VectorImage, IsNullForWhatIsNoDrawing)
{
    for (const QByteArray& bytes : {QByteArray(), QByteArray("nonsense"), QByteArray("<html/>"), QByteArray("<svg"),
                                    QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\"/>")}) {
        EXPECT_TRUE(VectorImage::fromSvg(bytes).isNull()) << bytes.constData();
    }
}

TEST(VectorImage, HasTheSizeOfItsDocument)
{
    EXPECT_EQ(halves().size(), QSizeF(20, 10));
    EXPECT_FALSE(halves().isNull());
    EXPECT_FALSE(halves().isTemplate());
}

TEST(VectorImage, IsDrawnAtThePixelRatio)
{
    for (const qreal ratio : {1.0, 1.25, 2.0, 3.0}) {
        const QImage image = halves().image({20, 10}, ratio);
        EXPECT_EQ(image.size(), QSize(qRound(20 * ratio), qRound(10 * ratio)));
        EXPECT_EQ(image.devicePixelRatio(), ratio);
        EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
        EXPECT_EQ(image.pixelColor(0, 0), QColor(0, 0, 255));
        EXPECT_EQ(image.pixelColor(image.width() - 1, image.height() - 1).red(), 255);
        EXPECT_NEAR(image.pixelColor(image.width() - 1, 0).alpha(), 127.5, 1);
    }
}

TEST(VectorImage, IsStretchedToTheSizeAskedFor)
{
    const QImage image = halves().image({10, 40}, 1);
    EXPECT_EQ(image.size(), QSize(10, 40));
    EXPECT_EQ(image.pixelColor(4, 39), QColor(0, 0, 255));
    EXPECT_EQ(image.pixelColor(5, 39).red(), 255);
}

TEST(VectorImage, TemplateHasTheTintAndItsOwnAlpha)
{
    const VectorImage picture = halves().asTemplate();
    EXPECT_TRUE(picture.isTemplate());
    EXPECT_EQ(picture.size(), halves().size());
    EXPECT_NE(picture, halves());

    const QImage image = picture.image({20, 10}, 1, QColor(0, 255, 0));
    EXPECT_EQ(image.pixelColor(2, 2), QColor(0, 255, 0));
    EXPECT_EQ(image.pixelColor(12, 2).green(), 255);
    EXPECT_NEAR(image.pixelColor(12, 2).alpha(), 127.5, 1);

    const QImage half = picture.image({20, 10}, 1, QColor(0, 255, 0, 128));
    EXPECT_NEAR(half.pixelColor(2, 2).alpha(), 128, 1);
    EXPECT_NEAR(half.pixelColor(12, 2).alpha(), 64, 1);
}

TEST(VectorImage, TintDoesNotChangeWhatIsNoTemplate)
{
    EXPECT_EQ(halves().image({20, 10}, 1, QColor(0, 255, 0)), halves().image({20, 10}, 1));
}

TEST(VectorImage, IsNotDrawnInSizesThatAreNone)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double bad : {0.0, -1.0, nan, infinity, -infinity, 1e300}) {
        EXPECT_TRUE(halves().image({bad, 10}, 1).isNull()) << bad;
        EXPECT_TRUE(halves().image({20, bad}, 1).isNull()) << bad;
        EXPECT_TRUE(halves().image({20, 10}, bad).isNull()) << bad;
        EXPECT_TRUE(halves().image({bad, bad}, 1).isNull()) << bad;
    }
    EXPECT_TRUE(halves().image({4001, 4001}, 1).isNull());
}

TEST(VectorImage, HasAPixelHoweverSmall)
{
    EXPECT_EQ(halves().image({0.01, 0.01}, 1).size(), QSize(1, 1));
}

TEST(VectorImage, IsAValue)
{
    const VectorImage picture = halves();
    VectorImage copy = picture;
    EXPECT_EQ(copy, picture);
    copy = copy.asTemplate();
    EXPECT_FALSE(picture.isTemplate());
    EXPECT_EQ(halves(), picture);
}

} // namespace
