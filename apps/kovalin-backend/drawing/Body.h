#pragma once

#include "kovalin-backend/drawing/AvatarLook.h"
#include "kovalin-backend/drawing/Gesture.h"
#include "kovalin-backend/drawing/Sketch.h"

/// The body below a head, around the middle of the head.
namespace kovalin::drawing {

void drawLegs(Sketch& sketch, const AvatarLook& look, Legs legs);
/// Neck, torso and clothes.
void drawTorso(Sketch& sketch, const AvatarLook& look, Legs legs);
/// The arm on the picture's right, without its hand.
void drawArm(Sketch& sketch, const AvatarLook& look, const Arm& arm);

} // namespace kovalin::drawing
