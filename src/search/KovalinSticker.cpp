#include "search/KovalinSticker.h"

#include "platform/foundation/Json.h"
#include "platform/foundation/KeyedArchiver.h"
#include "platform/foundation/KeyedUnarchiver.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QVarLengthArray>

#include <span>

using namespace kovalin::platform;

namespace {

enum StringPlace : std::size_t { ComicId, Url, TemplateId };

bool hasFriendsCapability(const QJsonObject& json)
{
    const auto capabilities = jsonArray(json, u"capabilities");
    return capabilities && capabilities->contains(QJsonValue(QStringLiteral("FRIENDS")));
}

} // namespace

KovalinSticker::KovalinSticker(const QJsonObject& json)
    : _isFriendvalin(hasFriendsCapability(json))
{
    setStrings(jsonString(json, u"comic_id"), jsonString(json, u"url"), jsonString(json, u"template_id"),
               jsonStringList(json, u"tags"));
}

KovalinSticker::KovalinSticker(const KeyedUnarchiver& coder)
    : _isFriendvalin(coder.decodeBool(QStringLiteral("is_friendvalin")))
{
    setStrings(coder.decodeString(QStringLiteral("comic_id")), coder.decodeString(QStringLiteral("url")),
               coder.decodeString(QStringLiteral("template_id")),
               coder.decodeStringList(QStringLiteral("tags")).value_or(QStringList()));
}

void KovalinSticker::setStrings(const std::optional<QString>& comicId, const std::optional<QString>& url,
                                const std::optional<QString>& templateId, const std::optional<QStringList>& tags)
{
    QVarLengthArray<std::optional<QStringView>, 16> strings{comicId, url, templateId};
    if (tags) {
        for (const QString& tag : *tags) {
            strings.append(tag);
        }
    }
    _strings = PackedStrings(std::span(strings.cbegin(), static_cast<std::size_t>(strings.size())));
    _hasTags = tags.has_value();
    const std::size_t hash = _strings.hashAt(ComicId) ^ _strings.hashAt(Url);
    _hash = static_cast<quint32>(hash ^ (hash >> (4 * sizeof(hash))));
}

std::optional<QString> KovalinSticker::url() const
{
    return _strings.at(Url);
}

void KovalinSticker::setUrl(const std::optional<QString>& url)
{
    setStrings(comicId(), url, templateId(), tags());
}

std::optional<QString> KovalinSticker::templateId() const
{
    return _strings.at(TemplateId);
}

void KovalinSticker::setTemplateId(const std::optional<QString>& templateId)
{
    setStrings(comicId(), url(), templateId, tags());
}

std::optional<QString> KovalinSticker::comicId() const
{
    return _strings.at(ComicId);
}

void KovalinSticker::setComicId(const std::optional<QString>& comicId)
{
    setStrings(comicId, url(), templateId(), tags());
}

std::optional<QStringList> KovalinSticker::tags() const
{
    if (!_hasTags) {
        return std::nullopt;
    }
    QStringList tags;
    tags.reserve(static_cast<qsizetype>(_strings.count() - firstTag));
    visitTags([&tags](QAnyStringView tag) { tags.append(tag.toString()); });
    return tags;
}

void KovalinSticker::setTags(const std::optional<QStringList>& tags)
{
    setStrings(comicId(), url(), templateId(), tags);
}

bool KovalinSticker::isFriendvalin() const
{
    return _isFriendvalin;
}

void KovalinSticker::setFriendvalin(bool isFriendvalin)
{
    _isFriendvalin = isFriendvalin;
}

std::optional<QString> KovalinSticker::imageURLWithFriendAvatarId(const std::optional<QString>& friendAvatarId) const
{
    auto imageUrl = url();
    if (imageUrl && _isFriendvalin && friendAvatarId) {
        imageUrl->replace(QLatin1String("%s"), *friendAvatarId);
    }
    return imageUrl;
}

bool KovalinSticker::isEqual(const KovalinSticker& other) const
{
    return this == &other || (_strings.hasSameAt(ComicId, other._strings) && _strings.hasSameAt(Url, other._strings));
}

std::size_t KovalinSticker::hash() const
{
    return _hash;
}

std::shared_ptr<KovalinSticker> KovalinSticker::copy() const
{
    return std::make_shared<KovalinSticker>(*this);
}

void KovalinSticker::encodeWithCoder(KeyedArchiver& coder) const
{
    coder.encodeObject(QStringLiteral("comic_id"), comicId());
    coder.encodeObject(QStringLiteral("tags"), tags());
    coder.encodeObject(QStringLiteral("url"), url());
    coder.encodeObject(QStringLiteral("template_id"), templateId());
    coder.encodeBool(QStringLiteral("is_friendvalin"), _isFriendvalin);
}
