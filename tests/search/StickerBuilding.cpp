#include "StickerBuilding.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <gtest/gtest.h>

namespace kovalin::test {

namespace {

std::shared_ptr<KovalinSticker> sticker(const QString& comicId, const QStringList& tags)
{
    auto made = std::make_shared<KovalinSticker>();
    made->setComicId(comicId);
    made->setUrl(QStringLiteral("https://stickers.example/%1-%s.png").arg(comicId));
    made->setTags(tags);
    return made;
}

} // namespace

QJsonObject json(const char* text)
{
    QJsonParseError error{};
    const auto document = QJsonDocument::fromJson(QByteArray(text), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << text;
    EXPECT_TRUE(document.isObject()) << text;
    return document.object();
}

KovalinStickerPtr solo(const QString& comicId, const QStringList& tags)
{
    return sticker(comicId, tags);
}

KovalinStickerPtr pair(const QString& comicId, const QStringList& tags)
{
    auto made = sticker(comicId, tags);
    made->setFriendvalin(true);
    return made;
}

KovalinPackPtr pack(const std::optional<QString>& title, const KovalinStickerList& stickers, bool visible,
                    const std::optional<QString>& packId)
{
    auto made = std::make_shared<KovalinPack>();
    made->setName(title);
    made->setPackId(packId);
    made->setVisible(visible);
    made->setStickers(stickers);
    return made;
}

KovalinStickerList manySolo(const QString& prefix, int count, const QStringList& tags)
{
    KovalinStickerList stickers;
    for (int i = 0; i < count; ++i) {
        stickers.append(solo(prefix + QString::number(i), tags));
    }
    return stickers;
}

QStringList comicIds(const KovalinStickerList& stickers)
{
    QStringList ids;
    for (const auto& sticker : stickers) {
        ids.append(sticker->comicId().value_or(QStringLiteral("-")));
    }
    return ids;
}

KovalinPackList examplePacks()
{
    QFile file(QStringLiteral(KOVALIN_EXAMPLE_PACKS));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return KovalinPack::packsFromJson(QJsonDocument::fromJson(file.readAll()).object()[u"packs"].toArray());
}

} // namespace kovalin::test
