#include "platform/ui/ScrollIndicators.h"

#include "platform/ui/Animation.h"
#include "platform/ui/View.h"

#include <QtGui/QGuiApplication>

#include <algorithm>

namespace kovalin::platform {

namespace {

// In points.
constexpr double thickness = 3;
constexpr double distanceFromEdge = 2;
/// A bar that is shorter is hard to see.
constexpr double leastLength = 24;
/// What is left of a bar that the bouncing content pushes against the end.
constexpr double leastPushedLength = 6;

constexpr AnimationSeconds timeBeforeFading{0.6};
constexpr AnimationSeconds timeToFade{0.25};

/// Three times as bright or as dark as a white, a black or a grey background that is nearly either.
const QColor barColor(118, 118, 118, 217);

struct Span {
    double position;
    double length;
};

/// Of a bar on a track of `track` points, for a view of `size` points of which `way` more can be seen by scrolling.
Span barOn(double track, double size, double way, double scrolled)
{
    const double proportional = size > 0 ? track * size / (size + way) : 0;
    const double resting = std::min(std::max(proportional, leastLength), track);
    const double overshoot = std::max({-scrolled, scrolled - way, 0.0});
    const double length = std::max(resting - overshoot, std::min(leastPushedLength, resting));
    const double progress = std::clamp(scrolled / way, 0.0, 1.0);
    return {progress * (track - length), length};
}

} // namespace

ScrollIndicators::ScrollIndicators()
    : _vertical(makeView<View>())
    , _horizontal(makeView<View>())
{
    for (const auto& bar : {_vertical, _horizontal}) {
        bar->setBackgroundColor(barColor);
        bar->setCornerRadius(thickness / 2);
        bar->setAlpha(0);
        bar->setHidden(true);
    }
}

ScrollIndicators::~ScrollIndicators() = default;

void ScrollIndicators::addTo(View& view)
{
    view.addSubview(_vertical);
    view.addSubview(_horizontal);
}

void ScrollIndicators::place(const ScrollGeometry& geometry, const QPointF& offset)
{
    const QMarginsF ends = _insets + distanceFromEdge;
    const QRectF area = QRectF(QPointF(), geometry.size).marginsRemoved(ends);
    const bool hasVertical = _showsVertical && geometry.scrollsVertically();
    const bool hasHorizontal = _showsHorizontal && geometry.scrollsHorizontally();
    const bool isRightToLeft = QGuiApplication::layoutDirection() == Qt::RightToLeft;
    // Where both are, they leave the corner free.
    const double corner = hasVertical && hasHorizontal ? thickness + distanceFromEdge : 0;
    const QPointF way = geometry.end() - geometry.start();
    const QPointF scrolled = offset - geometry.start();

    withoutAnimation([&] {
        const double verticalTrack = area.height() - corner;
        _vertical->setHidden(!hasVertical || verticalTrack <= 0);
        if (!_vertical->isHidden()) {
            const Span bar = barOn(verticalTrack, geometry.size.height(), way.y(), scrolled.y());
            const double x = isRightToLeft ? area.left() : area.right() - thickness;
            _vertical->setFrame({x, area.top() + bar.position, thickness, bar.length});
        }
        const double horizontalTrack = area.width() - corner;
        _horizontal->setHidden(!hasHorizontal || horizontalTrack <= 0);
        if (!_horizontal->isHidden()) {
            const Span bar = barOn(horizontalTrack, geometry.size.width(), way.x(), scrolled.x());
            const double left = area.left() + (isRightToLeft ? corner : 0);
            _horizontal->setFrame({left + bar.position, area.bottom() - thickness, bar.length, thickness});
        }
    });
}

void ScrollIndicators::show()
{
    withoutAnimation([this] {
        _vertical->setAlpha(1);
        _horizontal->setAlpha(1);
    });
}

void ScrollIndicators::fade()
{
    animate(timeToFade, timeBeforeFading, [this] {
        _vertical->setAlpha(0);
        _horizontal->setAlpha(0);
    });
}

} // namespace kovalin::platform
