#pragma once

#include "kovalin-backend/drawing/AvatarLook.h"
#include "kovalin-backend/drawing/Expression.h"
#include "kovalin-backend/drawing/Sketch.h"

/// What lies on a head. All of it is drawn around the middle of the head, which is about 114 units wide and 124 high.
namespace kovalin::drawing {

void drawEyes(Sketch& sketch, const AvatarLook& look, Eyes eyes);
void drawMouth(Sketch& sketch, const AvatarLook& look, Mouth mouth);
void drawBrows(Sketch& sketch, const AvatarLook& look, BrowPose pose);
void drawNose(Sketch& sketch, const AvatarLook& look);
/// Freckles, a mole and the shadow of a beard: what belongs to the skin.
void drawSkinMarks(Sketch& sketch, const AvatarLook& look);
void drawBeard(Sketch& sketch, const AvatarLook& look);
void drawGlasses(Sketch& sketch, const AvatarLook& look);
/// Blush, pallor and gloom: what feelings do to the skin. `face` is the head's outline.
void drawComplexion(Sketch& sketch, Feeling feelings, const QPainterPath& face);
/// Tears, sweat, steam and what else stands on or beside the face.
void drawFeelings(Sketch& sketch, const AvatarLook& look, Feeling feelings);

} // namespace kovalin::drawing
