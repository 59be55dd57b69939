#include "kovalin-backend/drawing/Face.h"

#include "kovalin-backend/drawing/Shapes.h"

namespace kovalin::drawing {

namespace {

QColor withAlpha(QColor colour, int alpha)
{
    colour.setAlpha(alpha);
    return colour;
}

/// The brow over the right eye of the picture, its inner end on the left.
QPainterPath browPath(BrowPose pose, bool isRight)
{
    switch (pose) {
    case BrowPose::Calm:
        return path("M11 -13Q24 -21 37 -13");
    case BrowPose::Raised:
        return path("M11 -21Q24 -31 37 -22");
    case BrowPose::Worried:
        return path("M10 -25Q22 -23 36 -13");
    case BrowPose::Angry:
        return path("M9 -8Q22 -17 37 -22");
    case BrowPose::OneUp:
        return isRight ? path("M11 -22Q24 -34 38 -23") : path("M10 -11Q24 -16 37 -12");
    }
    return {};
}

qreal browWidth(Brows brows)
{
    switch (brows) {
    case Brows::Thin:
        return 4;
    case Brows::Straight:
        return 5.5;
    case Brows::Thick:
        return 8;
    case Brows::Arched:
        return 5;
    }
    return 5;
}

/// Hair on the face: dark enough to be seen on any skin.
QColor browColour(const AvatarLook& look)
{
    return shaded(look.hairColour, 0.62);
}

void drawGloomLines(Sketch& sketch, const QColor& colour)
{
    for (const qreal x : {-34.0, -17.0, 0.0, 17.0, 34.0}) {
        sketch.line(segment({x, -64}, {x, -26 - qAbs(x) * 0.25}), 2.6, colour);
    }
}

void drawZs(Sketch& sketch)
{
    constexpr QColor colour = colours::sky;
    {
        const Sketch::Placed small(sketch, sketch.upright() * at(77, -30));
        sketch.limb(path("M-7 -8H7L-7 8H7"), 9, colour, 3.2);
    }
    const Sketch::Placed large(sketch, sketch.upright() * at(96, -59));
    sketch.limb(path("M-10 -11H10L-10 11H10"), 11, colour, 3.6);
}

void drawSteam(Sketch& sketch)
{
    for (const bool isLeft : {true, false}) {
        const Sketch::Placed placed(sketch, isLeft ? mirrored() : QTransform());
        sketch.blob({{circle(84, -2, 11)}, {circle(98, -12, 14)}, {circle(106, 4, 9)}, {path("M70 6L84 0"), 8}},
                    colours::mist, 3.4);
    }
}

} // namespace

void drawBrows(Sketch& sketch, const AvatarLook& look, BrowPose pose)
{
    for (const bool isRight : {false, true}) {
        const Sketch::Placed placed(sketch, isRight ? QTransform() : mirrored());
        sketch.line(browPath(pose, isRight), browWidth(look.brows), browColour(look));
    }
}

void drawNose(Sketch& sketch, const AvatarLook& look)
{
    switch (look.nose) {
    case Nose::Button:
        return sketch.line(path("M-5 20Q0 26 5 20"), 3.6, shaded(look.skinShade, 0.75));
    case Nose::Hook:
        return sketch.line(path("M-1 9Q7 20 6 22Q2 26 -4 23"), 3.4, shaded(look.skinShade, 0.75));
    case Nose::Soft:
        return sketch.flat(ellipse(0, 20, 7, 5), look.skinShade);
    case Nose::Wide:
        return sketch.line(path("M-10 20Q-7 25 -3 22Q0 26 3 22Q7 25 10 20"), 3.4, shaded(look.skinShade, 0.75));
    case Nose::Long:
        return sketch.line(path("M3 4L-4 20Q-2 24 5 23"), 3.4, shaded(look.skinShade, 0.75));
    }
}

void drawSkinMarks(Sketch& sketch, const AvatarLook& look)
{
    if (look.hasFreckles) {
        for (const QPointF spot : {QPointF(28, 24), QPointF(36, 21), QPointF(34, 30), QPointF(43, 27)}) {
            sketch.flat(circle(spot.x(), spot.y(), 1.9), shaded(look.skinShade, 0.85));
            sketch.flat(circle(-spot.x(), spot.y(), 1.9), shaded(look.skinShade, 0.85));
        }
    }
    if (look.hasMole) {
        sketch.flat(circle(24, 44, 2.3), colours::darkBrown);
    }
}

void drawBeard(Sketch& sketch, const AvatarLook& look)
{
    const QColor colour = shaded(look.hairColour, 0.92);
    switch (look.beard) {
    case Beard::None:
        return;
    case Beard::Stubble:
        return sketch.flat(path("M-52 14C-44 34 -32 24 -22 25C-10 20 10 20 22 25C32 24 44 34 52 14C54 40 30 62 0 62"
                                "C-30 62 -54 40 -52 14Z"),
                           withAlpha(shaded(look.hairColour, 0.6), 60));
    case Beard::Moustache:
        return sketch.shape(path("M0 26C8 20 24 24 30 34C20 38 8 36 0 31C-8 36 -20 38 -30 34C-24 24 -8 20 0 26Z"),
                            colour, Sketch::fine);
    case Beard::Goatee:
        return sketch.shape(path("M-17 52C-8 47 8 47 17 52C16 66 8 74 0 76C-8 74 -16 66 -17 52Z"), colour,
                            Sketch::fine);
    case Beard::Full:
        sketch.shape(path("M-58 4C-50 12 -46 26 -34 27C-22 22 -10 24 0 27C10 24 22 22 34 27C46 26 50 12 58 4"
                          "C62 42 40 78 0 78C-40 78 -62 42 -58 4Z"),
                     colour);
        return sketch.flat(ellipse(0, 39, 25, 13), look.skin);
    }
}

void drawGlasses(Sketch& sketch, const AvatarLook& look)
{
    if (look.glasses == Glasses::None) {
        return;
    }
    const qreal x = 24 + look.eyeSpacing;
    for (const bool isRight : {false, true}) {
        const Sketch::Placed side(sketch, isRight ? QTransform() : mirrored());
        const Sketch::Placed placed(sketch, at(x, 8));
        sketch.line(segment({20, -4}, {34, -7}), 3.6, look.extraColour);
        switch (look.glasses) {
        case Glasses::None:
            break;
        case Glasses::Round:
            sketch.line(circle(0, 0, 20), 4, look.extraColour);
            break;
        case Glasses::Square:
            sketch.line(box(-20, -17, 40, 34, 9), 4.4, look.extraColour);
            break;
        case Glasses::CatEye:
            sketch.line(path("M-19 -12C-8 -17 12 -16 25 -22C24 -2 18 17 2 17C-14 17 -20 4 -19 -12Z"), 4.4,
                        look.extraColour);
            break;
        case Glasses::HalfRim:
            sketch.line(path("M-20 -9C-10 -15 10 -15 21 -10"), 5, look.extraColour);
            sketch.line(path("M-20 -9C-20 22 20 22 21 -10"), 2, colours::grey);
            break;
        }
    }
    sketch.line(QTransform::fromTranslate(0, 4).map(path("M-5 0Q0 -4 5 0")), 4, look.extraColour);
}

void drawComplexion(Sketch& sketch, Feeling feelings, const QPainterPath& face)
{
    const Sketch::Clipped clipped(sketch, face);
    if (has(feelings, Feeling::Blush)) {
        sketch.flat(ellipse(-38, 27, 11, 7.5), withAlpha(colours::blush, 120));
        sketch.flat(ellipse(38, 27, 11, 7.5), withAlpha(colours::blush, 120));
    }
    if (has(feelings, Feeling::Sick)) {
        sketch.flat(path("M-60 12Q-30 0 0 12Q30 24 60 12V-70H-60Z"), withAlpha(colours::green, 95));
    }
    if (has(feelings, Feeling::Cold)) {
        sketch.flat(path("M-60 -12Q-30 -22 0 -12Q30 -2 60 -12V-70H-60Z"), withAlpha(colours::sky, 110));
    }
    if (has(feelings, Feeling::Gloom)) {
        sketch.flat(path("M-60 0Q0 -16 60 0V-70H-60Z"), withAlpha(colours::navy, 105));
    }
}

void drawFeelings(Sketch& sketch, const AvatarLook& look, Feeling feelings)
{
    if (has(feelings, Feeling::Cold) || has(feelings, Feeling::Gloom)) {
        drawGloomLines(sketch, withAlpha(colours::navy, 190));
    }
    const qreal x = 24 + look.eyeSpacing;
    if (has(feelings, Feeling::Tear)) {
        sketch.shape(drop(x + 17, 27, 21), colours::water, 2.6);
    }
    if (has(feelings, Feeling::Streams)) {
        for (const qreal sign : {-1.0, 1.0}) {
            const Sketch::Placed placed(sketch, QTransform::fromScale(sign, 1));
            sketch.shape(path("M17 15Q26 22 33 13L37 56Q30 66 20 62Z"), colours::water, 2.6);
            sketch.line(path("M26 24L28 52"), 2.6, colours::paper);
        }
    }
    if (has(feelings, Feeling::Sweat)) {
        sketch.shape(drop(53, -24, 26), colours::water, Sketch::fine);
        sketch.line(path("M49 -19Q50 -14 54 -13"), 2.4, colours::paper);
    }
    if (has(feelings, Feeling::Vein)) {
        const Sketch::Placed placed(sketch, at(-40, -40));
        sketch.line(path("M-13 -4Q-4 -4 -4 -13M4 -13Q4 -4 13 -4M13 4Q4 4 4 13M-4 13Q-4 4 -13 4"), 9, colours::ink);
        sketch.line(path("M-13 -4Q-4 -4 -4 -13M4 -13Q4 -4 13 -4M13 4Q4 4 4 13M-4 13Q-4 4 -13 4"), 5, colours::red);
    }
    if (has(feelings, Feeling::Steam)) {
        drawSteam(sketch);
    }
    if (has(feelings, Feeling::Sleep)) {
        drawZs(sketch);
    }
}

} // namespace kovalin::drawing
