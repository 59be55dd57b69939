#pragma once

#include <QtCore/QRectF>
#include <QtCore/QSize>
#include <QtGui/QColor>
#include <QtGui/QImage>

#include <array>

namespace kovalin::platform {

/// A rectangle with round corners, with or without a border or blurred edges. Plain values and functions; any thread. Lengths in points.
struct RoundedPanel {
    QSizeF size = {};
    double cornerRadius = 0;
    QColor color = {};
    double borderWidth = 0;
    QColor borderColor = {};
    /// What the edges are blurred to, outwards as well as inwards.
    double blurRadius = 0;
    double devicePixelRatio = 1;
};

/// A small picture that a panel is put together from: of a panel that is large enough only the corners and a
/// stretch of each side that looks all the same, which is pulled to the panel's size. So panels of many sizes share one
/// picture, and a corner's pixels are never scaled.
struct PanelPicture {
    /// All that the picture depends on, in device pixels. Equal keys, equal pictures.
    struct Key {
        QSize size;
        double cornerRadius = 0;
        double borderWidth = 0;
        double blurRadius = 0;
        QRgb color = 0;
        QRgb borderColor = 0;

        friend bool operator==(const Key&, const Key&) = default;
    };

    /// From an edge of the picture to where its stretch begins and to where it ends, along each side.
    struct Stretch {
        int begin = 0;
        int end = 0;
    };

    Key key;
    Stretch horizontal;
    Stretch vertical;

    [[nodiscard]] static PanelPicture of(const RoundedPanel& panel);

    [[nodiscard]] QImage image() const;
};

/// How far a blur reaches beyond the panel, in points.
[[nodiscard]] double blurMargin(const RoundedPanel& panel);

/// One piece of a picture and where it goes.
struct PanelPiece {
    QRectF source; ///< In the picture's pixels.
    QRectF target; ///< In the coordinates of the panel.
};

/// Row by row; a piece without an area has a null target.
[[nodiscard]] std::array<PanelPiece, 9> panelPieces(const PanelPicture& picture, const RoundedPanel& panel);

} // namespace kovalin::platform
