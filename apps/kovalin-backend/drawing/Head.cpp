#include "kovalin-backend/drawing/Head.h"

#include "kovalin-backend/drawing/Face.h"
#include "kovalin-backend/drawing/HairShapes.h"
#include "kovalin-backend/drawing/Shapes.h"

namespace kovalin::drawing {

namespace {

QPainterPath facePath(FaceShape face)
{
    switch (face) {
    case FaceShape::Round:
        return path("M-57 2C-57 -40 -34 -62 0 -62C34 -62 57 -40 57 2C57 38 32 60 0 60C-32 60 -57 38 -57 2Z");
    case FaceShape::Oval:
        return path("M-55 0C-55 -40 -34 -62 0 -62C34 -62 55 -40 55 0C55 34 30 64 0 64C-30 64 -55 34 -55 0Z");
    case FaceShape::Square:
        return path("M-56 0C-56 -42 -36 -62 0 -62C36 -62 56 -42 56 0C57 30 52 44 36 55C22 64 -22 64 -36 55C-52 44 -57 "
                    "30 -56 0Z");
    case FaceShape::Heart:
        return path("M-57 -4C-57 -42 -34 -62 0 -62C34 -62 57 -42 57 -4C57 28 24 64 0 64C-24 64 -57 28 -57 -4Z");
    }
    return {};
}

void drawEar(Sketch& sketch, const AvatarLook& look)
{
    sketch.shape(ellipse(57, 8, 11, 13), look.skin);
    sketch.line(path("M56 3Q64 4 60 13"), Sketch::fine, look.skinShade);
    if (look.extra == Extra::Earrings) {
        sketch.shape(circle(60, 26, 6), colours::yellow, Sketch::fine);
    }
}

void drawBow(Sketch& sketch, const QColor& colour)
{
    const Sketch::Placed placed(sketch, at(36, -58, 24));
    sketch.shape(path("M0 0C-12 -18 -28 -16 -28 0C-28 16 -12 18 0 0Z"), colour, Sketch::fine);
    sketch.shape(path("M0 0C12 -18 28 -16 28 0C28 16 12 18 0 0Z"), colour, Sketch::fine);
    sketch.shape(circle(0, 0, 7.5), shaded(colour, 0.85), Sketch::fine);
}

void drawFlower(Sketch& sketch)
{
    const Sketch::Placed placed(sketch, at(44, -44));
    std::vector<Sketch::Piece> petals;
    for (int i = 0; i < 5; ++i) {
        const QPointF middle = QTransform().rotate(72.0 * i).map(QPointF(0, -11));
        petals.push_back({circle(middle.x(), middle.y(), 9)});
    }
    sketch.blob(petals, colours::pink, Sketch::fine);
    sketch.flat(circle(0, 0, 6.5), colours::yellow);
}

void drawBeanie(Sketch& sketch, const QColor& colour)
{
    sketch.shape(circle(0, -92, 14), colours::cream);
    sketch.shape(path("M-60 -26C-64 -66 -34 -88 0 -88C34 -88 64 -66 60 -26Z"), colour);
    sketch.shape(box(-65, -44, 130, 22, 10), shaded(colour, 0.85));
    for (const qreal x : {-44.0, -22.0, 0.0, 22.0, 44.0}) {
        sketch.line(segment({x, -38}, {x, -29}), Sketch::fine);
    }
}

void drawExtra(Sketch& sketch, const AvatarLook& look)
{
    // A thing of the colour of ink would have no outline.
    const QColor colour = look.extraColour == colours::ink ? QColor(colours::teal) : look.extraColour;
    switch (look.extra) {
    case Extra::None:
    case Extra::Earrings:
        return;
    case Extra::Bow:
        return drawBow(sketch, colour);
    case Extra::Headband:
        return sketch.shape(path("M-58 -28C-40 -58 40 -58 58 -28L61 -42C42 -72 -42 -72 -61 -42Z"), colour,
                            Sketch::fine);
    case Extra::Flower:
        return drawFlower(sketch);
    case Extra::Beanie:
        return drawBeanie(sketch, colour);
    }
}

} // namespace

void drawHead(Sketch& sketch, const AvatarLook& look, const Expression& expression)
{
    if (look.hair != Hair::Scarf) {
        drawEar(sketch, look);
        const Sketch::Placed placed(sketch, mirrored());
        drawEar(sketch, look);
    }
    const QPainterPath face = facePath(look.face);
    sketch.shape(face, look.skin);
    drawSkinMarks(sketch, look);
    drawComplexion(sketch, expression.feelings, face);
    drawBeard(sketch, look);
    drawNose(sketch, look);
    drawHairFront(sketch, look);
    drawExtra(sketch, look);
    drawMouth(sketch, look, expression.mouth);
    drawEyes(sketch, look, expression.eyes);
    drawGlasses(sketch, look);
    drawBrows(sketch, look, expression.brows);
    drawFeelings(sketch, look, expression.feelings);
}

} // namespace kovalin::drawing
