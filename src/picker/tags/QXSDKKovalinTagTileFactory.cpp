#include "picker/tags/QXSDKKovalinTagTileFactory.h"

#include "search/QXSDKKovalinTagIndex.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr quint32 fullTurn = 360; // degrees
/// How many hues, a degree apart, a colour may turn to, and where they begin: half of them before the colour's own.
constexpr quint32 hueCount = 36;
constexpr quint32 firstTurn = fullTurn - hueCount / 2;

/// QColor counts hues in hundredths of a degree and gives them as a fraction of a turn, which may lie a hair below a
/// whole degree. A colour without a hue counts as red.
quint32 wholeDegrees(float hue)
{
    constexpr float hundredths = 100;
    const auto counted = std::lround(std::max(hue, 0.0F) * (fullTurn * hundredths));
    return static_cast<quint32>(counted) / static_cast<quint32>(hundredths);
}

} // namespace

QXSDKKovalinTagTileFactory::QXSDKKovalinTagTileFactory(const QList<QColor>& colors, bool shouldRandomize,
                                                       bool shouldUsePackColors)
    : _colors(colors)
    , _shouldRandomize(shouldRandomize)
    , _shouldUsePackColors(shouldUsePackColors)
{
}

QList<QColor> QXSDKKovalinTagTileFactory::defaultColors()
{
    return {
        QColor::fromHsvF(0.656F, 0.897F, 0.968F), // greeting
        QColor::fromHsvF(0.944F, 0.647F, 0.988F), // affection
        QColor::fromHsvF(0.389F, 0.855F, 0.675F), // positive
        QColor::fromHsvF(0.756F, 0.48F, 0.867F),  // negative
        QColor::fromHsvF(0.481F, 0.844F, 0.678F), // occasions
        QColor::fromHsvF(0.111F, 0.83F, 0.882F),  // unknown
    };
}

QXSDKTagTileList QXSDKKovalinTagTileFactory::fromTags(const QStringList& tags,
                                                      const QXSDKKovalinTagIndex& tagIndex) const
{
    QXSDKTagTileList tiles;
    tiles.reserve(tags.size());
    for (const QString& tag : tags) {
        tiles.append(std::make_shared<const QXSDKTagTile>(tag, colorForTag(tag, tagIndex)));
    }
    return tiles;
}

QColor QXSDKKovalinTagTileFactory::colorForTag(const QString& tag, const QXSDKKovalinTagIndex& tagIndex) const
{
    if (const KovalinPackPtr pack = tagIndex.packForTag(tag); pack && _shouldUsePackColors) {
        return pack->color().value_or(QColor());
    }
    if (_colors.isEmpty()) {
        return {};
    }
    const QColor color = _colors.at(qsizetype(tagIndex.emotionForTag(tag)) % _colors.size());
    return _shouldRandomize ? QXSDKRotateColorForTag(color, tag) : color;
}

QColor QXSDKRotateColorForTag(const QColor& color, const QString& tag)
{
    if (!color.isValid()) {
        return color;
    }
    float hue = 0;
    float saturation = 0;
    float brightness = 0;
    color.getHsvF(&hue, &saturation, &brightness);
    const auto turn = static_cast<quint32>(qHash(tag) % hueCount);
    const quint32 degrees = (wholeDegrees(hue) + turn + firstTurn) % fullTurn;
    return QColor::fromHsvF(static_cast<float>(degrees) / static_cast<float>(fullTurn), saturation, brightness);
}
