#pragma once

#include <QtCore/QtGlobal>

#include <cstdint>
#include <string_view>

namespace kovalin::drawing {

enum class Eyes : std::uint8_t {
    Open,
    Wide,
    Happy,
    Closed,
    Wink,
    Half,
    Side,
    Up,
    Down,
    Hearts,
    Stars,
    Watery,
    Squeezed,
    Dizzy,
    Narrow,
    Shiny,
};

enum class Mouth : std::uint8_t {
    Smile,
    Grin,
    Laugh,
    Open,
    Round,
    Shout,
    Frown,
    Wobble,
    Smirk,
    Tongue,
    Kiss,
    Flat,
    Grit,
    Pout,
    Cat,
    Gasp,
    Yawn,
    Chew,
    Slant,
};

/// How the brows lie: the inner ends' height against the outer ones'.
enum class BrowPose : std::uint8_t { Calm, Raised, Worried, Angry, OneUp };

/// What feelings add to a face; flags.
enum class Feeling : std::uint16_t {
    None = 0,
    Blush = 1 << 0,
    Tear = 1 << 1,
    Streams = 1 << 2,
    Sweat = 1 << 3,
    Vein = 1 << 4,
    Steam = 1 << 5,
    Sleep = 1 << 6,
    Sick = 1 << 7,
    Cold = 1 << 8,
    Gloom = 1 << 9,
};

[[nodiscard]] constexpr Feeling operator|(Feeling one, Feeling other)
{
    return static_cast<Feeling>(static_cast<unsigned>(one) | static_cast<unsigned>(other));
}
[[nodiscard]] constexpr bool has(Feeling all, Feeling one)
{
    return (static_cast<unsigned>(all) & static_cast<unsigned>(one)) != 0;
}

struct Expression {
    std::string_view name;
    Eyes eyes = Eyes::Open;
    Mouth mouth = Mouth::Smile;
    BrowPose brows = BrowPose::Calm;
    Feeling feelings = Feeling::None;
    qreal tilt = 0; // of the head, degrees clockwise
};

/// Null when there is none of that name. The expression lives as long as the program; any thread.
[[nodiscard]] const Expression* expressionNamed(std::string_view name);

} // namespace kovalin::drawing
