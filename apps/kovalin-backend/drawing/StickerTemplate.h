#pragma once

#include "kovalin-backend/drawing/Expression.h"
#include "kovalin-backend/drawing/Gesture.h"
#include "kovalin-backend/drawing/Lettering.h"
#include "kovalin-backend/drawing/Motifs.h"
#include "kovalin-backend/drawing/PairPose.h"
#include "kovalin-backend/drawing/Palette.h"
#include "kovalin-backend/drawing/Props.h"

#include <QtCore/QString>

#include <optional>
#include <vector>

namespace kovalin::drawing {

/// What one figure of a template does. What may be left out is null then.
struct Role {
    Expression expression;
    const Gesture* gesture = nullptr;
    const Prop* prop = nullptr;
    Legs legs = Legs::Hidden;
};

/// What makes a template one for two.
struct PairPart {
    const PairPose* pose = nullptr; // never null in a template that was read
    Role friendRole;
    const Prop* shared = nullptr; // between the two
};

/// What a sticker shows, whoever is on it.
struct StickerTemplate {
    QString id;
    Role role;
    std::vector<const Motif*> motifs; // back to front
    const Palette* palette = nullptr; // never null in a template that was read
    QString caption;                  // may be empty
    Lettering lettering = Lettering::Straight;
    bool isCaptionOnTop = false;
    std::optional<PairPart> pair;
};

} // namespace kovalin::drawing
