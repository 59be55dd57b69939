#include "kovalin-backend/drawing/Props.h"
#include "kovalin-backend/drawing/Shapes.h"

#include <array>

namespace kovalin::drawing {

namespace {

using Place = Prop::Place;

void drawSteamWisps(Sketch& sketch, qreal x, qreal y)
{
    const Sketch::Placed placed(sketch, at(x, y));
    sketch.limb(path("M-8 0C-16 -9 -1 -14 -8 -24"), 7.5, colours::mist, 3);
    sketch.limb(path("M8 -2C0 -11 15 -16 8 -26"), 7.5, colours::mist, 3);
}

void drawMug(Sketch& sketch)
{
    drawSteamWisps(sketch, 0, -34);
    sketch.limb(path("M18 -18C36 -18 36 8 18 8"), 11, colours::red, 4);
    sketch.shape(path("M-21 -28L21 -28L19 12C18 20 -18 20 -19 12Z"), colours::red);
    sketch.flat(heart(0, -5, 20), colours::paper);
}

void drawPaperCup(Sketch& sketch)
{
    sketch.shape(path("M-17 -28L17 -28L12 26L-12 26Z"), colours::cream);
    sketch.shape(path("M-15.5 -12L15.5 -12L13.5 8L-13.5 8Z"), colours::brown, Sketch::fine);
    sketch.shape(box(-20, -38, 40, 12, 5), colours::darkBrown, Sketch::fine);
}

void drawIceCream(Sketch& sketch)
{
    sketch.shape(path("M-15 -18L15 -18L0 24Z"), colours::tan);
    sketch.line(path("M-9 -14L6 6M9 -14L-6 6"), 2.4, colours::brown);
    sketch.blob({{circle(-11, -26, 13)}, {circle(11, -26, 13)}, {circle(0, -44, 14)}}, colours::pink);
    sketch.flat(circle(0, -45, 11), colours::cream);
    sketch.shape(circle(3, -61, 6), colours::red, Sketch::fine);
}

void drawPizza(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -16, 12));
    sketch.shape(path("M-30 -30Q0 -44 30 -30L2 34Z"), colours::yellow);
    sketch.limb(path("M-31 -31Q0 -46 31 -31"), 14, colours::tan, 4);
    for (const QPointF& slice : {QPointF(-8, -18), {11, -14}, {1, 4}}) {
        sketch.shape(circle(slice.x(), slice.y(), 7), colours::red, 2.6);
    }
}

void drawBurger(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -20));
    sketch.shape(box(-30, 14, 60, 16, 8), colours::tan);
    sketch.shape(box(-32, 4, 64, 13, 6), colours::darkBrown, Sketch::fine);
    sketch.shape(path("M-34 0Q-26 10 -17 1Q-8 10 0 1Q8 10 17 1Q26 10 34 0L30 -7L-30 -7Z"), colours::green,
                 Sketch::fine);
    sketch.shape(path("M-31 -6C-31 -38 31 -38 31 -6Z"), colours::tan);
    sketch.line(path("M-14 -20L-11 -21M0 -25L3 -24M13 -18L16 -16"), 3, colours::cream);
}

void drawDonut(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -20));
    sketch.shape(circle(0, 0, 27), colours::tan);
    sketch.flat(path("M-24 2C-28 -30 28 -30 24 2C20 14 12 6 6 12C0 18 -6 8 -12 13C-18 16 -24 10 -24 2Z"),
                colours::pink);
    sketch.shape(circle(0, -1, 8), colours::paper, Sketch::fine);
    sketch.line(path("M-15 -8L-11 -12M2 -18L6 -16M14 -8L17 -3M-13 5L-9 7"), 3.4, colours::sky);
    sketch.line(path("M-6 -16L-3 -14M10 -15L13 -13M12 6L16 4"), 3.4, colours::yellow);
}

void drawTaco(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -18, -6));
    sketch.blob({{circle(-20, -12, 10)}, {circle(-4, -20, 11)}, {circle(14, -16, 11)}, {circle(26, -4, 8)}},
                colours::green, Sketch::fine);
    sketch.flat(circle(-8, -18, 6), colours::red);
    sketch.flat(circle(14, -15, 6), colours::red);
    sketch.shape(path("M-34 12C-34 -22 34 -22 34 12Q0 20 -34 12Z"), colours::yellow);
}

void drawPopcorn(Sketch& sketch)
{
    sketch.blob({{circle(-17, -36, 9)},
                 {circle(-4, -44, 10)},
                 {circle(10, -40, 10)},
                 {circle(20, -33, 8)},
                 {box(-20, -36, 40, 12)}},
                colours::cream, 3.6);
    const QPainterPath bucket = path("M-24 -30L24 -30L17 26L-17 26Z");
    sketch.shape(bucket, colours::paper);
    {
        const Sketch::Clipped clipped(sketch, bucket);
        for (const qreal x : {-17.0, 0.0, 17.0}) {
            sketch.line(segment({x, -34}, {x * 0.74, 30}), 8, colours::red);
        }
    }
    sketch.line(bucket, Sketch::bold);
}

void drawGlass(Sketch& sketch)
{
    sketch.limb(segment({0, -12}, {0, 20}), 8, colours::mist, 3);
    sketch.shape(path("M-15 -56L15 -56C17 -30 12 -12 0 -10C-12 -12 -17 -30 -15 -56Z"), colours::mist);
    sketch.flat(path("M-12.5 -42L12.5 -42C12 -26 9 -14 0 -12.5C-9 -14 -12 -26 -12.5 -42Z"), colours::yellow);
    sketch.flat(circle(-4, -28, 2.4), colours::paper);
    sketch.flat(circle(4, -36, 2.4), colours::paper);
    sketch.flat(circle(3, -22, 2), colours::paper);
    sketch.shape(box(-13, 16, 26, 8, 4), colours::mist, Sketch::fine);
}

void drawCocktail(Sketch& sketch)
{
    sketch.limb(segment({16, -62}, {2, -20}), 7, colours::red, 3);
    sketch.shape(path("M-20 -48L20 -48L14 22C13 28 -13 28 -14 22Z"), colours::orange);
    sketch.flat(path("M-16 -45L16 -45L14.5 -30L-14.5 -30Z"), colours::yellow);
    sketch.shape(circle(-20, -48, 12), colours::yellow, Sketch::fine);
    sketch.line(path("M-20 -58V-38M-30 -48H-10"), 2.4, colours::orange);
}

void drawSushi(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -12, -14));
    sketch.limb(segment({-6, 14}, {-22, -60}), 7, colours::tan, 3);
    sketch.limb(segment({8, 14}, {20, -60}), 7, colours::tan, 3);
    const Sketch::Placed roll(sketch, at(0, -46));
    sketch.shape(box(-20, -18, 40, 34, 10), QColor(0x2F, 0x4B, 0x45));
    sketch.flat(ellipse(0, -10, 17, 9), colours::paper);
    sketch.flat(ellipse(0, -10, 8, 4.5), colours::orange);
}

void drawCookie(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -20));
    QPainterPath cookie = circle(0, 0, 27);
    cookie = cookie.subtracted(circle(22, -20, 13));
    sketch.shape(cookie, colours::tan);
    for (const QPointF& chip : {QPointF(-12, -10), {4, -2}, {-8, 12}, {13, 12}, {-18, 3}}) {
        sketch.flat(circle(chip.x(), chip.y(), 4), colours::darkBrown);
    }
}

void drawMelon(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, -20, -8));
    sketch.shape(path("M-36 -10C-32 34 32 34 36 -10Z"), colours::darkGreen);
    sketch.flat(path("M-29 -8C-25 24 25 24 29 -8Z"), colours::cream);
    sketch.flat(path("M-25 -8C-21 18 21 18 25 -8Z"), colours::red);
    sketch.line(path("M-12 -1V2M0 4V7M12 -1V2"), 4, colours::ink);
}

void drawLollipop(Sketch& sketch)
{
    sketch.limb(segment({0, 20}, {0, -20}), 7, colours::paper, 3);
    sketch.shape(circle(0, -38, 22), colours::pink);
    sketch.line(path("M0 -38C6 -46 14 -38 8 -30C0 -22 -14 -30 -12 -42C-8 -56 10 -58 18 -46"), 4, colours::paper);
}

void drawCake(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 124));
    for (const qreal x : {-26.0, 0.0, 26.0}) {
        sketch.limb(segment({x, -30}, {x, -12}), 8, colours::sky, 3);
        sketch.shape(drop(x, -44, 17), colours::yellow, Sketch::fine);
    }
    sketch.shape(box(-64, 30, 128, 14, 7), colours::mist);
    sketch.shape(box(-52, -14, 104, 48, 10), colours::cream);
    sketch.line(path("M-52 16H52"), 6, colours::red);
    sketch.shape(
        path("M-53 -6C-53 -18 -44 -18 -36 -18H36C44 -18 53 -18 53 -6C50 8 38 8 36 -2C32 12 18 12 16 0C12 14 -4 14 -6 0"
             "C-10 10 -24 10 -26 -2C-30 10 -50 10 -53 -6Z"),
        colours::pink, Sketch::fine);
}

void drawNoodles(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 124));
    drawSteamWisps(sketch, -14, -24);
    sketch.limb(segment({16, -12}, {52, -58}), 7, colours::brown, 3);
    sketch.limb(segment({24, -10}, {66, -50}), 7, colours::brown, 3);
    sketch.shape(ellipse(0, -8, 58, 15), colours::yellow);
    sketch.line(path("M-44 -8Q-32 -18 -20 -8Q-8 2 4 -8Q16 -18 28 -8Q38 0 46 -8"), 3, colours::orange);
    sketch.shape(ellipse(-24, -10, 14, 8), colours::paper, Sketch::fine);
    sketch.flat(ellipse(-24, -10, 6, 4), colours::orange);
    sketch.shape(path("M-62 -8Q0 10 62 -8C60 24 34 40 24 42L-24 42C-34 40 -60 24 -62 -8Z"), colours::red);
    sketch.line(path("M-50 12Q0 28 50 12"), Sketch::fine, colours::cream);
}

void drawPancakes(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 124));
    sketch.shape(ellipse(0, 34, 68, 13), colours::mist);
    for (const qreal y : {24.0, 8.0, -8.0}) {
        sketch.shape(box(-50, y - 9, 100, 19, 9), colours::tan, Sketch::fine);
    }
    sketch.flat(path("M-46 -14Q0 -22 46 -14C48 -4 38 -6 34 4C30 18 22 14 22 0C14 -6 -10 -2 -14 8C-18 16 -26 10 -26 "
                     "-4C-34 -6 -46 -4 -46 -14Z"),
                colours::brown);
    sketch.shape(box(-13, -28, 26, 14, 4), colours::yellow, Sketch::fine);
}

constexpr std::array<Prop, 17> props{{
    {"mug", Place::InHand, drawMug, "hold"},
    {"paper-cup", Place::InHand, drawPaperCup, "hold"},
    {"ice-cream", Place::InHand, drawIceCream, "hold"},
    {"pizza", Place::InHand, drawPizza, "hold"},
    {"burger", Place::InHand, drawBurger, "hold"},
    {"donut", Place::InHand, drawDonut, "hold"},
    {"taco", Place::InHand, drawTaco, "hold"},
    {"popcorn", Place::InHand, drawPopcorn, "hold"},
    {"glass", Place::InHand, drawGlass, "raise"},
    {"cocktail", Place::InHand, drawCocktail, "hold"},
    {"sushi", Place::InHand, drawSushi, "hold"},
    {"cookie", Place::InHand, drawCookie, "hold"},
    {"melon", Place::InHand, drawMelon, "hold"},
    {"lollipop", Place::InHand, drawLollipop, "hold"},
    {"cake", Place::InFront, drawCake, "hold-both"},
    {"noodles", Place::InFront, drawNoodles, "hold-both"},
    {"pancakes", Place::InFront, drawPancakes, "hold-both"},
}};

} // namespace

std::span<const Prop> foodProps()
{
    return props;
}

} // namespace kovalin::drawing
