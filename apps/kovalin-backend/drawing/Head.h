#pragma once

#include "kovalin-backend/drawing/AvatarLook.h"
#include "kovalin-backend/drawing/Expression.h"
#include "kovalin-backend/drawing/Sketch.h"

namespace kovalin::drawing {

/// The head with face and hair, around its middle; without the hair behind it.
void drawHead(Sketch& sketch, const AvatarLook& look, const Expression& expression);

} // namespace kovalin::drawing
