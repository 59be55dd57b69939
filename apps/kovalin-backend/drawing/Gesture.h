#pragma once

#include "kovalin-backend/drawing/Hands.h"

#include <QtCore/QPointF>

#include <cstdint>
#include <string_view>

namespace kovalin::drawing {

/// Where an arm goes from the shoulder, on the picture's right; the other one's arm is the mirror image.
struct Arm {
    QPointF elbow; // around the middle of the head
    QPointF wrist;
    Hand hand = Hand::None;
    qreal angle = 0; // of the fingers, degrees clockwise from up
};

struct Gesture {
    std::string_view name;
    Arm right; // the picture's right
    Arm left;
};

/// How much of a figure is seen, and what its legs do.
enum class Legs : std::uint8_t { Hidden, Stand, Jump, Dance, Run, Sit };

struct Stance {
    std::string_view name;
    Legs legs = Legs::Hidden;
};

/// Null when there is none of that name. What is found lives as long as the program; any thread.
[[nodiscard]] const Gesture* gestureNamed(std::string_view name);
[[nodiscard]] const Stance* stanceNamed(std::string_view name);

} // namespace kovalin::drawing
