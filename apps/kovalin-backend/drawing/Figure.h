#pragma once

#include "kovalin-backend/drawing/AvatarLook.h"
#include "kovalin-backend/drawing/Expression.h"
#include "kovalin-backend/drawing/Gesture.h"
#include "kovalin-backend/drawing/Props.h"
#include "kovalin-backend/drawing/Sketch.h"

namespace kovalin::drawing {

/// Somebody who does something. Pointers may be null where something is left out; an expression is always there.
struct Figure {
    AvatarLook look;
    Expression expression;
    const Gesture* gesture = nullptr; // null: arms at rest
    Legs legs = Legs::Hidden;
    const Prop* prop = nullptr;
};

/// The figure around the middle of its head: a bust reaches 160 units below it, a figure with legs about 225.
void drawFigure(Sketch& sketch, const Figure& figure);

} // namespace kovalin::drawing
