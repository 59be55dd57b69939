#include "kovalin-backend/drawing/Body.h"

#include "kovalin-backend/drawing/Shapes.h"

namespace kovalin::drawing {

namespace {

constexpr qreal armWidth = 29; // with its outline
constexpr qreal legWidth = 31;
constexpr QPointF shoulder{42, 97};

QColor trousers(const AvatarLook& look)
{
    return look.clothesColour.blue() > look.clothesColour.red() ? QColor(0x6B, 0x5A, 0x4E) : QColor(0x46, 0x5C, 0x9E);
}

QPainterPath torsoPath(Legs legs)
{
    return legs == Legs::Hidden
               ? path("M-55 152L-54 112C-54 90 -38 80 -18 75L18 75C38 80 54 90 54 112L55 152Q0 166 -55 152Z")
               : path("M-38 154L-48 112C-50 90 -38 80 -18 75L18 75C38 80 50 90 48 112L38 154Q0 162 -38 154Z");
}

void drawHood(Sketch& sketch, const AvatarLook& look)
{
    sketch.shape(path("M-50 92C-52 64 -30 54 0 54C30 54 52 64 50 92Q0 108 -50 92Z"), shaded(look.clothesColour, 0.85));
}

void drawShirtDetails(Sketch& sketch, const AvatarLook& look)
{
    const QColor seam = shaded(look.clothesColour, 0.72);
    switch (look.clothes) {
    case Clothes::Tee:
        sketch.flat(path("M-20 72Q0 100 20 72Z"), look.skin);
        return sketch.line(path("M-21 76Q0 101 21 76"), Sketch::fine);
    case Clothes::Hoodie:
        sketch.line(path("M-13 88V112M13 88V108"), 4, look.clothesAccent);
        return sketch.line(path("M-30 160L-24 134H24L30 160"), Sketch::fine, seam);
    case Clothes::Stripes:
        for (const qreal y : {104.0, 124.0, 144.0}) {
            sketch.line(QTransform::fromTranslate(0, y).map(path("M-70 0Q0 10 70 0")), 8, look.clothesAccent);
        }
        sketch.flat(path("M-20 72Q0 94 20 72Z"), look.skin);
        return sketch.line(path("M-21 76Q0 96 21 76"), Sketch::fine);
    case Clothes::Collar:
        sketch.flat(path("M-18 72L0 98L18 72Z"), look.skin);
        sketch.shape(path("M-20 72L-30 90L-12 102L0 94Z"), shaded(look.clothesColour, 0.9), Sketch::fine);
        sketch.shape(path("M20 72L30 90L12 102L0 94Z"), shaded(look.clothesColour, 0.9), Sketch::fine);
        sketch.line(segment({0, 96}, {0, 162}), Sketch::fine, seam);
        sketch.flat(circle(7, 116, 3), look.clothesAccent);
        return sketch.flat(circle(7, 138, 3), look.clothesAccent);
    case Clothes::Turtleneck:
        sketch.shape(box(-23, 62, 46, 26, 9), shaded(look.clothesColour, 0.92), Sketch::fine);
        return sketch.line(path("M-12 68V82M0 68V83M12 68V82"), 2.4, seam);
    case Clothes::Dungarees:
        sketch.flat(path("M-20 72Q0 96 20 72Z"), look.skin);
        sketch.line(path("M-21 76Q0 97 21 76"), Sketch::fine);
        sketch.line(path("M-32 80L-26 118M32 80L26 118"), 12, shaded(look.clothesAccent, 0.9));
        sketch.shape(box(-32, 112, 64, 60, 6), look.clothesAccent, Sketch::fine);
        sketch.flat(circle(-24, 120, 4), colours::yellow);
        return sketch.flat(circle(24, 120, 4), colours::yellow);
    }
}

/// From the knee's two lines to the shoe.
struct Leg {
    QPainterPath path;
    QPointF foot;
    qreal toes; // the shoe's turn, degrees
};

void drawLeg(Sketch& sketch, const AvatarLook& look, const Leg& leg)
{
    sketch.limb(leg.path, legWidth, trousers(look));
    const Sketch::Placed placed(sketch, at(leg.foot.x(), leg.foot.y(), leg.toes));
    sketch.shape(path("M-13 -10L11 -10C22 -6 28 2 26 9L-14 9C-18 4 -16 -4 -13 -10Z"), look.clothesAccent);
    sketch.line(segment({-13, 5}, {25, 5}), Sketch::fine);
}

} // namespace

void drawLegs(Sketch& sketch, const AvatarLook& look, Legs legs)
{
    const auto onLeft = [&](const Leg& leg) {
        const Sketch::Placed placed(sketch, mirrored());
        drawLeg(sketch, look, leg);
    };
    switch (legs) {
    case Legs::Hidden:
        return;
    case Legs::Stand:
        onLeft({path("M20 150L22 198"), {26, 212}, 0});
        return drawLeg(sketch, look, {path("M20 150L22 198"), {26, 212}, 0});
    case Legs::Jump:
        onLeft({path("M20 150Q62 166 52 192"), {50, 208}, 40});
        return drawLeg(sketch, look, {path("M20 150Q62 166 52 192"), {50, 208}, 40});
    case Legs::Dance:
        onLeft({path("M20 150L30 198"), {34, 212}, 0});
        return drawLeg(sketch, look, {path("M18 150Q78 150 60 190"), {62, 202}, 24});
    case Legs::Run:
        onLeft({path("M18 150Q44 174 70 172"), {86, 168}, -70});
        return drawLeg(sketch, look, {path("M18 150Q60 156 62 190"), {66, 204}, -6});
    case Legs::Sit:
        onLeft({path("M20 158Q74 160 52 186"), {30, 198}, 10});
        return drawLeg(sketch, look, {path("M20 158Q78 164 40 192Q14 202 -6 196"), {-10, 202}, 180});
    }
}

void drawTorso(Sketch& sketch, const AvatarLook& look, Legs legs)
{
    if (look.clothes == Clothes::Hoodie) {
        drawHood(sketch, look);
    }
    sketch.shape(box(-15, 46, 30, 40, 8), look.skinShade);
    const QPainterPath torso = torsoPath(legs);
    sketch.shape(torso, look.clothesColour);
    {
        const Sketch::Clipped clipped(sketch, torso);
        drawShirtDetails(sketch, look);
    }
    sketch.line(torso, Sketch::bold);
    if (look.clothes == Clothes::Turtleneck) {
        sketch.shape(box(-23, 60, 46, 26, 9), shaded(look.clothesColour, 0.92), Sketch::fine);
    } else if (look.clothes != Clothes::Hoodie) {
        // The neck goes on into the neckline, without the torso's outline between.
        sketch.flat(box(-13, 66, 26, 14), look.skinShade);
    }
}

void drawArm(Sketch& sketch, const AvatarLook& look, const Arm& arm)
{
    QPainterPath whole(shoulder);
    whole.quadTo(arm.elbow, arm.wrist);
    const bool isShort = look.clothes == Clothes::Tee || look.clothes == Clothes::Dungarees;
    if (isShort) {
        constexpr qreal skinWidth = armWidth - 5;
        sketch.limb(whole, skinWidth, look.skin);
        QPainterPath sleeve(shoulder);
        const QPointF middle = (shoulder + 2 * arm.elbow + arm.wrist) / 4;
        sleeve.quadTo((shoulder + arm.elbow) / 2, middle);
        sketch.limb(sleeve, armWidth, look.clothesColour);
    } else {
        sketch.limb(whole, armWidth, look.clothesColour);
        if (look.clothes == Clothes::Stripes && arm.hand != Hand::None) {
            sketch.line(segment(whole.pointAtPercent(0.8), whole.pointAtPercent(0.84)), armWidth - 9,
                        look.clothesAccent);
        }
    }
    // The arm grows out of the body: its outline ends at the shoulder.
    sketch.flat(circle(shoulder.x() - 5, shoulder.y() + 3, 11), look.clothesColour);
}

} // namespace kovalin::drawing
