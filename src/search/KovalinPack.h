#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "search/KovalinSticker.h"
#include "search/QXSDKKovalinEmotion.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtGui/QColor>

#include <memory>
#include <optional>

QT_FORWARD_DECLARE_CLASS(QJsonArray)
QT_FORWARD_DECLARE_CLASS(QJsonObject)

class KovalinPack;

/// A shared pack; never null in a list.
using KovalinPackPtr = std::shared_ptr<const KovalinPack>;
using KovalinPackList = QList<KovalinPackPtr>;

/// A titled, coloured group of stickers.
///
/// Thread: a plain record. Whoever made it may write to it; once shared, as KovalinPackPtr, it is read only and may be read
/// on any thread. Lists of packs are shared, not copied, between all who use them.
///
/// A pack has no hash: equal packs are still different keys.
class QXSDKKOVALINKIT_EXPORT KovalinPack final {
public:
    /// An invisible pack with no stickers and every other field absent.
    KovalinPack() = default;

    /// Reads the keys "id", "title", "color", "visible" and "stickers" of a content document. Never fails: a missing key,
    /// or a value of another type, leaves its field absent, the colour black, the pack invisible or without stickers.
    /// Elements of "stickers" that are no objects are left out.
    explicit KovalinPack(const QJsonObject& json);

    /// Reads what encodeWithCoder() wrote. A missing key leaves its field absent, the pack invisible or without stickers.
    /// Throws PlatformException when a value is of another kind.
    explicit KovalinPack(const kovalin::platform::KeyedUnarchiver& coder);

    KovalinPack(const KovalinPack&) = delete;
    KovalinPack& operator=(const KovalinPack&) = delete;

    /// One pack for each object of the list, in its order; other elements are left out. No pack is left out for being
    /// invisible or empty.
    [[nodiscard]] static KovalinPackList packsFromJson(const QJsonArray& json);

    /// The emotion of each pack identifier that has one. Any thread.
    [[nodiscard]] static const QHash<QString, QXSDKKovalinEmotion>& packIdToEmotion();

    /// The pack's identifier, a key of packIdToEmotion() for some.
    [[nodiscard]] const std::optional<QString>& packId() const;
    void setPackId(const std::optional<QString>& packId);

    /// The colour of the pack's tag tiles; absent only in a pack whose archive held none.
    [[nodiscard]] const std::optional<QColor>& color() const;
    void setColor(const std::optional<QColor>& color);

    /// The title, which is searchable like a tag while the pack is visible.
    [[nodiscard]] const std::optional<QString>& name() const;
    void setName(const std::optional<QString>& name);

    /// The stickers in the backend's order. Nulls in a list that is set are left out.
    [[nodiscard]] const KovalinStickerList& stickers() const;
    void setStickers(const KovalinStickerList& stickers);

    /// Whether the pack's title is searchable; its stickers are, either way.
    [[nodiscard]] bool visible() const;
    void setVisible(bool visible);

    /// Whether both are the same object, or agree in `packId`, `name`, `color`, `visible` and `stickers`. An absent field
    /// equals nothing, not even another absent one.
    [[nodiscard]] bool isEqual(const KovalinPack& other) const;

    /// Writes "id", "title", "color", "visible" and "stickers", in this order; absent fields write nothing.
    void encodeWithCoder(kovalin::platform::KeyedArchiver& coder) const;

private:
    std::optional<QString> _packId;
    std::optional<QString> _name;
    std::optional<QColor> _color;
    bool _visible = false;
    KovalinStickerList _stickers;
};
