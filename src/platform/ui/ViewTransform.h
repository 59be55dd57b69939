#pragma once

namespace kovalin::platform {

/// How a view is shown beside its frame: scaled about its centre, then moved. Hit tests follow it, frames and layouts don't.
struct ViewTransform {
    double scaleX = 1;
    double scaleY = 1;
    /// Points in the superview's coordinates.
    double translateX = 0;
    double translateY = 0;
    /// Points towards the viewer; kept and without any visible effect, since there is no perspective.
    double depth = 0;

    [[nodiscard]] static constexpr ViewTransform scale(double x, double y) { return {.scaleX = x, .scaleY = y}; }
    [[nodiscard]] static constexpr ViewTransform translation(double x, double y)
    {
        return {.translateX = x, .translateY = y};
    }

    [[nodiscard]] constexpr bool isIdentity() const { return *this == ViewTransform(); }

    friend constexpr bool operator==(const ViewTransform&, const ViewTransform&) = default;
};

} // namespace kovalin::platform
