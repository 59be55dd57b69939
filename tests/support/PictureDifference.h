#pragma once

#include <QtCore/QPoint>
#include <QtGui/QImage>

namespace kovalin::test {

/// What two pictures of the same size differ in, as a person would see it. Any thread.
///
/// A pixel differs if one of its channels is off by more than 4 levels of 255; beside an edge by more than a quarter of
/// the edge's contrast, which is the expected picture's largest difference of the channel in the 3 × 3 pixels around.
/// So an edge may lie up to a quarter of a pixel elsewhere, which is more than rasterisers and font engines round
/// differently.
///
/// Some pixels may differ, as long as they lie scattered: at most 4 in any block of 8 × 8, and 1 in 1 000 of all. A
/// label that has moved, an icon or a hairline that is missing and a colour that is another one leave a cluster,
/// however large the picture is.
struct PictureDifference {
    qsizetype pixels = 0; ///< That differ.
    qsizetype allowedPixels = 0;
    int mostInBlock = 0; ///< In the block that has most of them.
    QPoint worstBlock;   ///< Its top left corner, in pixels.
    QImage picture;      ///< The expected one, pale, with what differs in red.

    /// `actual` and `expected` must be of the same size. Transparency isn't looked at.
    [[nodiscard]] static PictureDifference of(const QImage& actual, const QImage& expected);

    [[nodiscard]] bool isTolerable() const;
};

} // namespace kovalin::test
