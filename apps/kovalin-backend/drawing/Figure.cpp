#include "kovalin-backend/drawing/Figure.h"

#include "kovalin-backend/drawing/Body.h"
#include "kovalin-backend/drawing/HairShapes.h"
#include "kovalin-backend/drawing/Hands.h"
#include "kovalin-backend/drawing/Head.h"

namespace kovalin::drawing {

namespace {

constexpr qreal neckHeight = 56; // what the head nods around, below its middle
constexpr qreal handScale = 1.2;

QTransform headTilt(qreal degrees)
{
    return QTransform().translate(0, neckHeight).rotate(degrees).translate(0, -neckHeight);
}

void drawHeld(Sketch& sketch, const Prop* prop, Prop::Place place, const QTransform& transform = {})
{
    if (prop && prop->place == place) {
        const Sketch::Placed placed(sketch, transform);
        prop->draw(sketch);
    }
}

void drawArmWithHand(Sketch& sketch, const Figure& figure, const Arm& arm, const Prop* held)
{
    drawArm(sketch, figure.look, arm);
    const Sketch::Placed placed(sketch, at(arm.wrist.x(), arm.wrist.y(), arm.angle, handScale));
    // What is held stands upright behind the fingers, whatever the hand's turn.
    drawHeld(sketch, held, Prop::Place::InHand, at(0, -11, -arm.angle, 1 / handScale));
    drawHand(sketch, arm.hand, figure.look.skin);
}

/// With legs to be seen, arms at rest end in hands.
Arm completed(Arm arm, Legs legs)
{
    if (arm.hand == Hand::None && legs != Legs::Hidden) {
        arm.hand = Hand::Fist;
    }
    return arm;
}

} // namespace

void drawFigure(Sketch& sketch, const Figure& figure)
{
    static const Gesture* const rest = gestureNamed("rest");
    const Gesture& gesture = figure.gesture ? *figure.gesture : *rest;
    const QTransform tilt = headTilt(figure.expression.tilt);
    {
        const Sketch::Placed head(sketch, tilt);
        drawHairBack(sketch, figure.look);
    }
    drawHeld(sketch, figure.prop, Prop::Place::Behind);
    drawLegs(sketch, figure.look, figure.legs);
    drawTorso(sketch, figure.look, figure.legs);
    {
        const Sketch::Placed head(sketch, tilt);
        drawHead(sketch, figure.look, figure.expression);
        drawHeld(sketch, figure.prop, Prop::Place::OnHead);
    }
    const auto drawLeftArm = [&] {
        const Sketch::Placed left(sketch, mirrored());
        drawArmWithHand(sketch, figure, completed(gesture.left, figure.legs), nullptr);
    };
    const bool isInFront = figure.prop && figure.prop->place == Prop::Place::InFront;
    if (isInFront && figure.prop->coversHands) {
        drawLeftArm();
        drawArmWithHand(sketch, figure, completed(gesture.right, figure.legs), nullptr);
        drawHeld(sketch, figure.prop, Prop::Place::InFront);
    } else {
        drawHeld(sketch, figure.prop, Prop::Place::InFront);
        drawLeftArm();
        drawArmWithHand(sketch, figure, completed(gesture.right, figure.legs), figure.prop);
    }
    drawHeld(sketch, figure.prop, Prop::Place::Above);
    drawHeld(sketch, figure.prop, Prop::Place::Beside);
}

} // namespace kovalin::drawing
