#include "kovalin-backend/drawing/Face.h"
#include "kovalin-backend/drawing/Shapes.h"

#include <QtCore/QtMath>

namespace kovalin::drawing {

namespace {

constexpr qreal eyeHeight = 7; // below the middle of the head
constexpr qreal eyeDistance = 24;
constexpr qreal lidLine = 4.5;

/// Which eye is drawn; the figure looks at us, so its right eye is on the left.
enum class Side { Left, Right };

struct Ball {
    qreal radiusX = 12;
    qreal radiusY = 14;
    qreal iris = 10.4;
    qreal pupil = 7.2;
    QPointF gaze;
};

void drawLashes(Sketch& sketch, const AvatarLook& look, Side side, qreal top)
{
    if (look.hasLashes) {
        const Sketch::Placed placed(sketch, side == Side::Left ? mirrored() : QTransform());
        sketch.line(path("M8 -9Q12 -12 14 -17M11 -5Q16 -7 19 -11"), 3.2);
        sketch.line(QTransform::fromTranslate(0, top).map(path("M-11 -3Q0 -17 12 -4")), lidLine);
    }
}

void drawBall(Sketch& sketch, const AvatarLook& look, Side side, const Ball& ball)
{
    const QPainterPath white = ellipse(0, 0, ball.radiusX, ball.radiusY);
    sketch.flat(white, colours::paper);
    {
        const Sketch::Clipped clipped(sketch, white);
        sketch.flat(circle(ball.gaze.x(), ball.gaze.y(), ball.iris), look.iris);
        sketch.line(circle(ball.gaze.x(), ball.gaze.y(), ball.iris), 2);
        sketch.flat(circle(ball.gaze.x(), ball.gaze.y(), ball.pupil), colours::ink);
        sketch.flat(circle(ball.gaze.x() + ball.iris * 0.34, ball.gaze.y() - ball.iris * 0.4, ball.iris * 0.36),
                    colours::paper);
        sketch.flat(circle(ball.gaze.x() - ball.iris * 0.36, ball.gaze.y() + ball.iris * 0.4, ball.iris * 0.16),
                    colours::paper);
    }
    sketch.line(white, 2.4);
    // The upper lid is the heavier one.
    sketch.line(QTransform::fromScale(ball.radiusX, ball.radiusY).map(arc(0, 0, 1, 195, 150)), lidLine);
    drawLashes(sketch, look, side, 0);
}

/// A ball with its upper part under the lid, which ends on a line from the outer to the inner corner.
void drawLidded(Sketch& sketch, const AvatarLook& look, Side side, const Ball& ball, qreal outer, qreal inner)
{
    drawBall(sketch, look, side, ball);
    const Sketch::Placed placed(sketch, side == Side::Left ? mirrored() : QTransform());
    const QPainterPath white = ellipse(0, 0, ball.radiusX, ball.radiusY);
    {
        const Sketch::Clipped clipped(sketch, white);
        sketch.flat(polygon({{-20, -30}, {20, -30}, {20, outer}, {-20, inner}}), look.skinShade);
    }
    sketch.line(white, 3.2);
    const Sketch::Clipped clipped(sketch, ellipse(0, 0, ball.radiusX + 1.6, ball.radiusY + 1.6));
    sketch.line(segment({-20, inner}, {20, outer}), lidLine);
}

void drawWatery(Sketch& sketch, const AvatarLook& look, Side side)
{
    const QPainterPath white = ellipse(0, 0, 14, 16);
    sketch.flat(white, colours::paper);
    {
        const Sketch::Clipped clipped(sketch, white);
        sketch.flat(circle(0, 1, 12), look.iris);
        sketch.flat(circle(0, 0, 9.5), colours::ink);
        sketch.flat(path("M-15 9Q-8 4 0 8Q8 12 15 7L15 20L-15 20Z"), colours::water);
        sketch.flat(circle(4, -6, 4.4), colours::paper);
        sketch.flat(circle(-5, 3, 2.6), colours::paper);
    }
    sketch.line(white, 3.2);
    drawLashes(sketch, look, side, -1);
}

void drawShiny(Sketch& sketch, const AvatarLook& look, Side side)
{
    const QPainterPath white = ellipse(0, 0, 14, 15.5);
    sketch.flat(white, look.iris);
    {
        const Sketch::Clipped clipped(sketch, white);
        sketch.flat(circle(0, -4, 11), colours::ink);
    }
    sketch.flat(sparkle(3, -5, 15), colours::paper);
    sketch.flat(circle(-5, 6, 2.8), colours::paper);
    sketch.line(white, 3.2);
    drawLashes(sketch, look, side, -1);
}

void drawSpiral(Sketch& sketch)
{
    constexpr int steps = 44;
    constexpr qreal turns = 2.3;
    QPainterPath spiral;
    for (int i = 0; i <= steps; ++i) {
        const qreal share = static_cast<qreal>(i) / steps;
        const qreal angle = share * turns * 2 * M_PI;
        const QPointF point(13 * share * qCos(angle), 13 * share * qSin(angle));
        i == 0 ? spiral.moveTo(point) : spiral.lineTo(point);
    }
    sketch.flat(circle(0, 0, 14), colours::paper);
    sketch.line(circle(0, 0, 14), 3);
    sketch.line(spiral, 2.8);
}

void drawArc(Sketch& sketch, const AvatarLook& look, Side side, bool isUp)
{
    sketch.line(isUp ? path("M-12 6Q0 -13 12 6") : path("M-12 -1Q0 13 12 -1"), lidLine + 0.5);
    if (look.hasLashes) {
        const Sketch::Placed placed(sketch, side == Side::Left ? mirrored() : QTransform());
        sketch.line(isUp ? path("M11 3L17 -1M7 -3L12 -8") : path("M12 -1L18 0M9 4L15 7"), 3.2);
    }
}

void drawEye(Sketch& sketch, const AvatarLook& look, Eyes eyes, Side side)
{
    switch (eyes) {
    case Eyes::Open:
        return drawBall(sketch, look, side, {});
    case Eyes::Wide:
        return drawBall(sketch, look, side, {14.5, 16.5, 7, 4.4, {}});
    case Eyes::Happy:
        return drawArc(sketch, look, side, true);
    case Eyes::Closed:
        return drawArc(sketch, look, side, false);
    case Eyes::Wink:
        return side == Side::Left ? drawBall(sketch, look, side, {}) : drawArc(sketch, look, side, true);
    case Eyes::Half:
        return drawLidded(sketch, look, side, {12, 13, 9.4, 6.4, {0, 3}}, -1, -1);
    case Eyes::Side:
        return drawBall(sketch, look, side, {12.5, 14, 8.6, 5.8, {4, -1}});
    case Eyes::Up:
        return drawBall(sketch, look, side, {12.5, 14.5, 8.6, 5.8, {3, -5}});
    case Eyes::Down:
        return drawLidded(sketch, look, side, {12, 13, 9, 6, {0, 5}}, 0, -3);
    case Eyes::Hearts:
        return sketch.shape(heart(0, 1, 34), colours::red, 3.4);
    case Eyes::Stars:
        return sketch.shape(star(0, 0, 5, 18, 8.5), colours::yellow, 3.4);
    case Eyes::Watery:
        return drawWatery(sketch, look, side);
    case Eyes::Squeezed:
        return sketch.line(side == Side::Left ? path("M-11 -9L9 1L-11 11") : path("M11 -9L-9 1L11 11"), lidLine + 0.5);
    case Eyes::Dizzy:
        return drawSpiral(sketch);
    case Eyes::Narrow:
        return drawLidded(sketch, look, side, {12.5, 13, 8.6, 5.8, {-1, 2}}, -9, 0);
    case Eyes::Shiny:
        return drawShiny(sketch, look, side);
    }
}

} // namespace

void drawEyes(Sketch& sketch, const AvatarLook& look, Eyes eyes)
{
    for (const Side side : {Side::Left, Side::Right}) {
        const qreal x = (side == Side::Left ? -1 : 1) * (eyeDistance + look.eyeSpacing);
        const Sketch::Placed placed(sketch, at(x, eyeHeight, 0, look.eyeSize));
        drawEye(sketch, look, eyes, side);
    }
}

} // namespace kovalin::drawing
