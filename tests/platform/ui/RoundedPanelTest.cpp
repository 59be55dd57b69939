#include "platform/ui/RoundedPanel.h"

#include <gtest/gtest.h>

#include <limits>

using namespace kovalin::platform;

namespace {

RoundedPanel panelOf(const QSizeF& size, double radius, double ratio = 1)
{
    return {.size = size, .cornerRadius = radius, .color = Qt::red, .devicePixelRatio = ratio};
}

double area(const RoundedPanel& panel)
{
    double sum = 0;
    for (const auto& piece : panelPieces(PanelPicture::of(panel), panel)) {
        sum += piece.target.width() * piece.target.height();
    }
    return sum;
}

TEST(RoundedPanel, panelsOfAllSizesShareOnePicture)
{
    const auto small = PanelPicture::of(panelOf({40, 40}, 8));
    EXPECT_EQ(small.key, PanelPicture::of(panelOf({400, 90.5}, 8)).key);
    EXPECT_EQ(small.key.size, QSize(19, 19));
    EXPECT_NE(small.key, PanelPicture::of(panelOf({40, 40}, 9)).key);
    EXPECT_NE(small.key, PanelPicture::of(panelOf({40, 40}, 8, 2)).key);
}

TEST(RoundedPanel, piecesCoverThePanelOnce)
{
    for (const double width : {0.5, 1.0, 15.0, 16.0, 17.0, 18.5, 19.0, 100.0}) {
        for (const double ratio : {1.0, 1.5, 2.0, 3.0}) {
            const auto panel = panelOf({width, 40}, 8, ratio);
            EXPECT_NEAR(area(panel), width * 40, 1e-9) << width << " at " << ratio;
            QRectF all;
            for (const auto& piece : panelPieces(PanelPicture::of(panel), panel)) {
                all |= piece.target;
            }
            EXPECT_EQ(all, QRectF(0, 0, width, 40)) << width << " at " << ratio;
        }
    }
}

TEST(RoundedPanel, cornersAreNeverScaled)
{
    const auto panel = panelOf({100, 40}, 8, 2);
    const auto pieces = panelPieces(PanelPicture::of(panel), panel);
    for (const size_t corner : {size_t(0), size_t(2), size_t(6), size_t(8)}) {
        EXPECT_EQ(pieces[corner].source.size(), pieces[corner].target.size() * 2);
    }
}

TEST(RoundedPanel, aBlurReachesOutwards)
{
    RoundedPanel panel = panelOf({100, 40}, 8);
    panel.blurRadius = 6;
    EXPECT_EQ(blurMargin(panel), 6);
    EXPECT_NEAR(area(panel), 112 * 52, 1e-9);
    EXPECT_EQ(qAlpha(PanelPicture::of(panel).image().pixel(0, 0)), 0);
}

TEST(RoundedPanel, oddNumbersMakeSomePicture)
{
    for (const double odd :
         {-5.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(), 1e300}) {
        RoundedPanel panel = panelOf({20, 20}, odd);
        EXPECT_FALSE(PanelPicture::of(panel).image().isNull());
        panel.blurRadius = odd;
        EXPECT_FALSE(PanelPicture::of(panel).image().isNull());
    }
}

} // namespace
