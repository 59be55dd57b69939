#include "kovalin-backend/drawing/StickerDrawing.h"

#include "kovalin-backend/drawing/Figure.h"
#include "kovalin-backend/drawing/Lettering.h"
#include "kovalin-backend/drawing/Paper.h"
#include "kovalin-backend/drawing/PngFile.h"
#include "kovalin-backend/drawing/Shapes.h"
#include "kovalin-backend/drawing/Sketch.h"
#include "kovalin-backend/drawing/StableHash.h"

namespace kovalin::drawing {

namespace {

// Lengths in units of the usual picture, 320 by 320.
constexpr qreal borderless = 2;                         // stays transparent at each border
constexpr qreal inset = paperMargin + borderless + 0.5; // of what is drawn
constexpr qreal drawable = usualSize - 2 * inset;       // width and height of what is drawn
constexpr qreal captionHeight = 78;                     // at most
constexpr qreal tallestLetter = 50;
constexpr qreal largestScale = 1.2;
constexpr qreal figureMiddle = 38; // of a bust with its head, below the middle of the head

/// What grows high lies flat under a hat, and nobody wears two.
AvatarLook underHat(AvatarLook look)
{
    if (look.hair == Hair::Quiff || look.hair == Hair::Spikes || look.hair == Hair::Mohawk) {
        look.hair = Hair::Crop;
    }
    if (look.hair == Hair::TopBun || look.hair == Hair::SpaceBuns) {
        look.hair = Hair::Ponytail;
    }
    if (look.extra == Extra::Beanie || look.extra == Extra::Headband) {
        look.extra = Extra::None;
    }
    return look;
}

Figure figureOf(const Role& role, const QString& avatarId)
{
    const AvatarLook look = AvatarLook::of(avatarId);
    return {role.prop && role.prop->isHat ? underHat(look) : look, role.expression, role.gesture, role.legs, role.prop};
}

qreal middleOf(Legs legs)
{
    constexpr qreal withLegs = 70;
    return legs == Legs::Hidden ? figureMiddle : withLegs;
}

void drawMotifs(Sketch& sketch, const StickerTemplate& sticker, qreal x, qreal y, qreal scale)
{
    const Sketch::Placed placed(sketch, at(x, y, 0, scale));
    for (const Motif* motif : sticker.motifs) {
        motif->draw(sketch, *sticker.palette);
    }
}

void drawInPlace(Sketch& sketch, const Figure& figure, const PairPlace& place)
{
    constexpr qreal turningPoint = 120; // a leaning figure turns about its middle, not about its head
    const Sketch::Placed placed(sketch, at(place.x, place.y));
    const Sketch::Placed leaning(
        sketch, QTransform().translate(0, turningPoint).rotate(place.lean).translate(0, -turningPoint));
    const Sketch::Placed side(sketch, place.isMirrored ? mirrored() : QTransform());
    drawFigure(sketch, figure);
}

/// What is large enough for one only grows for two, downwards more than upwards.
QTransform sharedPlace(const Prop& shared)
{
    constexpr qreal handHeight = 62;
    constexpr qreal fixedHeight = 90; // about where such things begin
    constexpr qreal growth = 1.5;
    if (shared.place == Prop::Place::InHand) {
        return at(0, handHeight);
    }
    const bool isLarge = shared.coversHands || shared.place == Prop::Place::Behind;
    return isLarge ? at(0, fixedHeight * (1 - growth), 0, growth) : QTransform();
}

void drawShared(Sketch& sketch, const Prop* shared, bool isBehind)
{
    if (shared && (shared->place == Prop::Place::Behind) == isBehind) {
        const Sketch::Placed placed(sketch, sharedPlace(*shared));
        shared->draw(sketch);
    }
}

void drawPair(Sketch& sketch, const StickerTemplate& sticker, const Figure& left, const Figure& right)
{
    constexpr qreal motifScale = 1.32;
    drawMotifs(sketch, sticker, 0, middleOf(left.legs), motifScale);
    const PairPart& pair = *sticker.pair;
    drawShared(sketch, pair.shared, true);
    if (pair.pose->isLeftInFront) {
        drawInPlace(sketch, right, pair.pose->right);
        drawInPlace(sketch, left, pair.pose->left);
    } else {
        drawInPlace(sketch, left, pair.pose->left);
        drawInPlace(sketch, right, pair.pose->right);
    }
    drawShared(sketch, pair.shared, false);
}

Sketch sceneOf(const StickerTemplate& sticker, const QString& avatarId, const std::optional<QString>& friendAvatarId)
{
    Sketch scene;
    const Figure figure = figureOf(sticker.role, avatarId);
    if (sticker.pair) {
        drawPair(scene, sticker, figure, figureOf(sticker.pair->friendRole, friendAvatarId.value_or(QString())));
    } else {
        drawMotifs(scene, sticker, 0, middleOf(figure.legs), 1);
        drawFigure(scene, figure);
    }
    return scene;
}

bool endsInBust(const Role& role)
{
    return role.legs == Legs::Hidden && !(role.prop && role.prop->place == Prop::Place::InFront);
}

/// How far the caption covers the scene: the end of a bust, but no feet and nothing that is held low.
qreal captionOverlap(const StickerTemplate& sticker)
{
    constexpr qreal overBust = 27;
    constexpr qreal overFeet = 6;
    return endsInBust(sticker.role) && (!sticker.pair || endsInBust(sticker.pair->friendRole)) &&
                   !sticker.isCaptionOnTop
               ? overBust
               : overFeet;
}

/// Scene and caption, laid out in the usual picture: one above the other, and both in its middle.
Sketch composed(const StickerTemplate& sticker, const QString& avatarId, const std::optional<QString>& friendAvatarId)
{
    const Sketch scene = sceneOf(sticker, avatarId, friendAvatarId);
    const Sketch caption = drawCaption(sticker.caption, sticker.lettering, sticker.palette->main,
                                       {drawable, captionHeight}, tallestLetter);
    const QRectF bounds = scene.bounds();
    const qreal captionExtent = caption.bounds().height();
    const qreal forCaption = captionExtent > 0 ? captionExtent - captionOverlap(sticker) : 0;
    const qreal scale = qMin(largestScale, qMin(drawable / bounds.width(), (drawable - forCaption) / bounds.height()));
    const qreal sceneExtent = bounds.height() * scale;
    const qreal top = (usualSize - sceneExtent - forCaption) / 2;
    const qreal sceneMiddle = top + (sticker.isCaptionOnTop ? forCaption : 0) + sceneExtent / 2;
    Sketch result;
    {
        const Sketch::Placed placed(result, QTransform()
                                                .translate(usualSize / 2.0, sceneMiddle)
                                                .scale(scale, scale)
                                                .translate(-bounds.center().x(), -bounds.center().y()));
        result.add(scene);
    }
    const qreal captionMiddle = sticker.isCaptionOnTop ? top + captionExtent / 2 : usualSize - top - captionExtent / 2;
    const Sketch::Placed placed(result, at(usualSize / 2.0, captionMiddle));
    result.add(caption);
    return result;
}

} // namespace

QImage drawSticker(const StickerTemplate& sticker, const QString& avatarId,
                   const std::optional<QString>& friendAvatarId, int size)
{
    return paintedOnPaper(composed(sticker, avatarId, friendAvatarId), qBound(smallestSize, size, largestSize),
                          usualSize);
}

QImage drawAvatarIcon(const QString& avatarId, int size)
{
    constexpr qreal middle = usualSize / 2.0;
    constexpr qreal radius = middle - inset;
    const Palette& palette = palettes[StableHash(avatarId).below(palettes.size(), "icon")];
    Sketch sketch;
    sketch.plate(circle(middle, middle, radius), palette.soft);
    {
        const Sketch::Clipped clipped(sketch, circle(middle, middle, radius));
        const Sketch::Placed placed(sketch, at(middle, middle + 12, 0, 1.62));
        Figure figure;
        figure.look = AvatarLook::of(avatarId);
        figure.expression = *expressionNamed("calm");
        drawFigure(sketch, figure);
    }
    return paintedOnPaper(sketch, qBound(smallestSize, size, largestSize), usualSize);
}

std::optional<QByteArray> stickerPng(const StickerTemplates& templates, const QString& templateId,
                                     const QString& avatarId, const std::optional<QString>& friendAvatarId, int size)
{
    const StickerTemplate* const sticker = templates.find(templateId);
    return sticker ? std::optional(encodedAsPng(drawSticker(*sticker, avatarId, friendAvatarId, size))) : std::nullopt;
}

} // namespace kovalin::drawing
