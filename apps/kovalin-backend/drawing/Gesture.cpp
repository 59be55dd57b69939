#include "kovalin-backend/drawing/Gesture.h"

#include "kovalin-backend/drawing/Named.h"

#include <array>

namespace kovalin::drawing {

namespace {

constexpr Arm down{{66, 124}, {58, 150}, Hand::None, 180};
constexpr Arm onHip{{98, 120}, {56, 146}, Hand::None, -90};
constexpr Arm lap{{66, 138}, {30, 140}, Hand::None, -60};

const std::array<Gesture, 57> gestures{{
    {"rest", down, down},
    {"wave", {{98, 96}, {98, 46}, Hand::Open, 14}, down},
    {"wave-both", {{100, 92}, {98, 40}, Hand::Open, 14}, {{100, 92}, {98, 40}, Hand::Open, 14}},
    {"thumbs-up", {{88, 134}, {82, 96}, Hand::ThumbUp, 0}, down},
    {"thumbs-up-both", {{88, 134}, {82, 96}, Hand::ThumbUp, 0}, {{88, 134}, {82, 96}, Hand::ThumbUp, 0}},
    {"thumbs-down", {{88, 124}, {84, 96}, Hand::ThumbDown, 0}, onHip},
    {"point-up", {{96, 106}, {84, 52}, Hand::Point, 4}, onHip},
    {"point-you", {{84, 138}, {66, 118}, Hand::PointAtYou, -20}, onHip},
    {"point-you-both", {{88, 132}, {74, 104}, Hand::PointAtYou, -10}, {{88, 132}, {74, 104}, Hand::PointAtYou, -10}},
    {"point-side", {{86, 116}, {104, 92}, Hand::Point, 72}, onHip},
    {"peace", {{96, 110}, {88, 62}, Hand::Peace, 6}, down},
    {"peace-both", {{98, 104}, {90, 56}, Hand::Peace, 8}, {{98, 104}, {90, 56}, Hand::Peace, 8}},
    {"ok", {{92, 116}, {84, 74}, Hand::Ok, 6}, down},
    {"horns", {{100, 88}, {94, 38}, Hand::Horns, 8}, {{100, 88}, {94, 38}, Hand::Horns, 8}},
    {"cheer", {{104, 72}, {90, 16}, Hand::Fist, -6}, {{104, 72}, {90, 16}, Hand::Fist, -6}},
    {"fist-up", {{104, 76}, {88, 18}, Hand::Fist, -6}, onHip},
    {"heart-hands", {{86, 134}, {0, 118}, Hand::HeartHalf, 0}, {{86, 134}, {0, 118}, Hand::HeartHalf, 0}},
    {"heart-overhead", {{134, 8}, {38, -84}, Hand::Flat, -46}, {{134, 8}, {38, -84}, Hand::Flat, -46}},
    {"facepalm", {{94, 112}, {34, 34}, Hand::Flat, -32}, down},
    {"shrug", {{78, 138}, {100, 108}, Hand::Open, 62}, {{78, 138}, {100, 108}, Hand::Open, 62}},
    {"pray", {{74, 140}, {9, 122}, Hand::Flat, -4}, {{74, 140}, {9, 122}, Hand::Flat, -4}},
    {"clap", {{78, 134}, {26, 116}, Hand::Flat, -18}, {{78, 134}, {26, 116}, Hand::Flat, -18}},
    {"cheeks", {{88, 108}, {58, 58}, Hand::Flat, -18}, {{88, 108}, {58, 58}, Hand::Flat, -18}},
    {"cover-mouth", {{82, 122}, {34, 62}, Hand::Flat, -62}, down},
    {"cover-eyes", {{92, 104}, {38, 34}, Hand::Flat, -28}, {{92, 104}, {38, 34}, Hand::Flat, -28}},
    {"think", {{76, 140}, {40, 84}, Hand::Fist, -34}, {{66, 140}, {-16, 138}, Hand::None, -90}},
    {"shush", {{78, 134}, {26, 84}, Hand::Point, -18}, down},
    {"flex", {{112, 92}, {94, 52}, Hand::Fist, -36}, {{112, 92}, {94, 52}, Hand::Fist, -36}},
    {"stop", {{88, 132}, {74, 104}, Hand::Open, 4}, onHip},
    {"stop-both", {{88, 132}, {78, 98}, Hand::Open, 6}, {{88, 132}, {78, 98}, Hand::Open, 6}},
    {"crossed-fingers", {{94, 108}, {86, 68}, Hand::Crossed, 4}, {{94, 108}, {86, 68}, Hand::Crossed, 4}},
    {"arms-crossed", {{76, 134}, {-14, 124}, Hand::Flat, -84}, {{76, 136}, {-14, 132}, Hand::None, -84}},
    {"salute", {{108, 72}, {70, 0}, Hand::Flat, -56}, down},
    {"hug-self", {{70, 134}, {-24, 126}, Hand::Flat, -62}, {{70, 134}, {-24, 126}, Hand::Flat, -62}},
    {"dance", {{104, 76}, {96, 26}, Hand::Point, 10}, {{100, 118}, {110, 96}, Hand::Flat, 80}},
    {"disco", {{104, 70}, {100, 18}, Hand::Point, 24}, onHip},
    {"dab", {{112, 74}, {132, 44}, Hand::Flat, 42}, {{92, 70}, {4, 28}, Hand::Flat, -84}},
    {"hold", {{86, 136}, {82, 112}, Hand::Grip, 4}, down},
    {"hold-both", {{84, 132}, {60, 144}, Hand::Grip, -34}, {{84, 132}, {60, 144}, Hand::Grip, -34}},
    {"raise", {{102, 84}, {92, 34}, Hand::Grip, 8}, down},
    {"hold-up", {{108, 60}, {66, -48}, Hand::Grip, -6}, {{108, 60}, {66, -48}, Hand::Grip, -6}},
    {"lap", lap, lap},
    {"hips", onHip, onHip},
    {"call", {{98, 106}, {74, 50}, Hand::Call, -22}, down},
    {"blow-kiss", {{82, 122}, {46, 66}, Hand::Flat, 52}, down},
    {"tada", {{100, 104}, {124, 74}, Hand::Open, 44}, {{100, 104}, {124, 74}, Hand::Open, 44}},
    {"run", {{92, 126}, {104, 102}, Hand::Fist, 20}, {{88, 140}, {52, 142}, Hand::Fist, -70}},
    {"zen", {{94, 130}, {104, 100}, Hand::Ok, 24}, {{94, 130}, {104, 100}, Hand::Ok, 24}},
    {"reach", {{84, 132}, {62, 112}, Hand::Open, 16}, {{84, 132}, {62, 112}, Hand::Open, 16}},
    // For two: the right arm is the one towards the other figure.
    {"five", {{96, 92}, {88, 36}, Hand::Open, 16}, onHip},
    {"bump", {{76, 138}, {84, 116}, Hand::Fist, 62}, onHip},
    {"around", {{84, 112}, {122, 98}, Hand::Flat, 92}, down},
    {"hug", {{88, 128}, {120, 114}, Hand::Flat, 84}, {{70, 140}, {-34, 132}, Hand::Flat, -70}},
    {"heart-arm", {{122, 10}, {84, -46}, Hand::Flat, 16}, onHip},
    {"hand-in-hand", {{72, 142}, {86, 140}, Hand::Fist, 110}, down},
    {"give", {{82, 136}, {92, 116}, Hand::Grip, 20}, down},
    {"whisper", {{92, 104}, {66, 58}, Hand::Flat, 30}, down},
}};

constexpr std::array<Stance, 6> stances{{
    {"bust", Legs::Hidden},
    {"stand", Legs::Stand},
    {"jump", Legs::Jump},
    {"dance", Legs::Dance},
    {"run", Legs::Run},
    {"sit", Legs::Sit},
}};

} // namespace

const Gesture* gestureNamed(std::string_view name)
{
    return findNamed(gestures, name);
}

const Stance* stanceNamed(std::string_view name)
{
    return findNamed(stances, name);
}

} // namespace kovalin::drawing
