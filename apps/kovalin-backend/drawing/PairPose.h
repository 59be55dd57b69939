#pragma once

#include <QtCore/QtGlobal>

#include <string_view>

namespace kovalin::drawing {

/// How one of two figures stands.
struct PairPlace {
    qreal x; // of the middle of its head
    qreal y;
    qreal lean;      // degrees clockwise
    bool isMirrored; // its right arm is then on the picture's left
    std::string_view gesture = {};
};

/// How two figures stand to each other; the one that the sticker is drawn for stands on the left.
struct PairPose {
    std::string_view name;
    PairPlace left;
    PairPlace right;
    bool isLeftInFront = false;
};

/// Null when there is none of that name. The pose lives as long as the program; any thread.
[[nodiscard]] const PairPose* pairPoseNamed(std::string_view name);

} // namespace kovalin::drawing
