#include "kovalin-backend/drawing/Expression.h"

#include "kovalin-backend/drawing/Named.h"

#include <array>

namespace kovalin::drawing {

namespace {

using E = Eyes;
using M = Mouth;
using B = BrowPose;
using F = Feeling;

constexpr std::array<Expression, 50> expressions{{
    {"calm", E::Open, M::Smile, B::Calm, F::None},
    {"cheerful", E::Open, M::Laugh, B::Raised, F::Blush, -4},
    {"happy", E::Happy, M::Smile, B::Raised, F::Blush},
    {"joy", E::Happy, M::Laugh, B::Raised, F::Blush, 4},
    {"grin", E::Open, M::Grin, B::Calm, F::None},
    {"proud", E::Closed, M::Grin, B::Raised, F::None, -6},
    {"laughing", E::Squeezed, M::Laugh, B::Raised, F::Tear, 8},
    {"wink", E::Wink, M::Smile, B::OneUp, F::Blush, 5},
    {"cheeky", E::Wink, M::Tongue, B::OneUp, F::None, -6},
    {"silly", E::Dizzy, M::Tongue, B::Raised, F::None, 8},
    {"smirk", E::Half, M::Smirk, B::OneUp, F::None, 4},
    {"cool", E::Half, M::Smirk, B::Calm, F::None},
    {"inlove", E::Hearts, M::Laugh, B::Raised, F::Blush},
    {"adoring", E::Shiny, M::Smile, B::Worried, F::Blush, 6},
    {"starstruck", E::Stars, M::Laugh, B::Raised, F::Blush},
    {"kissing", E::Closed, M::Kiss, B::Raised, F::Blush, 6},
    {"winkkiss", E::Wink, M::Kiss, B::OneUp, F::Blush, -5},
    {"shy", E::Down, M::Wobble, B::Worried, F::Blush, 7},
    {"blissful", E::Closed, M::Smile, B::Raised, F::Blush, 5},
    {"touched", E::Watery, M::Smile, B::Worried, F::Blush, 4},
    {"surprised", E::Wide, M::Round, B::Raised, F::None},
    {"amazed", E::Wide, M::Gasp, B::Raised, F::None},
    {"shocked", E::Wide, M::Shout, B::Raised, F::Sweat},
    {"scared", E::Wide, M::Wobble, B::Worried, F::Sweat | F::Cold},
    {"worried", E::Side, M::Wobble, B::Worried, F::Sweat},
    {"nervous", E::Open, M::Grit, B::Worried, F::Sweat, -4},
    {"awkward", E::Side, M::Grit, B::Worried, F::Sweat | F::Blush},
    {"sad", E::Down, M::Frown, B::Worried, F::Tear, 4},
    {"upset", E::Watery, M::Frown, B::Worried, F::None},
    {"crying", E::Closed, M::Shout, B::Worried, F::Streams},
    {"sobbing", E::Squeezed, M::Wobble, B::Worried, F::Streams},
    {"pleading", E::Watery, M::Pout, B::Worried, F::Blush, 5},
    {"gloomy", E::Half, M::Frown, B::Worried, F::Gloom},
    {"angry", E::Narrow, M::Frown, B::Angry, F::Vein},
    {"furious", E::Narrow, M::Shout, B::Angry, F::Steam | F::Vein},
    {"grumpy", E::Half, M::Pout, B::Angry, F::None, -5},
    {"annoyed", E::Half, M::Flat, B::OneUp, F::Vein},
    {"frustrated", E::Squeezed, M::Grit, B::Angry, F::Vein},
    {"unimpressed", E::Half, M::Flat, B::Calm, F::None},
    {"eyeroll", E::Up, M::Slant, B::OneUp, F::None, -4},
    {"suspicious", E::Narrow, M::Slant, B::OneUp, F::None, 5},
    {"puzzled", E::Side, M::Slant, B::OneUp, F::None, 8},
    {"thinking", E::Up, M::Flat, B::OneUp, F::None, 5},
    {"tired", E::Half, M::Wobble, B::Worried, F::None, 6},
    {"yawning", E::Squeezed, M::Yawn, B::Worried, F::Tear},
    {"sleeping", E::Closed, M::Open, B::Calm, F::Sleep, 8},
    {"sick", E::Half, M::Wobble, B::Worried, F::Sick | F::Sweat},
    {"dizzy", E::Dizzy, M::Wobble, B::Worried, F::Sweat, 6},
    {"yummy", E::Happy, M::Tongue, B::Raised, F::Blush, 4},
    {"determined", E::Narrow, M::Grin, B::Angry, F::None},
}};

} // namespace

const Expression* expressionNamed(std::string_view name)
{
    return findNamed(expressions, name);
}

} // namespace kovalin::drawing
