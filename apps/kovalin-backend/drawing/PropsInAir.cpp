#include "kovalin-backend/drawing/Props.h"
#include "kovalin-backend/drawing/Shapes.h"

#include <array>

namespace kovalin::drawing {

namespace {

using Place = Prop::Place;

void drawRainCloud(Sketch& sketch)
{
    for (const QPointF& at : {QPointF(-58, -62), {-30, -46}, {44, -52}, {66, -70}, {-74, -30}, {72, -24}}) {
        sketch.shape(drop(at.x(), at.y(), 21), colours::sky, Sketch::fine);
    }
    sketch.shape(cloud(0, -104, 168), QColor(0x9A, 0xA4, 0xC2));
    sketch.line(path("M-40 -112Q-36 -128 -20 -130"), 5, colours::mist);
}

void drawThunder(Sketch& sketch)
{
    sketch.shape(path("M-76 -92L-104 -46H-86L-98 -8L-60 -58H-78L-62 -92Z"), colours::yellow);
    sketch.shape(path("M76 -92L104 -46H86L98 -8L60 -58H78L62 -92Z"), colours::yellow);
    sketch.shape(cloud(0, -108, 176), QColor(0x6C, 0x74, 0x99));
}

void drawBulb(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -112));
    for (const qreal angle : {-80.0, -40.0, 40.0, 80.0}) {
        const Sketch::Placed ray(sketch, at(0, -8, angle));
        sketch.limb(segment({0, -38}, {0, -50}), 9, colours::yellow, 3.4);
    }
    sketch.shape(path("M-12 22C-12 8 -28 4 -28 -14C-28 -52 28 -52 28 -14C28 4 12 8 12 22Z"), colours::yellow);
    sketch.line(path("M-8 -4L0 6L8 -4"));
    sketch.shape(box(-12, 18, 24, 17, 5), colours::grey, Sketch::fine);
}

void drawMark(Sketch& sketch, bool isQuestion, qreal x, qreal y, qreal degrees, qreal size)
{
    const QColor colour = isQuestion ? colours::violet : colours::red;
    const Sketch::Placed placed(sketch, sketch.upright() * at(x, y, degrees, size));
    sketch.blob({{isQuestion ? path("M-16 -30C-14 -56 24 -52 18 -26C14 -12 0 -12 0 4") : path("M0 -46L0 2"), 18},
                 {circle(0, 24, 9)}},
                colour);
}

void drawQuestions(Sketch& sketch)
{
    drawMark(sketch, true, 0, -106, 0, 0.95);
    drawMark(sketch, true, -66, -84, -24, 0.7);
    drawMark(sketch, true, 66, -84, 24, 0.7);
}

void drawExclamations(Sketch& sketch)
{
    drawMark(sketch, false, -18, -106, -8, 0.9);
    drawMark(sketch, false, 18, -106, 8, 0.9);
}

void drawBubble(Sketch& sketch)
{
    sketch.shape(circle(52, -62, 7), colours::paper, Sketch::fine);
    sketch.shape(circle(66, -80, 10), colours::paper, 3.6);
    sketch.blob({{circle(62, -124, 28)},
                 {circle(94, -132, 30)},
                 {circle(124, -120, 26)},
                 {circle(104, -108, 24)},
                 {circle(76, -110, 24)}},
                colours::paper);
}

void drawDreamOfLove(Sketch& sketch)
{
    drawBubble(sketch);
    sketch.shape(heart(93, -118, 46), colours::red, Sketch::fine);
}

void drawDreamOfFood(Sketch& sketch)
{
    drawBubble(sketch);
    const Sketch::Placed placed(sketch, at(93, -120, 0, 0.8));
    sketch.shape(path("M-28 -18Q0 -30 28 -18L2 34Z"), colours::yellow, Sketch::fine);
    sketch.line(path("M-28 -19Q0 -32 28 -19"), 8, colours::tan);
    sketch.flat(circle(-5, -6, 5), colours::red);
    sketch.flat(circle(8, -2, 5), colours::red);
    sketch.flat(circle(1, 12, 5), colours::red);
}

void drawDreamOfDots(Sketch& sketch)
{
    drawBubble(sketch);
    for (const qreal x : {74.0, 94.0, 114.0}) {
        sketch.flat(circle(x, -119, 6.5), colours::darkGrey);
    }
}

void drawSun(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(84, -84));
    sketch.shape(star(0, 0, 12, 50, 36), colours::orange);
    sketch.shape(circle(0, 0, 31), colours::yellow);
    sketch.line(path("M-13 -2Q-9 -8 -5 -2M5 -2Q9 -8 13 -2M-10 9Q0 18 10 9"), 3.4);
}

void drawMoon(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(86, -92));
    sketch.shape(path("M10 -42C-26 -40 -44 -6 -28 22C-14 46 24 46 38 20C16 26 -6 14 -8 -10C-8 -24 0 -36 10 -42Z"),
                 colours::yellow);
}

void drawTurningStars(Sketch& sketch)
{
    sketch.line(ellipse(0, -84, 74, 17), Sketch::fine, colours::grey);
    for (const QPointF& place : {QPointF(-68, -88), {-22, -102}, {38, -98}, {70, -78}, {4, -66}}) {
        sketch.shape(star(place.x(), place.y(), 5, 17, 8), colours::yellow, 3.4);
    }
}

void drawNotes(Sketch& sketch)
{
    for (const auto& [x, y, degrees, colour] :
         {std::tuple{-84.0, -70.0, -12.0, colours::violet}, {88.0, -80.0, 12.0, colours::red}}) {
        const Sketch::Placed placed(sketch, at(x, y, degrees));
        sketch.blob({{ellipse(-16, 22, 11, 9)},
                     {ellipse(20, 16, 11, 9)},
                     {path("M-8 20V-26L28 -32V14"), 8},
                     {path("M-8 -24L28 -30"), 13}},
                    colour, 3.6);
    }
}

void drawCanopy(Sketch& sketch)
{
    sketch.shape(
        path("M-100 34C-92 -46 46 -72 88 28Q70 14 54 32Q36 16 14 34Q-8 16 -30 36Q-48 18 -66 36Q-84 22 -100 34Z"),
        colours::red);
    sketch.line(path("M14 32C12 0 6 -20 -2 -32M-30 34C-30 4 -20 -20 -2 -32"));
}

void drawRaindrops(Sketch& sketch, std::initializer_list<QPointF> places)
{
    for (const QPointF& place : places) {
        sketch.shape(drop(place.x(), place.y(), 22), colours::sky, Sketch::fine);
    }
}

/// Held straight, between two.
void drawUmbrella(Sketch& sketch)
{
    sketch.limb(segment({0, 30}, {0, -170}), 9, colours::brown, 3.4);
    const Sketch::Placed placed(sketch, at(0, -160));
    drawCanopy(sketch);
    drawRaindrops(sketch, {{-122, 64}, {110, 70}, {118, 20}, {-124, 2}, {60, -46}});
}

/// Held over the head of the one who holds it.
void drawLeaningUmbrella(Sketch& sketch)
{
    const Sketch::Placed leaning(sketch, at(0, 0, -20));
    sketch.limb(segment({0, 30}, {0, -208}), 9, colours::brown, 3.4);
    const Sketch::Placed placed(sketch, at(0, -204, 0, 1.12));
    drawCanopy(sketch);
    drawRaindrops(sketch, {{-112, 66}, {-118, 6}, {106, 40}, {116, 92}, {76, -42}});
}

void drawWings(Sketch& sketch)
{
    for (const bool isLeft : {true, false}) {
        const Sketch::Placed placed(sketch, isLeft ? mirrored() : QTransform());
        sketch.shape(path("M36 96C60 44 108 30 126 42C130 58 126 66 122 70C126 82 118 90 112 92C112 104 102 110 92 "
                          "108C86 120 60 124 40 116Z"),
                     colours::paper);
        sketch.line(path("M122 70Q108 74 96 72M112 92Q98 94 88 90"), Sketch::fine, colours::grey);
    }
}

void drawCape(Sketch& sketch)
{
    sketch.shape(path("M-30 70C-84 76 -118 106 -128 150C-100 140 -84 162 -60 150C-40 172 40 172 60 150C84 162 100 140 "
                      "128 150C118 106 84 76 30 70Z"),
                 colours::red);
}

void drawRocket(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(92, -60, 24));
    sketch.shape(path("M-11 40Q0 76 11 40Z"), colours::orange);
    sketch.shape(path("M-18 12L-34 42L-14 36ZM18 12L34 42L14 36Z"), colours::red);
    sketch.shape(path("M0 -58C22 -38 24 8 15 40H-15C-24 8 -22 -38 0 -58Z"), colours::paper);
    sketch.shape(path("M0 -58C10 -49 16 -37 18.5 -24H-18.5C-16 -37 -10 -49 0 -58Z"), colours::red, Sketch::fine);
    sketch.shape(circle(0, -4, 9), colours::sky, Sketch::fine);
}

void drawMistletoe(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -112));
    sketch.line(path("M0 -30V-12"));
    sketch.shape(path("M0 -12C-14 -22 -40 -12 -44 14C-22 20 -4 8 0 -12Z"), colours::green);
    sketch.shape(path("M0 -12C14 -22 40 -12 44 14C22 20 4 8 0 -12Z"), colours::green);
    sketch.shape(circle(-7, -6, 7), colours::red, Sketch::fine);
    sketch.shape(circle(7, -6, 7), colours::red, Sketch::fine);
    sketch.shape(path("M0 -22L-16 -34L-14 -14ZM0 -22L16 -34L14 -14Z"), colours::red, Sketch::fine);
}

void drawHeartAbove(Sketch& sketch)
{
    sketch.shape(heart(0, -92, 74), colours::red);
    sketch.line(path("M-24 -104Q-24 -116 -13 -120"), 5, colours::paper);
}

constexpr std::array<Prop, 19> props{{
    {"rain-cloud", Place::Above, drawRainCloud},
    {"thunder", Place::Above, drawThunder},
    {"bulb", Place::Above, drawBulb},
    {"questions", Place::Above, drawQuestions},
    {"exclamations", Place::Above, drawExclamations},
    {"dream-love", Place::Above, drawDreamOfLove},
    {"dream-food", Place::Above, drawDreamOfFood},
    {"dream-dots", Place::Above, drawDreamOfDots},
    {"sun", Place::Behind, drawSun},
    {"moon", Place::Behind, drawMoon},
    {"turning-stars", Place::Above, drawTurningStars},
    {"notes", Place::Above, drawNotes},
    {"umbrella", Place::InHand, drawLeaningUmbrella, "hold"},
    {"umbrella-for-two", Place::InHand, drawUmbrella, "hold"},
    {"wings", Place::Behind, drawWings},
    {"cape", Place::Behind, drawCape, "hips"},
    {"rocket", Place::Behind, drawRocket},
    {"mistletoe", Place::Above, drawMistletoe},
    {"heart-above", Place::Above, drawHeartAbove},
}};

} // namespace

std::span<const Prop> airProps()
{
    return props;
}

} // namespace kovalin::drawing
