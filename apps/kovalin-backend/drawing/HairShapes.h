#pragma once

#include "kovalin-backend/drawing/AvatarLook.h"
#include "kovalin-backend/drawing/Sketch.h"

/// Hair in two layers, around the middle of the head.
namespace kovalin::drawing {

/// What lies behind head and body.
void drawHairBack(Sketch& sketch, const AvatarLook& look);
/// What lies on the head.
void drawHairFront(Sketch& sketch, const AvatarLook& look);

} // namespace kovalin::drawing
