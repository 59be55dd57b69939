#include "kovalin-backend/drawing/Face.h"
#include "kovalin-backend/drawing/Shapes.h"

namespace kovalin::drawing {

namespace {

constexpr qreal mouthHeight = 37; // below the middle of the head
constexpr qreal lip = 4;          // the line's width
constexpr QColor inside{0x7A, 0x1B, 0x38};
constexpr QColor tongue{0xFF, 0x7A, 0x86};

/// An open mouth: teeth reach down to `teethTo`, the tongue is an ellipse around `tongueAt`.
void drawOpen(Sketch& sketch, const QPainterPath& opening, qreal teethTo, QPointF tongueAt, qreal tongueWidth)
{
    sketch.flat(opening, inside);
    {
        const Sketch::Clipped clipped(sketch, opening);
        sketch.flat(ellipse(tongueAt.x(), tongueAt.y(), tongueWidth, tongueWidth * 0.62), tongue);
        sketch.flat(box(-40, -40, 80, 40 + teethTo), colours::paper);
    }
    sketch.line(opening, lip);
}

void drawTeeth(Sketch& sketch, const QPainterPath& opening, const QPainterPath& gaps)
{
    sketch.flat(opening, colours::paper);
    {
        const Sketch::Clipped clipped(sketch, opening);
        sketch.line(gaps, 2, colours::grey);
    }
    sketch.line(opening, lip);
}

void drawTongueOut(Sketch& sketch)
{
    const QPainterPath out = path("M-2 4L20 2C22 14 22 21 13 22C3 23 0 14 -2 4Z");
    sketch.flat(out, tongue);
    sketch.line(out, 3.4);
    sketch.line(path("M10 5L11 13"), 2.4, colours::darkRed);
    sketch.line(path("M-20 -2Q0 13 23 -3"), lip);
}

void drawLine(Sketch& sketch, std::string_view data)
{
    sketch.line(path(data), lip);
}

} // namespace

void drawMouth(Sketch& sketch, const AvatarLook& look, Mouth mouth)
{
    const Sketch::Placed placed(sketch, at(0, mouthHeight));
    switch (mouth) {
    case Mouth::Smile:
        return drawLine(sketch, "M-17 -3Q0 15 17 -3M-20 -5L-14 -2M20 -5L14 -2");
    case Mouth::Grin:
        return drawTeeth(sketch, path("M-23 -6Q0 -1 23 -6C22 9 12 16 0 16C-12 16 -22 9 -23 -6Z"),
                         path("M-25 5Q0 9 25 5M-8 -8L-7 18M8 -8L7 18"));
    case Mouth::Laugh:
        return drawOpen(sketch, path("M-23 -8Q0 -3 23 -8C24 10 13 20 0 20C-13 20 -24 10 -23 -8Z"), 0, {0, 19}, 14);
    case Mouth::Open:
        return drawOpen(sketch, ellipse(0, 4, 9, 7.5), -8, {0, 10}, 7);
    case Mouth::Round:
        return drawOpen(sketch, ellipse(0, 4, 8.5, 10.5), -20, {0, 15}, 8);
    case Mouth::Shout:
        return drawOpen(sketch,
                        path("M-18 -8C-10 -13 10 -13 18 -8C26 2 26 20 16 20C8 16 -8 16 -16 20C-26 20 -26 2 -18 -8Z"),
                        -5, {0, 17}, 13);
    case Mouth::Frown:
        return drawLine(sketch, "M-16 10Q0 -8 16 10");
    case Mouth::Wobble:
        return drawLine(sketch, "M-19 5Q-13 -5 -7 3Q-1 9 5 2Q12 -5 19 5");
    case Mouth::Smirk:
        return drawLine(sketch, "M-14 6Q6 9 19 -5M21 -8Q23 -4 19 -1");
    case Mouth::Tongue:
        return drawTongueOut(sketch);
    case Mouth::Kiss:
        sketch.flat(path("M-7 -5C3 -9 8 -2 0 2C9 5 5 14 -6 11C-1 5 -1 1 -7 -5Z"), colours::red);
        return sketch.line(path("M-6 -6C4 -10 9 -2 0 2C9 5 5 14 -6 11"), lip);
    case Mouth::Flat:
        return drawLine(sketch, "M-15 4L15 4");
    case Mouth::Grit:
        return drawTeeth(sketch, box(-21, -5, 42, 17, 8), path("M-24 3.5L24 3.5M-11 -9L-11 16M0 -9L0 16M11 -9L11 16"));
    case Mouth::Pout:
        return drawLine(sketch, "M-11 7Q0 -5 11 7M-6 14Q0 11 6 14");
    case Mouth::Cat:
        return drawLine(sketch, "M-18 -1C-17 9 -2 10 0 0C2 10 17 9 18 -1");
    case Mouth::Gasp:
        return drawOpen(sketch, ellipse(0, 6, 11.5, 15), -6, {0, 20}, 10);
    case Mouth::Yawn:
        return drawOpen(sketch, ellipse(0, 5, 15, 18), -9, {0, 20}, 13);
    case Mouth::Chew:
        sketch.line(path("M-26 -12C-38 -8 -38 12 -24 13"), Sketch::fine, look.skinShade);
        sketch.line(path("M26 -12C38 -8 38 12 24 13"), Sketch::fine, look.skinShade);
        return drawLine(sketch, "M-12 2Q-6 8 0 3Q6 8 12 2");
    case Mouth::Slant:
        return drawLine(sketch, "M-14 8Q2 2 17 0");
    }
}

} // namespace kovalin::drawing
