#include "kovalin-backend/drawing/AvatarLook.h"

#include "kovalin-backend/drawing/StableHash.h"

#include <array>

namespace kovalin::drawing {

namespace {

struct Skin {
    QColor base;
    QColor shade;
};

constexpr std::array<Skin, 9> skins{{
    {{0xFF, 0xE2, 0xD2}, {0xF5, 0xB8, 0xA0}},
    {{0xFD, 0xD3, 0xB2}, {0xEC, 0xA8, 0x82}},
    {{0xF6, 0xC6, 0x9C}, {0xE0, 0x9C, 0x6E}},
    {{0xE8, 0xB0, 0x80}, {0xCC, 0x87, 0x54}},
    {{0xD2, 0x94, 0x62}, {0xB0, 0x6E, 0x40}},
    {{0xB5, 0x79, 0x4D}, {0x92, 0x58, 0x33}},
    {{0x96, 0x60, 0x3D}, {0x74, 0x44, 0x28}},
    {{0x7B, 0x4B, 0x31}, {0x5C, 0x33, 0x20}},
    {{0x66, 0x3E, 0x2C}, {0x49, 0x28, 0x1C}},
}};

constexpr std::array<QColor, 12> hairColours{{
    {0x33, 0x29, 0x35}, // nearly black, lighter than ink so that strands show
    {0x4B, 0x32, 0x2B},
    {0x6B, 0x42, 0x2C},
    {0x8F, 0x57, 0x33},
    {0xA8, 0x41, 0x2C},
    {0xE0, 0x77, 0x36},
    {0xD9, 0xA0, 0x4E},
    {0xF6, 0xD2, 0x7A},
    {0xB9, 0xB8, 0xC6},
    {0xF2, 0x7F, 0xA5},
    {0x5B, 0x8C, 0xEB},
    {0x3F, 0xB5, 0xA3},
}};
constexpr std::size_t naturalHairColours = 9; // the first ones

constexpr std::array<QColor, 6> irises{{
    {0x5A, 0x36, 0x28},
    {0x86, 0x54, 0x2D},
    {0x3F, 0x7D, 0x4F},
    {0x3B, 0x78, 0xC9},
    {0x5F, 0x6B, 0x86},
    {0x2E, 0x8F, 0x96},
}};

struct Cloth {
    QColor base;
    QColor accent;
};

constexpr std::array<Cloth, 12> cloths{{
    {{0xF2, 0x4B, 0x5B}, {0xFF, 0xF1, 0xD0}},
    {{0x3E, 0x6F, 0xE8}, {0xFF, 0xFF, 0xFF}},
    {{0xFF, 0xC2, 0x2E}, {0x3E, 0x6F, 0xE8}},
    {{0x2F, 0xA8, 0x74}, {0xFF, 0xF1, 0xD0}},
    {{0x8A, 0x66, 0xF2}, {0xFF, 0xCB, 0x3D}},
    {{0xFF, 0x8F, 0xAB}, {0xFF, 0xFF, 0xFF}},
    {{0x2B, 0xB9, 0xB4}, {0xFF, 0x7A, 0x5C}},
    {{0xFF, 0x8A, 0x4A}, {0xFF, 0xF1, 0xD0}},
    {{0xF4, 0xF1, 0xEA}, {0xF2, 0x4B, 0x5B}},
    {{0x4A, 0x4F, 0x6A}, {0x53, 0xB9, 0xFF}},
    {{0x9C, 0xD0, 0xF5}, {0x2C, 0x36, 0x7A}},
    {{0xA4, 0x3E, 0x6B}, {0xFF, 0xCB, 0x3D}},
}};

constexpr std::array<QColor, 6> extraColours{{
    {0x2A, 0x1F, 0x3D},
    {0xF2, 0x4B, 0x5B},
    {0x8A, 0x52, 0x34},
    {0x3E, 0x6F, 0xE8},
    {0xFF, 0xCB, 0x3D},
    {0x2B, 0xB9, 0xB4},
}};

template <typename List>
const auto& pick(const List& list, const StableHash& hash, const char* choice)
{
    return list[hash.below(list.size(), choice)];
}

template <typename Kind>
Kind pickKind(Kind last, const StableHash& hash, const char* choice)
{
    return static_cast<Kind>(hash.below(static_cast<std::size_t>(last) + 1, choice));
}

/// One of the kinds behind None, or, mostly, None.
template <typename Kind>
Kind pickRare(Kind last, double share, const StableHash& hash, const char* whether, const char* which)
{
    return hash.fraction(whether) < share ? static_cast<Kind>(1 + hash.below(static_cast<std::size_t>(last), which))
                                          : Kind::None;
}

bool hasRoomForBeanie(Hair hair)
{
    return hair <= Hair::Bald || hair == Hair::Bob || hair == Hair::LongStraight || hair == Hair::LongWaves ||
           hair == Hair::Braids || hair == Hair::Locs || hair == Hair::Receding;
}

/// A beard grows with hair that anybody may have; long lashes and a beard would look like two people.
Beard beardFor(const AvatarLook& look, const StableHash& hash)
{
    const bool mayGrow = (look.hair <= Hair::Mohawk || look.hair == Hair::Locs || look.hair == Hair::TopBun ||
                          look.hair == Hair::Afro) &&
                         !look.hasLashes;
    return mayGrow ? pickRare(Beard::Full, 0.55, hash, "beard", "kind of beard") : Beard::None;
}

Extra extraFor(const AvatarLook& look, const StableHash& hash)
{
    const Extra extra = pickRare(Extra::Beanie, 0.45, hash, "extra", "kind of extra");
    if (look.hair == Hair::Scarf) {
        return Extra::None;
    }
    if (extra == Extra::Beanie && !hasRoomForBeanie(look.hair)) {
        return Extra::Headband;
    }
    const bool isBare = look.hair == Hair::Bald || look.hair == Hair::Buzz || look.hair == Hair::Receding;
    return isBare && (extra == Extra::Bow || extra == Extra::Flower) ? Extra::Earrings : extra;
}

} // namespace

AvatarLook AvatarLook::of(const QString& avatarId)
{
    const StableHash hash(avatarId);
    AvatarLook look;
    const Skin& skin = pick(skins, hash, "skin");
    look.skin = skin.base;
    look.skinShade = skin.shade;
    look.hair = pickKind(Hair::Scarf, hash, "hair");
    const bool isDyed = hash.fraction("dyed hair") < 0.18;
    look.hairColour = isDyed
                          ? hairColours[naturalHairColours + hash.below(hairColours.size() - naturalHairColours, "dye")]
                          : hairColours[hash.below(naturalHairColours, "hair colour")];
    look.iris = pick(irises, hash, "iris");
    const Cloth& cloth = pick(cloths, hash, "cloth");
    look.clothesColour = cloth.base;
    look.clothesAccent = cloth.accent;
    look.extraColour = pick(extraColours, hash, "extra colour");
    look.face = pickKind(FaceShape::Heart, hash, "face");
    look.nose = pickKind(Nose::Long, hash, "nose");
    look.brows = pickKind(Brows::Arched, hash, "brows");
    look.clothes = pickKind(Clothes::Dungarees, hash, "clothes");
    look.hasLashes = look.hair > Hair::Mohawk ? hash.fraction("lashes") < 0.65 : hash.fraction("lashes") < 0.12;
    look.hasFreckles = hash.fraction("freckles") < 0.22;
    look.hasMole = hash.fraction("mole") < 0.1;
    look.eyeSpacing = 4 * hash.fraction("eye spacing") - 2;
    look.eyeSize = 0.92 + 0.16 * hash.fraction("eye size");
    look.glasses = pickRare(Glasses::HalfRim, 0.3, hash, "glasses", "kind of glasses");
    look.beard = beardFor(look, hash);
    look.extra = extraFor(look, hash);
    return look;
}

} // namespace kovalin::drawing
