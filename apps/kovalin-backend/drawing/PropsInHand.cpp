#include "kovalin-backend/drawing/Props.h"
#include "kovalin-backend/drawing/Shapes.h"

#include <array>

namespace kovalin::drawing {

namespace {

using Place = Prop::Place;

void drawPhone(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -16, 8));
    sketch.shape(box(-18, -34, 36, 62, 8), colours::darkGrey);
    sketch.flat(box(-13, -28, 26, 46, 3), colours::water);
    sketch.flat(heart(0, -6, 15), colours::red);
}

void drawBook(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -22, -6));
    sketch.shape(
        path("M0 -26C-14 -36 -32 -34 -40 -28V24C-30 20 -14 20 0 28C14 20 30 20 40 24V-28C32 -34 14 -36 0 -26Z"),
        colours::blue);
    sketch.flat(path("M0 -21C-12 -29 -26 -28 -34 -24V17C-24 14 -12 16 0 22C12 16 24 14 34 17V-24C26 -28 12 -29 0 -21Z"),
                colours::cream);
    sketch.line(segment({0, -24}, {0, 24}));
    sketch.line(path("M-26 -14Q-16 -17 -8 -12M-26 -3Q-16 -6 -8 -1M26 -14Q16 -17 8 -12M26 -3Q16 -6 8 -1"), 2.4,
                colours::grey);
}

void drawBouquet(Sketch& sketch)
{
    for (const QPointF& stalk : {QPointF(-20, -48), {0, -58}, {20, -48}}) {
        sketch.limb(segment({0, 6}, stalk), 8, colours::green, 3);
    }
    sketch.shape(path("M-24 -38L0 -28L24 -38L8 14H-8Z"), colours::cream);
    sketch.shape(circle(-22, -52, 14), colours::pink);
    sketch.shape(circle(22, -52, 14), colours::yellow);
    sketch.shape(circle(0, -64, 15), colours::red);
    sketch.line(path("M-28 -52Q-22 -60 -16 -52M16 -52Q22 -60 28 -52M-7 -64Q0 -73 7 -64"));
}

void drawRose(Sketch& sketch)
{
    sketch.limb(path("M0 26Q4 -8 0 -34"), 8, colours::darkGreen, 3);
    sketch.shape(path("M2 -12C14 -26 26 -20 28 -18C24 -6 12 -4 2 -12Z"), colours::green, Sketch::fine);
    sketch.shape(path("M-18 -56C-20 -34 -10 -28 0 -28C10 -28 20 -34 18 -56C10 -52 8 -58 0 -62C-8 -58 -10 -52 -18 -56Z"),
                 colours::red);
    sketch.line(path("M-8 -44Q0 -54 8 -46Q4 -36 -3 -42"));
}

void drawMegaphone(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(2, -14, -24));
    sketch.shape(path("M-22 -12L26 -32V32L-22 12Z"), colours::red);
    sketch.shape(box(-32, -13, 14, 26, 5), colours::paper);
    sketch.shape(ellipse(27, 0, 9, 33), colours::cream);
    sketch.limb(path("M46 -18L58 -26"), 8, colours::yellow, 3);
    sketch.limb(path("M50 2L64 2"), 8, colours::yellow, 3);
    sketch.limb(path("M46 22L58 30"), 8, colours::yellow, 3);
}

void drawMicrophone(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 0, -18));
    sketch.shape(path("M-8 -26L8 -26L5 30L-5 30Z"), colours::darkGrey);
    sketch.shape(circle(0, -38, 17), colours::grey);
    sketch.line(path("M-14 -42Q0 -32 14 -42M-12 -32Q0 -22 12 -32M0 -54V-22"), 2.4, colours::darkGrey);
}

void drawMagnifier(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 0, -10));
    sketch.limb(segment({0, 24}, {0, -18}), 14, colours::brown);
    sketch.shape(circle(0, -44, 27), colours::water);
    sketch.line(circle(0, -44, 23), 5, colours::yellow);
    sketch.line(path("M-12 -50Q-8 -58 0 -59"), 4, colours::paper);
}

void drawPencil(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -12, 24));
    sketch.shape(path("M-10 40V-30L0 -52L10 -30V40Z"), colours::yellow);
    sketch.flat(path("M-7.5 -31L0 -47L7.5 -31Z"), colours::cream);
    sketch.flat(path("M-3 -40L0 -48L3 -40Z"), colours::ink);
    sketch.shape(box(-10, 30, 20, 14, 4), colours::pink, Sketch::fine);
    sketch.line(segment({0, -28}, {0, 28}), 2.4, colours::orange);
}

void drawMoney(Sketch& sketch)
{
    for (const qreal angle : {-34.0, -6.0, 22.0}) {
        const Sketch::Placed placed(sketch, at(0, 4, angle));
        sketch.shape(box(-17, -66, 34, 62, 4), colours::green);
        sketch.line(box(-11, -60, 22, 50, 3), 2.4, colours::darkGreen);
        sketch.flat(circle(0, -38, 8), colours::cream);
    }
}

void drawEnvelope(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -20, 8));
    sketch.shape(box(-36, -24, 72, 50, 6), colours::paper);
    sketch.line(path("M-34 22L-8 0M34 22L8 0"), Sketch::fine, colours::grey);
    sketch.line(path("M-34 -21L0 8L34 -21"), Sketch::fine);
    sketch.shape(heart(0, 6, 22), colours::red, Sketch::fine);
}

void drawCamera(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(-2, -20));
    sketch.shape(path("M-16 -26L-10 -36H10L16 -26Z"), colours::darkGrey);
    sketch.shape(box(-34, -26, 68, 48, 9), colours::darkGrey);
    sketch.shape(circle(0, -2, 17), colours::mist);
    sketch.shape(circle(0, -2, 10), colours::navy, Sketch::fine);
    sketch.flat(circle(4, -6, 3), colours::paper);
    sketch.flat(circle(25, -17, 4), colours::red);
}

void drawClock(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -28));
    sketch.shape(circle(-20, -26, 12), colours::yellow);
    sketch.shape(circle(20, -26, 12), colours::yellow);
    sketch.shape(circle(0, 0, 32), colours::red);
    sketch.flat(circle(0, 0, 24), colours::paper);
    sketch.line(path("M0 -15V0L10 7"), 4.4);
}

void drawFlag(Sketch& sketch)
{
    sketch.limb(segment({0, 30}, {0, -66}), 9, colours::tan, 3.4);
    sketch.shape(path("M2 -66C16 -76 28 -58 48 -66V-28C28 -20 16 -38 2 -28Z"), colours::paper);
}

void drawKey(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -6, 10));
    QPainterPath bow = circle(0, -46, 19);
    bow.addPath(circle(0, -46, 8));
    sketch.limb(segment({0, -28}, {0, 20}), 11, colours::yellow);
    sketch.limb(segment({2, 14}, {14, 14}), 9, colours::yellow, 3.4);
    sketch.shape(bow, colours::yellow);
}

void drawTissue(Sketch& sketch)
{
    sketch.shape(path("M-4 4C-24 -10 -28 -36 -14 -48C-8 -40 2 -54 12 -48C22 -40 14 -30 22 -20C24 -8 10 0 4 4Z"),
                 colours::paper);
    sketch.line(path("M-8 -34C-4 -22 -6 -12 -2 -4M8 -34C8 -22 8 -14 4 -6"), 2.4, colours::grey);
}

void drawDumbbell(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -10));
    sketch.limb(segment({-34, 0}, {34, 0}), 11, colours::grey);
    for (const qreal sign : {-1.0, 1.0}) {
        sketch.shape(box(sign * 36 - 8, -22, 16, 44, 6), colours::darkGrey);
        sketch.shape(box(sign * 50 - 6, -15, 12, 30, 5), colours::darkGrey);
    }
}

void drawBall(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(6, -32));
    sketch.shape(circle(0, 0, 30), colours::paper);
    sketch.flat(star(0, 0, 5, 12, 10), colours::ink);
    sketch.line(path("M0 -12V-28M11 -4L27 -8M7 10L16 24M-7 10L-16 24M-11 -4L-27 -8"));
}

void drawTickets(Sketch& sketch)
{
    for (const auto& [angle, colour] : {std::pair{-26.0, colours::yellow}, {12.0, colours::pink}}) {
        const Sketch::Placed placed(sketch, at(0, 4, angle));
        sketch.shape(path("M-17 -76H17V-38C11 -38 11 -28 17 -28V0H-17V-28C-11 -28 -11 -38 -17 -38Z"), colour);
        sketch.line(path("M-8 -33H-5M0 -33H3M8 -33H9"), 2.4);
        sketch.flat(star(0, -57, 5, 9, 4), colours::paper);
    }
}

constexpr std::array<Prop, 18> props{{
    {"phone", Place::InHand, drawPhone, "hold"},
    {"book", Place::InHand, drawBook, "hold"},
    {"bouquet", Place::InHand, drawBouquet, "hold"},
    {"rose", Place::InHand, drawRose, "hold"},
    {"megaphone", Place::InHand, drawMegaphone, "hold"},
    {"microphone", Place::InHand, drawMicrophone, "hold"},
    {"magnifier", Place::InHand, drawMagnifier, "hold"},
    {"pencil", Place::InHand, drawPencil, "hold"},
    {"money", Place::InHand, drawMoney, "hold"},
    {"envelope", Place::InHand, drawEnvelope, "hold"},
    {"camera", Place::InHand, drawCamera, "hold"},
    {"clock", Place::InHand, drawClock, "hold"},
    {"flag", Place::InHand, drawFlag, "raise"},
    {"key", Place::InHand, drawKey, "raise"},
    {"tissue", Place::InHand, drawTissue, "hold"},
    {"dumbbell", Place::InHand, drawDumbbell, "raise"},
    {"ball", Place::InHand, drawBall, "hold"},
    {"tickets", Place::InHand, drawTickets, "raise"},
}};

} // namespace

std::span<const Prop> handProps()
{
    return props;
}

} // namespace kovalin::drawing
