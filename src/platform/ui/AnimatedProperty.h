#pragma once

#include "platform/ui/ViewTransform.h"

#include <QtCore/QRectF>
#include <QtGui/QColor>

#include <array>

namespace kovalin::platform {

/// What of a view an animation moves.
enum class AnimatedProperty {
    Frame,
    Alpha,
    Transform,
    BackgroundColor,
    Dissolve, ///< How far a view's new content has replaced the old, 0 … 1.
};

/// A property's value as numbers that can be moved each for itself.
using PropertyValue = std::array<double, 5>;

[[nodiscard]] inline PropertyValue valueOf(const QRectF& frame)
{
    return {frame.x(), frame.y(), frame.width(), frame.height(), 0};
}

[[nodiscard]] inline PropertyValue valueOf(double number)
{
    return {number, 0, 0, 0, 0};
}

[[nodiscard]] inline PropertyValue valueOf(const ViewTransform& transform)
{
    return {transform.scaleX, transform.scaleY, transform.translateX, transform.translateY, transform.depth};
}

/// Colours move with their alpha multiplied in, so that one that fades in from transparent doesn't come from black.
[[nodiscard]] PropertyValue valueOf(const QColor& color);

/// An animation that swings beyond its target may ask for a negative size, which counts as none.
[[nodiscard]] QRectF frameOf(const PropertyValue& value);
[[nodiscard]] ViewTransform transformOf(const PropertyValue& value);
[[nodiscard]] QColor colorOf(const PropertyValue& value);

} // namespace kovalin::platform
