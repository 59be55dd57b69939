#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtGui/QColor>

#include <optional>

namespace kovalin::platform {

/// A shadow below a view's own rectangle; its subviews cast none. Lengths in points.
struct LayerShadow {
    /// With alpha; transparent or invalid is no shadow.
    QColor color = {};
    /// How far it is blurred to either side of its edge; 0 is a crisp edge.
    double radius = 0;
    QPointF offset = {};
    /// What casts it, in the view's coordinates; absent for the view's bounds with the view's corners.
    std::optional<QRectF> path = {};
    /// Of `path`'s corners.
    double pathCornerRadius = 0;

    friend bool operator==(const LayerShadow&, const LayerShadow&) = default;
};

/// What a view draws of itself beside its background colour. Lengths in points. Nothing of it clips subviews.
struct LayerStyle {
    /// More than half of the shorter side counts as that half.
    double cornerRadius = 0;
    /// The border lies inside of the bounds.
    double borderWidth = 0;
    QColor borderColor = {};
    LayerShadow shadow;

    friend bool operator==(const LayerStyle&, const LayerStyle&) = default;
};

} // namespace kovalin::platform
