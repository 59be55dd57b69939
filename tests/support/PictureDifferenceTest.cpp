#include "support/PictureDifference.h"

#include "support/TestFont.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <gtest/gtest.h>

#include <tuple>

using kovalin::test::PictureDifference;

namespace {

/// A bar as the picker has them: a field with a text, an icon, a pill and a hairline, in points.
struct Bar {
    QPointF textAt = {60, 20};
    QPointF iconAt = {10, 10};
    bool hasIcon = true;
    bool hasHairline = true;
    QColor text = QColor(0x33, 0x33, 0x33);
    QColor background = Qt::white;
    QColor pill = QColor(0xF2, 0xA9, 0x3B);
    double allMoved = 0;
};

/// Seen at different ratios, in a small and in a large window.
class PictureDifferenceTest : public testing::TestWithParam<std::tuple<int, QSize>> {
protected:
    void SetUp() override
    {
        const QString missing = kovalin::test::installTestFont();
        if (!missing.isEmpty()) {
            GTEST_SKIP() << missing.toStdString();
        }
    }

    static QImage drawn(const Bar& bar)
    {
        const auto [ratio, size] = GetParam();
        QImage picture(size * ratio, QImage::Format_RGB32);
        picture.fill(bar.background);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(ratio, ratio);
        painter.translate(bar.allMoved, bar.allMoved);
        painter.setPen(Qt::NoPen);
        if (bar.hasIcon) {
            painter.setBrush(bar.text);
            QPainterPath ring;
            ring.addEllipse(QRectF(bar.iconAt, QSizeF(16, 16)));
            ring.addEllipse(QRectF(bar.iconAt, QSizeF(16, 16)).adjusted(2, 2, -2, -2));
            painter.drawPath(ring);
        }
        painter.setBrush(bar.pill);
        painter.drawRoundedRect(QRectF(10, 40, 80, 28), 14, 14);
        if (bar.hasHairline) {
            painter.fillRect(QRectF(0, 80, size.width(), 1.0 / ratio), QColor(0xE1, 0xE3, 0xE5));
        }
        painter.setPen(bar.text);
        QPainterPath text;
        text.addText(bar.textAt, QGuiApplication::font(), QStringLiteral("Search stickers"));
        painter.fillPath(text, bar.text);
        return picture;
    }

    static PictureDifference differenceOf(const Bar& bar) { return PictureDifference::of(drawn(bar), drawn({})); }
    static bool isCaught(const Bar& bar) { return !differenceOf(bar).isTolerable(); }
};

TEST_P(PictureDifferenceTest, thereIsNoneBetweenEqualPictures)
{
    const auto difference = differenceOf({});
    EXPECT_EQ(difference.pixels, 0);
    EXPECT_EQ(difference.mostInBlock, 0);
    EXPECT_TRUE(difference.isTolerable());
}

TEST_P(PictureDifferenceTest, aLabelThatHasMovedByAPointIsCaught)
{
    for (const QPointF& move : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)}) {
        EXPECT_TRUE(isCaught({.textAt = QPointF(60, 20) + move})) << move.x() << ", " << move.y();
        EXPECT_TRUE(isCaught({.iconAt = QPointF(10, 10) + move})) << move.x() << ", " << move.y();
    }
}

TEST_P(PictureDifferenceTest, aLabelThatHasMovedByHalfAPixelIsCaught)
{
    const double half = 0.5 / std::get<0>(GetParam());
    EXPECT_TRUE(isCaught({.textAt = QPointF(60 + half, 20)}));
    EXPECT_TRUE(isCaught({.textAt = QPointF(60, 20 + half)}));
}

TEST_P(PictureDifferenceTest, whatIsMissingIsCaught)
{
    EXPECT_TRUE(isCaught({.hasIcon = false}));
    EXPECT_TRUE(isCaught({.hasHairline = false}));
    // And what is there and shouldn't be.
    EXPECT_FALSE(PictureDifference::of(drawn({}), drawn({.hasIcon = false})).isTolerable());
    EXPECT_FALSE(PictureDifference::of(drawn({}), drawn({.hasHairline = false})).isTolerable());
}

TEST_P(PictureDifferenceTest, aColourThatIsABitOffIsCaught)
{
    EXPECT_TRUE(isCaught({.background = QColor(0xFA, 0xFA, 0xFA)}));
    EXPECT_TRUE(isCaught({.pill = QColor(0xF2, 0xA9, 0x41)}));
    EXPECT_TRUE(isCaught({.pill = QColor(0xF2, 0xA3, 0x3B)}));
    EXPECT_TRUE(isCaught({.text = QColor(0x77, 0x77, 0x77)}));
}

TEST_P(PictureDifferenceTest, otherRoundingIsTolerated)
{
    // In font engines and rasterisers: less than an eighth of a pixel.
    for (const double share : {-0.12, -0.05, 0.05, 0.12}) {
        const auto difference = differenceOf({.allMoved = share / std::get<0>(GetParam())});
        EXPECT_TRUE(difference.isTolerable())
            << share << ": " << difference.pixels << " pixels, " << difference.mostInBlock << " in one block";
    }
    // In the mixing of colours: some levels.
    EXPECT_FALSE(isCaught({.text = QColor(0x35, 0x31, 0x33), .background = QColor(0xFD, 0xFF, 0xFD)}));
}

TEST_P(PictureDifferenceTest, itShowsWhereItIs)
{
    QImage spotted = drawn({});
    spotted.setPixel(120, 50, qRgb(0, 0, 255));
    const auto difference = PictureDifference::of(spotted, drawn({}));
    EXPECT_EQ(difference.pixels, 1);
    EXPECT_TRUE(QRect(difference.worstBlock, QSize(8, 8)).contains(120, 50));
    EXPECT_EQ(difference.picture.pixel(120, 50), qRgb(255, 0, 0));
    EXPECT_EQ(difference.picture.pixel(121, 50), qRgb(255, 255, 255));
}

TEST_P(PictureDifferenceTest, scatteredSpotsAreToleratedAndAClusterIsNot)
{
    QImage spotted = drawn({});
    for (int x = 100; x < 180; x += 16) {
        spotted.setPixel(x, 50, qRgb(0, 0, 255));
    }
    EXPECT_TRUE(PictureDifference::of(spotted, drawn({})).isTolerable());
    for (int x = 100; x < 105; ++x) {
        spotted.setPixel(x, 50, qRgb(0, 0, 255));
    }
    EXPECT_FALSE(PictureDifference::of(spotted, drawn({})).isTolerable());
}

INSTANTIATE_TEST_SUITE_P(Sizes, PictureDifferenceTest,
                         testing::Combine(testing::Values(1, 2), testing::Values(QSize(200, 100), QSize(1024, 700))),
                         [](const auto& given) {
                             return QStringLiteral("ratio_%1_width_%2")
                                 .arg(std::get<0>(given.param))
                                 .arg(std::get<1>(given.param).width())
                                 .toStdString();
                         });

} // namespace
