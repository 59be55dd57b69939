#include "picker/content/BlendedStickers.h"

#include <gtest/gtest.h>

namespace {

KovalinStickerPtr sticker(const QString& comicId)
{
    auto made = std::make_shared<KovalinSticker>();
    made->setComicId(comicId);
    made->setUrl(QStringLiteral("https://a.example/") + comicId);
    return made;
}

KovalinStickerPtr nameless()
{
    return std::make_shared<KovalinSticker>();
}

const KovalinStickerPtr a = sticker(QStringLiteral("a"));
const KovalinStickerPtr b = sticker(QStringLiteral("b"));
const KovalinStickerPtr c = sticker(QStringLiteral("c"));

KovalinStickerListPtr list(const KovalinStickerList& stickers)
{
    return std::make_shared<const KovalinStickerList>(stickers);
}

TEST(BlendedStickers, putsTheFirstBeforeTheOthers)
{
    EXPECT_EQ(*blendedStickers({b}, list({a, c})), KovalinStickerList({b, a, c}));
}

TEST(BlendedStickers, keepsEachStickerOnceWhereItComesFirst)
{
    EXPECT_EQ(*blendedStickers({c, b, c}, list({a, b, a})), KovalinStickerList({c, b, a}));
    EXPECT_EQ(*blendedStickers({b}, list({a, sticker(QStringLiteral("b"))})), KovalinStickerList({b, a}))
        << "by their values";
}

TEST(BlendedStickers, keepsStickersThatEqualNothing)
{
    const KovalinStickerPtr one = nameless();
    const KovalinStickerPtr other = nameless();
    EXPECT_EQ(*blendedStickers({one, one}, list({other})), KovalinStickerList({one, other}));
}

TEST(BlendedStickers, copesWithNothing)
{
    EXPECT_EQ(*blendedStickers({a}, nullptr), KovalinStickerList({a}));
    EXPECT_EQ(*blendedStickers({}, list({a})), KovalinStickerList({a}));
    EXPECT_TRUE(blendedStickers({}, nullptr)->isEmpty());
}

TEST(BlendedStickers, isAlwaysANewList)
{
    const auto popular = list({a});
    EXPECT_NE(blendedStickers({}, popular), popular);
}

} // namespace
