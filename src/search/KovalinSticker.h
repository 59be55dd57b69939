#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "platform/foundation/PackedStrings.h"

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <cstddef>
#include <memory>
#include <optional>

QT_FORWARD_DECLARE_CLASS(QJsonObject)

namespace kovalin::platform {
class KeyedArchiver;
class KeyedUnarchiver;
} // namespace kovalin::platform

/// One image template with its search tags.
///
/// Thread: a plain value. Whoever made it may write to it; once shared, as KovalinStickerPtr, it is read only and may be
/// read on any thread.
///
/// Fields are held packed: each read of a string or of the tags makes it anew.
///
/// Identity: `comicId` and `url` together name a sticker, see isEqual().
class QXSDKKOVALINKIT_EXPORT KovalinSticker final {
public:
    /// A one-person sticker with every field absent.
    KovalinSticker() = default;

    /// Reads the keys "comic_id", "tags", "url", "template_id" and "capabilities" of a content document. Never fails: a
    /// missing key, or a value of another type, leaves its field absent; elements of "tags" that are no strings are left
    /// out.
    explicit KovalinSticker(const QJsonObject& json);

    /// Reads what encodeWithCoder() wrote. A missing key leaves its field absent, except that `tags` become an empty list
    /// and `isFriendvalin` false. Throws PlatformException when a value is of another kind.
    explicit KovalinSticker(const kovalin::platform::KeyedUnarchiver& coder);

    /// The image's URL, or for a two-person sticker its template, see imageURLWithFriendAvatarId().
    [[nodiscard]] std::optional<QString> url() const;
    void setUrl(const std::optional<QString>& url);

    /// The identifier of the sticker's template.
    [[nodiscard]] std::optional<QString> templateId() const;
    void setTemplateId(const std::optional<QString>& templateId);

    /// The identifier of the image, by which the learned model names stickers.
    [[nodiscard]] std::optional<QString> comicId() const;
    void setComicId(const std::optional<QString>& comicId);

    /// The tags as the backend sent them, in its order and with its decorations (a trailing "*", a leading "#", a ":").
    [[nodiscard]] std::optional<QStringList> tags() const;
    void setTags(const std::optional<QStringList>& tags);

    /// Calls `visit` with a QAnyStringView of each tag, in order, without making strings.
    template <typename Visit>
    void visitTags(Visit&& visit) const
    {
        _strings.visitFrom(firstTag, visit);
    }

    /// Whether this is a two-person sticker, which takes a friend's avatar to draw.
    [[nodiscard]] bool isFriendvalin() const;
    void setFriendvalin(bool isFriendvalin);

    /// The URL to load the image from. A two-person sticker has every "%s" of its URL replaced by the identifier as it
    /// stands, unescaped; without an identifier it keeps them. Nullopt when there is no URL.
    [[nodiscard]] std::optional<QString> imageURLWithFriendAvatarId(const std::optional<QString>& friendAvatarId) const;

    /// Whether both are the same object, or have equal `comicId` and equal `url`. An absent field equals nothing, not even
    /// another absent one; the other fields play no part.
    [[nodiscard]] bool isEqual(const KovalinSticker& other) const;

    /// Equal for equal stickers, within one process.
    [[nodiscard]] std::size_t hash() const;

    /// A new sticker with the same fields.
    [[nodiscard]] std::shared_ptr<KovalinSticker> copy() const;

    /// Writes "comic_id", "tags", "url", "template_id" and "is_friendvalin", in this order; absent fields write nothing.
    void encodeWithCoder(kovalin::platform::KeyedArchiver& coder) const;

private:
    static constexpr std::size_t firstTag = 3;

    void setStrings(const std::optional<QString>& comicId, const std::optional<QString>& url,
                    const std::optional<QString>& templateId, const std::optional<QStringList>& tags);

    kovalin::platform::PackedStrings _strings; // comicId, url, templateId and the tags
    bool _hasTags = false;
    bool _isFriendvalin = false;
    quint32 _hash = 0; // kept, since looking for a sticker among many would fetch the strings of all
};

/// A shared sticker; never null in a list.
using KovalinStickerPtr = std::shared_ptr<const KovalinSticker>;
using KovalinStickerList = QList<KovalinStickerPtr>;
