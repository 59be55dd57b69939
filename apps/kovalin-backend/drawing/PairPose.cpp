#include "kovalin-backend/drawing/PairPose.h"

#include "kovalin-backend/drawing/Named.h"

#include <array>

namespace kovalin::drawing {

namespace {

constexpr bool outward = true; // for the left one: its right arm is away from the other figure

constexpr std::array<PairPose, 17> poses{{
    {"side", {-70, 0, -2, outward}, {70, 0, 2, !outward}},
    {"apart", {-116, 0, 0, outward}, {116, 0, 0, !outward}},
    {"close", {-60, 0, 6, outward}, {60, 0, -6, !outward}},
    {"inward", {-80, 0, 0, !outward}, {80, 0, 0, outward}},
    {"hug", {-66, 4, 9, !outward, "hug"}, {66, 0, -9, outward, "hug"}},
    {"arm-in-arm", {-64, 0, 4, !outward, "around"}, {64, 0, -4, outward, "around"}},
    {"high-five", {-96, 0, -5, !outward, "five"}, {96, 0, 5, outward, "five"}},
    {"fist-bump", {-98, 0, 2, !outward, "bump"}, {98, 0, -2, outward, "bump"}},
    {"face-to-face", {-74, 0, 10, !outward}, {74, 0, -10, outward}},
    {"back-to-back", {-62, 0, -5, outward, "arms-crossed"}, {62, 0, 5, !outward, "arms-crossed"}},
    {"heart-arms", {-86, 0, 0, !outward, "heart-arm"}, {86, 0, 0, outward, "heart-arm"}},
    {"hand-in-hand", {-84, 0, 0, !outward, "hand-in-hand"}, {84, 0, 0, outward, "hand-in-hand"}},
    {"toast", {-100, 0, 3, !outward, "raise"}, {100, 0, -3, outward, "raise"}},
    {"give", {-92, 0, 2, !outward, "give"}, {92, 0, 0, outward, "reach"}},
    {"whisper", {-68, 8, 8, !outward, "whisper"}, {68, 0, -2, !outward}, true},
    {"peek", {-48, 18, -4, outward}, {62, -26, 12, !outward}, true},
    {"tower", {0, 44, 0, !outward}, {0, -78, 0, !outward}, true},
}};

} // namespace

const PairPose* pairPoseNamed(std::string_view name)
{
    return findNamed(poses, name);
}

} // namespace kovalin::drawing
