#include "kovalin-backend/drawing/Props.h"
#include "kovalin-backend/drawing/Shapes.h"

#include <array>

namespace kovalin::drawing {

namespace {

using Place = Prop::Place;

void drawLaptop(Sketch& sketch)
{
    sketch.shape(path("M-66 76H66L74 148H-74Z"), colours::grey);
    sketch.flat(path("M-60 81H60L67 143H-67Z"), colours::mist);
    sketch.flat(heart(0, 112, 24), colours::sky);
    sketch.shape(box(-88, 144, 176, 16, 7), colours::grey);
}

void drawPaperPiles(Sketch& sketch)
{
    for (const bool isLeft : {true, false}) {
        const qreal x = isLeft ? -58 : 58;
        for (int i = 0; i < (isLeft ? 6 : 4); ++i) {
            sketch.shape(box(x - 36 + (i % 2 == 0 ? 0 : 5), 138 - 12.0 * i, 66, 13, 2),
                         i % 3 == 1 ? colours::cream : colours::paper, Sketch::fine);
        }
    }
    sketch.shape(box(-104, 150, 208, 16, 6), colours::brown);
}

void drawBlanket(Sketch& sketch)
{
    const QPainterPath blanket = path("M-96 92Q-60 72 -30 84Q0 94 30 84Q60 72 96 92L104 164Q0 176 -104 164Z");
    sketch.shape(blanket, colours::violet);
    {
        const Sketch::Clipped clipped(sketch, blanket);
        for (const QPointF& dot :
             {QPointF(-72, 108), {-44, 138}, {-12, 112}, {18, 144}, {46, 112}, {78, 136}, {-84, 150}, {84, 98}}) {
            sketch.flat(star(dot.x(), dot.y(), 5, 10, 4.6), colours::yellow);
        }
        sketch.line(path("M-98 98Q-60 80 -30 92Q0 102 30 92Q60 80 98 98"), 12, colours::lilac);
    }
    sketch.line(blanket, Sketch::bold);
}

void drawPillowBehind(Sketch& sketch)
{
    sketch.shape(path("M-104 -46C-96 -66 -60 -56 0 -58C60 -56 96 -66 104 -46C98 -10 98 30 104 56C96 74 60 66 0 68C-60 "
                      "66 -96 74 -104 56"
                      "C-98 30 -98 -10 -104 -46Z"),
                 colours::paper);
    sketch.line(path("M-86 -40Q-78 -34 -76 -26M86 -40Q78 -34 76 -26"), Sketch::fine, colours::grey);
}

void drawBath(Sketch& sketch)
{
    sketch.shape(path("M-104 104H104C104 152 84 168 60 168H-60C-84 168 -104 152 -104 104Z"), colours::paper);
    sketch.blob({{circle(-84, 98, 15)},
                 {circle(-60, 90, 19)},
                 {circle(-32, 96, 17)},
                 {circle(-6, 88, 19)},
                 {circle(22, 95, 17)},
                 {circle(50, 89, 19)},
                 {circle(78, 97, 16)},
                 {box(-90, 96, 176, 14, 6)}},
                colours::water, 3.6);
    sketch.flat(circle(-60, 84, 4), colours::paper);
    sketch.flat(circle(0, 82, 4), colours::paper);
    sketch.flat(circle(54, 83, 4), colours::paper);
    sketch.shape(path("M60 76C56 62 72 54 80 64C92 60 92 72 84 76Z"), colours::yellow, Sketch::fine);
    sketch.shape(path("M84 66L94 68L85 72Z"), colours::orange, 2.4);
}

void drawCar(Sketch& sketch)
{
    sketch.shape(path("M-108 110C-104 96 -90 92 -70 92H70C90 92 104 96 108 110V158H-108Z"), colours::red);
    sketch.shape(circle(-78, 124, 16), colours::cream);
    sketch.shape(circle(78, 124, 16), colours::cream);
    sketch.line(path("M-40 116H40M-40 128H40M-40 140H40"), 4.4);
    sketch.shape(box(-112, 146, 224, 18, 8), colours::mist);
}

void drawWheel(Sketch& sketch)
{
    sketch.line(path("M0 128L-34 116M0 128L34 116M0 128V160"), 10);
    sketch.line(circle(0, 126, 40), 15);
    sketch.line(circle(0, 126, 40), 7, colours::darkGrey);
    sketch.shape(circle(0, 126, 11), colours::grey, Sketch::fine);
}

void drawGamepad(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 126));
    sketch.shape(path("M-44 -22C-64 -22 -72 30 -52 36C-38 38 -34 16 -22 16H22C34 16 38 38 52 36C72 30 64 -22 44 -22Z"),
                 colours::navy);
    sketch.line(path("M-38 -10V10M-48 0H-28"), 7, colours::mist);
    sketch.flat(circle(34, -8, 5), colours::red);
    sketch.flat(circle(46, 2, 5), colours::yellow);
    sketch.flat(circle(34, 10, 5), colours::green);
    sketch.flat(circle(23, 1, 5), colours::sky);
}

void drawGuitar(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(-6, 128, -24));
    sketch.limb(segment({20, 0}, {124, 0}), 15, colours::darkBrown);
    sketch.shape(box(116, -13, 30, 26, 5), colours::darkBrown);
    sketch.blob({{circle(-26, 0, 36)}, {circle(18, 0, 26)}}, colours::orange);
    sketch.shape(circle(-6, 0, 13), colours::darkBrown, Sketch::fine);
    sketch.line(path("M-44 -3H128M-44 3H128"), 2.2, colours::cream);
    sketch.shape(box(-50, -12, 9, 24, 3), colours::darkBrown, 2.6);
}

void drawDrum(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 126));
    sketch.shape(path("M-60 -14V22C-60 44 60 44 60 22V-14Z"), colours::red);
    sketch.line(path("M-56 -4L-30 32L-6 -2L18 34L40 -2L58 26"), 4, colours::cream);
    sketch.shape(ellipse(0, -16, 62, 17), colours::cream);
}

void drawCat(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 122));
    sketch.shape(path("M34 34C66 36 66 0 52 -8"), colours::orange, Sketch::bold);
    sketch.shape(ellipse(0, 22, 40, 26), colours::orange);
    sketch.shape(path("M-34 -26L-34 -56L-14 -42H14L34 -56V-26C36 0 22 12 0 12C-22 12 -36 0 -34 -26Z"), colours::orange);
    sketch.line(path("M-8 -38V-30M0 -39V-28M8 -38V-30"), Sketch::fine, shaded(colours::orange, 0.7));
    sketch.line(path("M-22 -16Q-15 -24 -8 -16M8 -16Q15 -24 22 -16"), 3.6);
    sketch.flat(path("M-5 -9H5L0 -4Z"), colours::red);
    sketch.line(path("M-10 0Q-3 6 0 -2Q3 6 10 0M-22 -4L-40 -8M-22 0L-40 2M22 -4L40 -8M22 0L40 2"), 2.6);
}

void drawDog(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 122));
    sketch.shape(ellipse(0, 24, 40, 24), colours::cream);
    sketch.shape(path("M-30 -34C-34 -48 34 -48 30 -34C40 -6 26 16 0 16C-26 16 -40 -6 -30 -34Z"), colours::cream);
    sketch.shape(path("M-26 -42C-44 -44 -54 -22 -48 -2C-40 6 -32 -2 -30 -14Z"), colours::brown);
    sketch.shape(path("M26 -42C44 -44 54 -22 48 -2C40 6 32 -2 30 -14Z"), colours::brown);
    sketch.flat(circle(-13, -18, 4.6), colours::ink);
    sketch.flat(circle(13, -18, 4.6), colours::ink);
    sketch.flat(path("M-8 -9Q0 -13 8 -9Q6 -1 0 0Q-6 -1 -8 -9Z"), colours::ink);
    sketch.flat(path("M-5 4H5V14Q0 20 -5 14Z"), colours::pink);
    sketch.line(path("M0 -1V4M-11 3Q-5 8 0 3Q5 8 11 3"));
}

void drawTeddy(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(0, 124));
    sketch.blob({{circle(-24, -40, 13)}, {circle(24, -40, 13)}, {ellipse(0, -18, 34, 30)}, {ellipse(0, 24, 34, 28)}},
                colours::brown);
    sketch.flat(ellipse(0, 26, 20, 18), colours::tan);
    sketch.flat(ellipse(0, -9, 16, 12), colours::tan);
    sketch.flat(circle(-13, -24, 4), colours::ink);
    sketch.flat(circle(13, -24, 4), colours::ink);
    sketch.flat(ellipse(0, -14, 6, 4), colours::ink);
    sketch.line(path("M-7 -5Q0 1 7 -5"));
}

void drawBoard(Sketch& sketch)
{
    sketch.shape(box(-60, 86, 120, 76, 8), colours::cream);
}

void drawHeartBoard(Sketch& sketch)
{
    drawBoard(sketch);
    sketch.shape(heart(0, 126, 62), colours::red);
}

void drawCheckBoard(Sketch& sketch)
{
    drawBoard(sketch);
    for (const qreal y : {104.0, 124.0, 144.0}) {
        sketch.line(at(-42, y).map(path("M-5 0L0 6L10 -8")), 4.4, colours::darkGreen);
        sketch.line(segment({-20, y}, {44, y}), 4, colours::grey);
    }
}

void drawBigHeart(Sketch& sketch)
{
    sketch.shape(heart(0, 124, 104), colours::red);
    sketch.line(path("M-36 106Q-36 92 -22 88"), 6, colours::paper);
}

void drawCarton(Sketch& sketch)
{
    sketch.shape(path("M-64 78L-96 60L-74 100ZM64 78L96 60L74 100Z"), colours::tan);
    sketch.shape(path("M-72 92H72L66 164H-66Z"), colours::tan);
    sketch.flat(box(-10, 94, 20, 34), colours::cream);
    sketch.line(path("M28 146V132M22 138L28 132L34 138M44 146V132M38 138L44 132L50 138"), Sketch::fine, colours::brown);
}

void drawSuitcase(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(104, 146));
    sketch.limb(path("M-14 -38V-66H14V-38"), 8, colours::grey, 3.4);
    sketch.shape(box(-34, -38, 68, 78, 10), colours::teal);
    sketch.line(path("M-14 -32V34M0 -32V34M14 -32V34"), Sketch::fine, shaded(colours::teal, 0.75));
    sketch.flat(circle(-20, 44, 6), colours::ink);
    sketch.flat(circle(20, 44, 6), colours::ink);
}

void drawCushions(Sketch& sketch)
{
    sketch.shape(path("M-112 60C-112 20 -88 16 -80 30H80C88 16 112 20 112 60V160H-112Z"), colours::teal);
    sketch.line(path("M0 34V100M-78 40Q-84 90 -76 150M78 40Q84 90 76 150"), Sketch::fine, shaded(colours::teal, 0.75));
}

constexpr std::array<Prop, 20> props{{
    {"laptop", Place::InFront, drawLaptop, "lap", true},
    {"papers", Place::InFront, drawPaperPiles, "cheeks", true},
    {"bed", Place::InFront, drawBlanket, "lap", true},
    {"pillow", Place::Behind, drawPillowBehind},
    {"bath", Place::InFront, drawBath, "lap", true},
    {"car", Place::InFront, drawCar, "lap", true},
    {"steering-wheel", Place::InFront, drawWheel, "hold-both"},
    {"gamepad", Place::InFront, drawGamepad, "hold-both"},
    {"guitar", Place::InFront, drawGuitar, "hold-both"},
    {"drum", Place::InFront, drawDrum, "cheer"},
    {"cat", Place::InFront, drawCat, "hold-both"},
    {"dog", Place::InFront, drawDog, "hold-both"},
    {"teddy", Place::InFront, drawTeddy, "hold-both"},
    {"heart-board", Place::InFront, drawHeartBoard, "hold-both"},
    {"check-board", Place::InFront, drawCheckBoard, "hold-both"},
    {"big-heart", Place::InFront, drawBigHeart, "hold-both"},
    {"carton", Place::InFront, drawCarton, "lap", true},
    {"suitcase", Place::Beside, drawSuitcase},
    {"sofa", Place::Behind, drawCushions},
    {"board", Place::InFront, drawBoard, "hold-both"},
}};

} // namespace

std::span<const Prop> frontProps()
{
    return props;
}

} // namespace kovalin::drawing
