#include "kovalin-backend/drawing/Props.h"
#include "kovalin-backend/drawing/Shapes.h"

#include <array>

namespace kovalin::drawing {

namespace {

using Place = Prop::Place;

void drawBalloonAt(Sketch& sketch, QPointF middle, const QColor& colour)
{
    QPainterPath string(QPointF(0, 10));
    string.quadTo({0, middle.y() * 0.5}, middle + QPointF(0, 38));
    sketch.line(string);
    const Sketch::Placed placed(sketch, at(middle.x(), middle.y()));
    sketch.shape(path("M-7 40L7 40L0 30Z"), colour, Sketch::fine);
    sketch.shape(ellipse(0, 0, 27, 33), colour);
    sketch.line(path("M-15 -8Q-13 -20 -3 -24"), 4.4, colours::paper);
}

void drawBalloons(Sketch& sketch)
{
    drawBalloonAt(sketch, {-16, -112}, colours::sky);
    drawBalloonAt(sketch, {34, -104}, colours::yellow);
    drawBalloonAt(sketch, {10, -84}, colours::red);
}

void drawHeartBalloon(Sketch& sketch)
{
    sketch.line(path("M0 10Q-6 -20 8 -46"));
    sketch.shape(path("M1 -44L15 -44L8 -54Z"), colours::red, Sketch::fine);
    sketch.shape(heart(8, -86, 78), colours::red);
    sketch.line(path("M-18 -94Q-18 -108 -6 -112"), 5, colours::paper);
}

void drawSparkler(Sketch& sketch)
{
    sketch.limb(segment({0, 26}, {0, -36}), 7, colours::grey, 3);
    sketch.shape(star(0, -52, 10, 32, 13), colours::yellow);
    sketch.flat(star(0, -52, 8, 17, 8), colours::paper);
}

void drawTrophy(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -22));
    sketch.limb(path("M-20 -28C-44 -34 -42 -2 -16 -4"), 10, colours::yellow, 4);
    sketch.limb(path("M20 -28C44 -34 42 -2 16 -4"), 10, colours::yellow, 4);
    sketch.shape(path("M-24 -36H24C24 -4 14 6 5 9V20H18V31H-18V20H-5V9C-14 6 -24 -4 -24 -36Z"), colours::yellow);
    sketch.flat(star(0, -17, 5, 12, 5.5), colours::paper);
}

void drawHornOfPaper(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 4, 18));
    for (const auto& [dot, colour] : {std::pair{QPointF(-22, -76), colours::red},
                                      {QPointF(-4, -90), colours::sky},
                                      {QPointF(18, -78), colours::green},
                                      {QPointF(30, -94), colours::yellow},
                                      {QPointF(2, -70), colours::violet},
                                      {QPointF(-30, -96), colours::yellow}}) {
        sketch.shape(circle(dot.x(), dot.y(), 6.5), colour, 2.6);
    }
    sketch.shape(path("M-22 -56Q0 -48 22 -56L2 20H-2Z"), colours::violet);
    sketch.line(path("M-16 -36Q0 -30 15 -36M-10 -16Q0 -12 9 -16"), 5, colours::yellow);
    sketch.shape(ellipse(0, -56, 23, 7), colours::ink, Sketch::fine);
}

void drawGiftBox(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 128));
    sketch.shape(path("M0 -38C-18 -66 -42 -56 -34 -40C-30 -32 -12 -34 0 -38Z"), colours::yellow);
    sketch.shape(path("M0 -38C18 -66 42 -56 34 -40C30 -32 12 -34 0 -38Z"), colours::yellow);
    sketch.shape(box(-44, -20, 88, 60, 6), colours::violet);
    sketch.shape(box(-52, -38, 104, 24, 6), colours::violet);
    sketch.flat(box(-9, -36, 18, 20), colours::yellow);
    sketch.flat(box(-9, -12, 18, 50), colours::yellow);
}

void drawPresentInHand(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -24));
    sketch.shape(path("M0 -22C-10 -40 -26 -34 -20 -24C-16 -18 -8 -20 0 -22Z"), colours::yellow, Sketch::fine);
    sketch.shape(path("M0 -22C10 -40 26 -34 20 -24C16 -18 8 -20 0 -22Z"), colours::yellow, Sketch::fine);
    sketch.shape(box(-27, -22, 54, 48, 6), colours::red);
    sketch.flat(box(-6, -20, 12, 44), colours::yellow);
}

void drawPumpkin(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 126));
    sketch.limb(path("M0 -30Q2 -44 14 -48"), 13, colours::darkGreen);
    sketch.blob({{ellipse(-30, 2, 28, 34)}, {ellipse(30, 2, 28, 34)}, {ellipse(0, 2, 30, 37)}}, colours::orange);
    sketch.line(path("M-20 -26Q-34 2 -20 32M20 -26Q34 2 20 32"), Sketch::fine, shaded(colours::orange, 0.75));
    sketch.flat(polygon({{-28, -2}, {-18, -18}, {-10, -2}}), colours::ink);
    sketch.flat(polygon({{28, -2}, {18, -18}, {10, -2}}), colours::ink);
    sketch.flat(path("M-34 8Q0 18 34 8Q26 32 0 32Q-26 32 -34 8ZM-10 14V22H-1V15ZM10 30V22H2V31Z"), colours::ink);
}

void drawTree(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(-96, 84));
    sketch.shape(box(-9, 56, 18, 22, 3), colours::brown);
    sketch.shape(path("M0 -72L28 -28H18L40 12H26L50 60H-50L-26 12H-40L-18 -28H-28Z"), colours::darkGreen);
    for (const auto& [dot, colour] : {std::pair{QPointF(-6, -26), colours::red},
                                      {QPointF(12, 2), colours::yellow},
                                      {QPointF(-18, 18), colours::sky},
                                      {QPointF(22, 42), colours::red},
                                      {QPointF(-26, 46), colours::yellow},
                                      {QPointF(0, 36), colours::pink}}) {
        sketch.flat(circle(dot.x(), dot.y(), 6), colour);
    }
    sketch.shape(star(0, -76, 5, 19, 8.5), colours::yellow, Sketch::fine);
}

void drawSnowman(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(-98, 92));
    sketch.limb(path("M-26 8L-48 -10M-40 -4L-42 -16"), 8, colours::brown, 3);
    sketch.blob({{circle(0, 34, 36)}, {circle(0, -20, 26)}}, colours::paper);
    sketch.shape(path("M-22 -38H22L18 -44H16L14 -74H-14L-16 -44H-18Z"), colours::darkGrey);
    sketch.line(path("M-15 -50H15"), 6, colours::red);
    sketch.flat(circle(-8, -24, 3.4), colours::ink);
    sketch.flat(circle(9, -24, 3.4), colours::ink);
    sketch.shape(path("M0 -19L26 -13L0 -11Z"), colours::orange, Sketch::fine);
    sketch.line(path("M-10 -6Q0 2 11 -6"));
    sketch.limb(path("M-24 2Q0 12 24 2L28 26"), 13, colours::red, 3.4);
    sketch.flat(circle(0, 28, 4), colours::ink);
    sketch.flat(circle(0, 46, 4), colours::ink);
}

void drawCrackers(Sketch& sketch)
{
    for (const auto& [x, y, size, colour] : {std::tuple{-104.0, -56.0, 40.0, colours::red},
                                             {104.0, -64.0, 44.0, colours::sky},
                                             {0.0, -128.0, 34.0, colours::yellow}}) {
        const Sketch::Placed placed(sketch, at(x, y));
        for (int i = 0; i < 10; ++i) {
            const Sketch::Placed ray(sketch, at(0, 0, 36.0 * i));
            sketch.limb(segment({0, -size * 0.38}, {0, -size * 0.8}), 9, colour, 3.4);
            sketch.shape(circle(0, -size - 3, 4.2), colours::paper, 2.6);
        }
    }
}

constexpr std::array<Prop, 11> props{{
    {"balloons", Place::InHand, drawBalloons, "hold"},
    {"heart-balloon", Place::InHand, drawHeartBalloon, "hold"},
    {"sparkler", Place::InHand, drawSparkler, "raise"},
    {"trophy", Place::InHand, drawTrophy, "raise"},
    {"confetti-horn", Place::InHand, drawHornOfPaper, "raise"},
    {"gift-box", Place::InFront, drawGiftBox, "hold-both"},
    {"present", Place::InHand, drawPresentInHand, "hold"},
    {"pumpkin", Place::InFront, drawPumpkin, "hold-both"},
    {"tree", Place::Behind, drawTree},
    {"snowman", Place::Behind, drawSnowman},
    {"fireworks", Place::Above, drawCrackers},
}};

} // namespace

std::span<const Prop> partyProps()
{
    return props;
}

} // namespace kovalin::drawing
