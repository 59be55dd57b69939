#pragma once

#include "kovalin-backend/drawing/Sketch.h"

#include <cstdint>

namespace kovalin::drawing {

enum class Hand : std::uint8_t {
    None, // the arm ends round, out of sight
    Open,
    Fist,
    Grip, // a fist around something
    ThumbUp,
    ThumbDown,
    Point,
    PointAtYou,
    Peace,
    Ok,
    Horns,
    Flat,
    Call,
    Crossed,
    HeartHalf,
};

/// The hand on the picture's right, its wrist at the origin, its fingers up.
void drawHand(Sketch& sketch, Hand hand, const QColor& skin);

} // namespace kovalin::drawing
