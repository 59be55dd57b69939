#pragma once

#include <QtCore/QString>
#include <QtGui/QColor>

#include <cstdint>

namespace kovalin::drawing {

enum class FaceShape : std::uint8_t { Round, Oval, Square, Heart };

enum class Hair : std::uint8_t {
    Crop,
    SidePart,
    Quiff,
    Spikes,
    Curls,
    Buzz,
    Bald,
    Receding,
    Mohawk,
    Bob,
    Pixie,
    LongStraight,
    LongWaves,
    Afro,
    TopBun,
    SpaceBuns,
    Ponytail,
    Pigtails,
    Braids,
    Locs,
    SideSwept,
    Scarf,
};

enum class Nose : std::uint8_t { Button, Hook, Soft, Wide, Long };
enum class Brows : std::uint8_t { Thin, Straight, Thick, Arched };
enum class Glasses : std::uint8_t { None, Round, Square, CatEye, HalfRim };
enum class Beard : std::uint8_t { None, Stubble, Moustache, Goatee, Full };
enum class Clothes : std::uint8_t { Tee, Hoodie, Stripes, Collar, Turtleneck, Dungarees };
enum class Extra : std::uint8_t { None, Earrings, Bow, Headband, Flower, Beanie };

/// What an avatar looks like, whatever it does.
///
/// A value; any thread.
struct AvatarLook {
    QColor skin;
    QColor skinShade; // nose, ears, what lies in shadow
    QColor hairColour;
    QColor iris;
    QColor clothesColour;
    QColor clothesAccent;
    QColor extraColour; // of glasses and of the extra
    FaceShape face = FaceShape::Round;
    Hair hair = Hair::Crop;
    Nose nose = Nose::Button;
    Brows brows = Brows::Straight;
    Glasses glasses = Glasses::None;
    Beard beard = Beard::None;
    Clothes clothes = Clothes::Tee;
    Extra extra = Extra::None;
    bool hasLashes = false;
    bool hasFreckles = false;
    bool hasMole = false;
    qreal eyeSpacing = 0; // units of the head, added to the usual distance
    qreal eyeSize = 1;

    /// The look that the avatar id stands for: the same on every machine. Any text has one, the empty one too.
    [[nodiscard]] static AvatarLook of(const QString& avatarId);
};

} // namespace kovalin::drawing
