#include "kovalin-backend/drawing/Hands.h"

#include "kovalin-backend/drawing/Shapes.h"

namespace kovalin::drawing {

namespace {

constexpr qreal finger = 11; // a finger's width, with its outline
constexpr qreal outline = 3.8;

Sketch::Piece fingerTo(QPointF from, QPointF to, qreal width = finger)
{
    return {segment(from, to), width};
}

void drawOpen(Sketch& sketch, const QColor& skin)
{
    sketch.blob({{circle(1, -10, 11)},
                 fingerTo({-6, -14}, {-11, -31}),
                 fingerTo({-1, -16}, {-2, -36}),
                 fingerTo({5, -15}, {8, -34}),
                 fingerTo({9, -12}, {17, -27}),
                 fingerTo({-6, -6}, {-19, -14})},
                skin, outline);
}

/// Knuckles over what is held, or nothing.
void drawFist(Sketch& sketch, const QColor& skin)
{
    sketch.shape(box(-14, -24, 28, 26, 11), skin, outline);
    sketch.line(path("M-6 -22V-13M1 -22V-13M8 -21V-13"), 2.6);
}

void drawThumb(Sketch& sketch, const QColor& skin)
{
    sketch.blob({{box(-13, -20, 27, 23, 9)}, {path("M-7 -14C-8 -24 -4 -28 -4 -36"), 13}}, skin, outline);
    sketch.line(path("M3 -13H13M3 -7H13M3 -1H12"), 2.4);
}

void drawTwoFingers(Sketch& sketch, const QColor& skin, QPointF first, QPointF second)
{
    sketch.blob({{box(-13, -20, 26, 22, 10)}, fingerTo({-6, -14}, first), fingerTo({4, -14}, second)}, skin, outline);
    sketch.line(path("M-12 -7Q-3 -13 4 -6"), 2.6);
}

void drawOk(Sketch& sketch, const QColor& skin)
{
    sketch.blob({{circle(3, -8, 11)},
                 fingerTo({3, -14}, {2, -37}),
                 fingerTo({7, -13}, {12, -35}),
                 fingerTo({10, -9}, {20, -29}),
                 {circle(-11, -19, 8), 9}},
                skin, outline);
}

void drawFlat(Sketch& sketch, const QColor& skin)
{
    sketch.blob({{box(-11, -36, 24, 38, 11)}, fingerTo({-6, -8}, {-16, -18})}, skin, outline);
    sketch.line(path("M-3 -33V-22M5 -33V-22"), 2.4);
}

void drawHorns(Sketch& sketch, const QColor& skin)
{
    sketch.blob({{box(-13, -20, 27, 22, 10)}, fingerTo({-8, -14}, {-12, -37}), fingerTo({8, -14}, {15, -35})}, skin,
                outline);
    sketch.line(path("M-2 -19V-11M4 -19V-11"), 2.6);
}

void drawCall(Sketch& sketch, const QColor& skin)
{
    sketch.blob({{box(-12, -20, 24, 22, 10)}, fingerTo({-6, -16}, {-18, -34}), fingerTo({7, -6}, {24, 2})}, skin,
                outline);
    sketch.line(path("M4 -17L11 -12M2 -11L9 -6"), 2.4);
}

/// One half of a heart made of fingers; the heart's middle is at the left edge.
void drawHeartHalf(Sketch& sketch, const QColor& skin)
{
    sketch.flat(path("M-1 -16C8 -34 28 -26 24 -10C20 4 8 12 -1 20Z"), colours::red);
    sketch.limb(path("M0 21C14 12 29 -2 27 -17C24 -32 6 -33 0 -17"), 15, skin, outline);
    sketch.line(path("M24 -2L18 12"), 12, skin);
}

void drawPointAtYou(Sketch& sketch, const QColor& skin)
{
    const Sketch::Placed nearer(sketch, at(0, 0, 0, 1.25));
    sketch.blob({{box(-15, -22, 30, 26, 11)}, {path("M-11 -4L-15 -18"), 12}}, skin, outline);
    sketch.shape(circle(-1, -11, 9), skin, outline);
    sketch.line(arc(-1, -11, 4.4, 200, 130), 2.2);
    sketch.line(path("M11 -18V-8"), 2.4);
}

} // namespace

void drawHand(Sketch& sketch, Hand hand, const QColor& skin)
{
    switch (hand) {
    case Hand::None:
        return;
    case Hand::Open:
        return drawOpen(sketch, skin);
    case Hand::Fist:
    case Hand::Grip:
        return drawFist(sketch, skin);
    case Hand::ThumbUp:
        return drawThumb(sketch, skin);
    case Hand::ThumbDown: {
        const Sketch::Placed placed(sketch, QTransform::fromTranslate(0, 18).scale(1, -1));
        const Sketch::Placed middle(sketch, at(0, 26));
        return drawThumb(sketch, skin);
    }
    case Hand::Point: {
        sketch.blob({{box(-13, -20, 26, 22, 10)}, fingerTo({-6, -14}, {-6, -42})}, skin, outline);
        return sketch.line(path("M0 -19V-11M6 -18V-11M-12 -6Q-4 -12 2 -6"), 2.6);
    }
    case Hand::PointAtYou:
        return drawPointAtYou(sketch, skin);
    case Hand::Peace:
        return drawTwoFingers(sketch, skin, {-13, -41}, {10, -40});
    case Hand::Ok:
        return drawOk(sketch, skin);
    case Hand::Horns:
        return drawHorns(sketch, skin);
    case Hand::Flat:
        return drawFlat(sketch, skin);
    case Hand::Call:
        return drawCall(sketch, skin);
    case Hand::Crossed:
        return drawTwoFingers(sketch, skin, {5, -40}, {-6, -40});
    case Hand::HeartHalf:
        return drawHeartHalf(sketch, skin);
    }
}

} // namespace kovalin::drawing
