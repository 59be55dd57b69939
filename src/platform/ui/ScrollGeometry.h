#pragma once

#include <QtCore/QMarginsF>
#include <QtCore/QPointF>
#include <QtCore/QSizeF>

#include <algorithm>
#include <cmath>

namespace kovalin::platform {

/// Where a scroll view can rest.
struct ScrollGeometry {
    QSizeF size; ///< The view's.
    QSizeF contentSize;
    QMarginsF inset;

    [[nodiscard]] QPointF start() const { return {-inset.left(), -inset.top()}; }

    [[nodiscard]] QPointF end() const
    {
        return {std::max(contentSize.width() + inset.right() - size.width(), -inset.left()),
                std::max(contentSize.height() + inset.bottom() - size.height(), -inset.top())};
    }

    [[nodiscard]] bool scrollsHorizontally() const { return end().x() - start().x() > leastWay; }
    [[nodiscard]] bool scrollsVertically() const { return end().y() - start().y() > leastWay; }

    /// The nearest offset to rest at; in a direction in which `offset` isn't finite, the start.
    [[nodiscard]] QPointF clamped(const QPointF& offset) const
    {
        const QPointF first = start();
        const QPointF last = end();
        return {std::isfinite(offset.x()) ? std::clamp(offset.x(), first.x(), last.x()) : first.x(),
                std::isfinite(offset.y()) ? std::clamp(offset.y(), first.y(), last.y()) : first.y()};
    }

    /// Points that are worth scrolling; less is what rounding leaves.
    static constexpr double leastWay = 0.01;
};

} // namespace kovalin::platform
