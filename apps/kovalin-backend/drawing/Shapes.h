#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtGui/QPainterPath>

#include <initializer_list>
#include <string_view>

/// Outlines of simple things, around the origin where no place is given. Any thread.
namespace kovalin::drawing {

/// A path in the notation of SVG path data: M L H V Q C Z, absolute and relative. The text is part of the program: one with
/// anything else in it ends the path there.
[[nodiscard]] QPainterPath path(std::string_view data);

[[nodiscard]] QPainterPath circle(qreal x, qreal y, qreal radius);
[[nodiscard]] QPainterPath ellipse(qreal x, qreal y, qreal radiusX, qreal radiusY);
[[nodiscard]] QPainterPath box(qreal left, qreal top, qreal width, qreal height, qreal cornerRadius = 0);
[[nodiscard]] QPainterPath segment(QPointF from, QPointF to);
/// From one point over the others, straight.
[[nodiscard]] QPainterPath polyline(std::initializer_list<QPointF> points);
[[nodiscard]] QPainterPath polygon(std::initializer_list<QPointF> points);
/// A part of a circle's line; angles in degrees, clockwise from the right.
[[nodiscard]] QPainterPath arc(qreal x, qreal y, qreal radius, qreal fromDegrees, qreal sweepDegrees);
/// With rounded hollows for a heart as wide as `size`.
[[nodiscard]] QPainterPath heart(qreal x, qreal y, qreal size);
/// A star or a burst: `points` tips at `outer`, the hollows between them at `inner`.
[[nodiscard]] QPainterPath star(qreal x, qreal y, int points, qreal outer, qreal inner, qreal turnDegrees = 0);
/// Four thin tips, as light twinkles.
[[nodiscard]] QPainterPath sparkle(qreal x, qreal y, qreal size);
/// A falling drop with its tip up.
[[nodiscard]] QPainterPath drop(qreal x, qreal y, qreal size);
/// A cloud, as wide as `width`, flat below.
[[nodiscard]] QPainterPath cloud(qreal x, qreal y, qreal width);

} // namespace kovalin::drawing
