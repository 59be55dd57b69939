#include "search/KovalinPack.h"

#include "platform/foundation/Color.h"
#include "platform/foundation/Json.h"
#include "platform/foundation/KeyedArchiver.h"
#include "platform/foundation/KeyedUnarchiver.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <algorithm>

using namespace kovalin::platform;

namespace {

KovalinStickerList stickersFromJson(const QJsonArray& json)
{
    KovalinStickerList stickers;
    stickers.reserve(json.size());
    for (const QJsonValue element : json) {
        if (element.isObject()) {
            stickers.append(std::make_shared<const KovalinSticker>(element.toObject()));
        }
    }
    return stickers;
}

KovalinStickerList stickersFromCoder(const KeyedUnarchiver& coder)
{
    KovalinStickerList stickers;
    if (const auto decoded = coder.decodeObjects<KovalinSticker>(QStringLiteral("stickers"))) {
        stickers.reserve(decoded->size());
        std::copy(decoded->cbegin(), decoded->cend(), std::back_inserter(stickers));
    }
    return stickers;
}

/// Absence equals nothing.
template <typename T, typename Equal = std::equal_to<>>
bool presentAndEqual(const std::optional<T>& a, const std::optional<T>& b, Equal equal = {})
{
    return a && b && equal(*a, *b);
}

} // namespace

KovalinPack::KovalinPack(const QJsonObject& json)
    : _packId(jsonString(json, u"id"))
    , _name(jsonString(json, u"title"))
    , _color(colorWithHexString(jsonString(json, u"color").value_or(QString())))
    , _visible(jsonBool(json, u"visible").value_or(false))
    , _stickers(stickersFromJson(jsonArray(json, u"stickers").value_or(QJsonArray())))
{
}

KovalinPack::KovalinPack(const KeyedUnarchiver& coder)
    : _packId(coder.decodeString(QStringLiteral("id")))
    , _name(coder.decodeString(QStringLiteral("title")))
    , _color(coder.decodeColor(QStringLiteral("color")))
    , _visible(coder.decodeBool(QStringLiteral("visible")))
    , _stickers(stickersFromCoder(coder))
{
}

KovalinPackList KovalinPack::packsFromJson(const QJsonArray& json)
{
    KovalinPackList packs;
    packs.reserve(json.size());
    for (const QJsonValue element : json) {
        if (element.isObject()) {
            packs.append(std::make_shared<const KovalinPack>(element.toObject()));
        }
    }
    return packs;
}

const QHash<QString, QXSDKKovalinEmotion>& KovalinPack::packIdToEmotion()
{
    // Never destroyed: engines may still be building when the process ends.
    static const auto& emotions = *new const QHash<QString, QXSDKKovalinEmotion>{
        {QStringLiteral("greeting"), QXSDKKovalinEmotionGreeting},
        {QStringLiteral("affection"), QXSDKKovalinEmotionAffection},
        {QStringLiteral("positive"), QXSDKKovalinEmotionPositive},
        {QStringLiteral("negative"), QXSDKKovalinEmotionNegative},
        {QStringLiteral("occasions"), QXSDKKovalinEmotionOccasions},
    };
    return emotions;
}

const std::optional<QString>& KovalinPack::packId() const
{
    return _packId;
}

void KovalinPack::setPackId(const std::optional<QString>& packId)
{
    _packId = packId;
}

const std::optional<QColor>& KovalinPack::color() const
{
    return _color;
}

void KovalinPack::setColor(const std::optional<QColor>& color)
{
    _color = color;
}

const std::optional<QString>& KovalinPack::name() const
{
    return _name;
}

void KovalinPack::setName(const std::optional<QString>& name)
{
    _name = name;
}

const KovalinStickerList& KovalinPack::stickers() const
{
    return _stickers;
}

void KovalinPack::setStickers(const KovalinStickerList& stickers)
{
    _stickers = stickers;
    if (_stickers.contains(nullptr)) {
        _stickers.removeAll(nullptr);
    }
}

bool KovalinPack::visible() const
{
    return _visible;
}

void KovalinPack::setVisible(bool visible)
{
    _visible = visible;
}

bool KovalinPack::isEqual(const KovalinPack& other) const
{
    if (this == &other) {
        return true;
    }
    return presentAndEqual(_packId, other._packId) && presentAndEqual(_name, other._name) &&
           presentAndEqual(_color, other._color, colorsEqual) && _visible == other._visible &&
           std::equal(_stickers.cbegin(), _stickers.cend(), other._stickers.cbegin(), other._stickers.cend(),
                      [](const auto& mine, const auto& theirs) { return mine->isEqual(*theirs); });
}

void KovalinPack::encodeWithCoder(KeyedArchiver& coder) const
{
    coder.encodeObject(QStringLiteral("id"), _packId);
    coder.encodeObject(QStringLiteral("title"), _name);
    coder.encodeObject(QStringLiteral("color"), _color);
    coder.encodeBool(QStringLiteral("visible"), _visible);
    coder.encodeObject(QStringLiteral("stickers"), _stickers);
}
