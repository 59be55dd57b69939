#include "search/KovalinPack.h"

#include "StickerBuilding.h"
#include "platform/foundation/KeyedArchiver.h"
#include "platform/foundation/KeyedUnarchiver.h"
#include "support/QtPrinting.h"

#include <QtCore/QCborArray>
#include <QtCore/QCborMap>
#include <QtCore/QCborValue>
#include <QtCore/QJsonArray>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace kovalin::platform;
using namespace kovalin::test;

namespace {

std::shared_ptr<KovalinPack> archivedAndBack(const KovalinPack& pack)
{
    return KeyedUnarchiver::unarchiveObjectWithData<KovalinPack>(KeyedArchiver::archivedData(pack));
}

/// Two equal packs of different objects.
std::shared_ptr<KovalinPack> somePack()
{
    auto pack = std::make_shared<KovalinPack>();
    pack->setPackId(u"id"_s);
    pack->setName(u"name"_s);
    pack->setColor(QColor(1, 2, 3));
    pack->setVisible(true);
    pack->setStickers({solo(u"1"_s), pair(u"2"_s)});
    return pack;
}

} // namespace

TEST(KovalinPack, ReadsEveryFieldOfItsJson)
{
    const KovalinPack pack(json(R"({"id": "greeting", "title": "hello", "color": "#00B4FF", "visible": true,
        "stickers": [{"comic_id": "1"}, {"comic_id": "2"}]})"));

    EXPECT_EQ(pack.packId(), u"greeting"_s);
    EXPECT_EQ(pack.name(), u"hello"_s);
    EXPECT_EQ(pack.color()->rgba(), qRgba(0x00, 0xB4, 0xFF, 0xFF));
    EXPECT_TRUE(pack.visible());
    EXPECT_EQ(comicIds(pack.stickers()), QStringList({u"1"_s, u"2"_s}));
}

TEST(KovalinPack, ReadsAnEmptyObjectAsAnInvisibleBlackPackWithoutStickers)
{
    const KovalinPack pack(json("{}"));

    EXPECT_EQ(pack.packId(), std::nullopt);
    EXPECT_EQ(pack.name(), std::nullopt);
    EXPECT_EQ(pack.color()->rgba(), qRgba(0, 0, 0, 0xFF));
    EXPECT_FALSE(pack.visible());
    EXPECT_TRUE(pack.stickers().isEmpty());
}

TEST(KovalinPack, TakesValuesOfAnotherTypeForAbsent)
{
    const KovalinPack pack(
        json(R"({"id": 1, "title": {}, "color": 16777215, "visible": "true", "stickers": {"comic_id": "1"}})"));

    EXPECT_EQ(pack.packId(), std::nullopt);
    EXPECT_EQ(pack.name(), std::nullopt);
    EXPECT_EQ(pack.color()->rgba(), qRgba(0, 0, 0, 0xFF));
    EXPECT_FALSE(pack.visible());
    EXPECT_TRUE(pack.stickers().isEmpty());
}

TEST(KovalinPack, LeavesOutStickersThatAreNoObjects)
{
    const KovalinPack pack(json(R"({"stickers": [1, {"comic_id": "1"}, null, [], "x", {"comic_id": "2"}]})"));

    EXPECT_EQ(comicIds(pack.stickers()), QStringList({u"1"_s, u"2"_s}));
}

TEST(KovalinPack, ReadsItsColourAsFarAsItIsHexadecimal)
{
    const auto color = [](const char* text) {
        return KovalinPack(json(text)).color()->rgba();
    };
    EXPECT_EQ(color(R"({"color": "#12345"})"), qRgba(0, 0, 0, 0xFF));
    EXPECT_EQ(color(R"({"color": "#123456xyz"})"), qRgba(0x12, 0x34, 0x56, 0xFF));
    EXPECT_EQ(color(R"({"color": "12G456"})"), qRgba(0, 0, 0x12, 0xFF));
}

TEST(KovalinPack, MakesOnePackOfEachObjectInAList)
{
    const auto packs = KovalinPack::packsFromJson(
        json(R"({"packs": [1, "x", {"id": "only", "visible": false}, null, []]})")[u"packs"].toArray());

    ASSERT_EQ(packs.size(), 1);
    EXPECT_EQ(packs.first()->packId(), u"only"_s);
}

TEST(KovalinPack, KnowsTheEmotionOfFivePacks)
{
    const auto& emotions = KovalinPack::packIdToEmotion();

    EXPECT_EQ(emotions.size(), 5);
    EXPECT_EQ(emotions.value(u"greeting"_s, QXSDKKovalinEmotionUnknown), 0U);
    EXPECT_EQ(emotions.value(u"affection"_s, QXSDKKovalinEmotionUnknown), 1U);
    EXPECT_EQ(emotions.value(u"positive"_s, QXSDKKovalinEmotionUnknown), 2U);
    EXPECT_EQ(emotions.value(u"negative"_s, QXSDKKovalinEmotionUnknown), 3U);
    EXPECT_EQ(emotions.value(u"occasions"_s, QXSDKKovalinEmotionUnknown), 4U);
    EXPECT_EQ(&emotions, &KovalinPack::packIdToEmotion());
}

TEST(KovalinPack, LeavesOutNullStickers)
{
    KovalinPack pack;
    pack.setStickers({nullptr, solo(u"1"_s), nullptr});
    EXPECT_EQ(comicIds(pack.stickers()), QStringList{u"1"_s});
}

TEST(KovalinPack, IsEqualWhenEveryFieldIs)
{
    EXPECT_TRUE(somePack()->isEqual(*somePack()));

    using Change = void (*)(KovalinPack&);
    const Change changes[] = {
        [](KovalinPack& pack) { pack.setPackId(u"other"_s); },
        [](KovalinPack& pack) { pack.setName(u"Name"_s); },
        [](KovalinPack& pack) { pack.setColor(QColor(1, 2, 3, 4)); },
        [](KovalinPack& pack) { pack.setVisible(false); },
        [](KovalinPack& pack) {
            pack.setStickers({pair(u"2"_s), solo(u"1"_s)});
        },
        [](KovalinPack& pack) { pack.setStickers({solo(u"1"_s)}); },
    };
    for (const Change change : changes) {
        const auto changed = somePack();
        change(*changed);
        EXPECT_FALSE(somePack()->isEqual(*changed)) << "change " << &change - changes;
        EXPECT_FALSE(changed->isEqual(*somePack())) << "change " << &change - changes;
    }
}

TEST(KovalinPack, ComparesColoursByRgba)
{
    const auto one = somePack();
    const auto other = somePack();
    other->setColor(QColor(1, 2, 3).toHsv());
    other->setStickers(one->stickers());
    EXPECT_TRUE(one->isEqual(*other));
}

TEST(KovalinPack, WithAnAbsentFieldIsEqualOnlyToItself)
{
    using Change = void (*)(KovalinPack&);
    const Change changes[] = {
        [](KovalinPack& pack) { pack.setPackId(std::nullopt); },
        [](KovalinPack& pack) { pack.setName(std::nullopt); },
        [](KovalinPack& pack) { pack.setColor(std::nullopt); },
    };
    for (const Change change : changes) {
        const auto one = somePack();
        const auto other = somePack();
        change(*one);
        change(*other);
        EXPECT_TRUE(one->isEqual(*one));
        EXPECT_FALSE(one->isEqual(*other)) << "change " << &change - changes;
    }
}

TEST(KovalinPack, ComesBackFromAnArchiveAsItWas)
{
    const auto pack = somePack();
    pack->setColor(QColor::fromRgbF(0.1F, 0.2F, 0.3F, 0.4F));

    EXPECT_TRUE(archivedAndBack(*pack)->isEqual(*pack));
}

TEST(KovalinPack, DecodesWhatIsMissingToItsDefaults)
{
    struct Nothing {
        void encodeWithCoder(KeyedArchiver&) const {}
    };
    const auto pack = KeyedUnarchiver::unarchiveObjectWithData<KovalinPack>(KeyedArchiver::archivedData(Nothing()));

    EXPECT_EQ(pack->packId(), std::nullopt);
    EXPECT_EQ(pack->name(), std::nullopt);
    EXPECT_EQ(pack->color(), std::nullopt);
    EXPECT_FALSE(pack->visible());
    EXPECT_TRUE(pack->stickers().isEmpty());
}

TEST(KovalinPack, ArchivesTheExamplePacksWithoutLoss)
{
    const auto packs = examplePacks();
    const auto back = KeyedUnarchiver::unarchiveObjectsWithData<KovalinPack>(KeyedArchiver::archivedData(packs));

    ASSERT_EQ(packs.size(), 13);
    ASSERT_EQ(back.size(), packs.size());
    for (qsizetype i = 0; i < packs.size(); ++i) {
        EXPECT_TRUE(back[i]->isEqual(*packs[i])) << i;
        for (qsizetype j = 0; j < packs[i]->stickers().size(); ++j) {
            EXPECT_EQ(back[i]->stickers()[j]->tags(), packs[i]->stickers()[j]->tags());
            EXPECT_EQ(back[i]->stickers()[j]->isFriendvalin(), packs[i]->stickers()[j]->isFriendvalin());
        }
    }
}

// Looked at through Qt's own CBOR reader: the keys are a stored format that other versions have to read.
TEST(KovalinPack, WritesItsKeysInTheirOrder)
{
    const auto root = QCborValue::fromCbor(KeyedArchiver::archivedData(*somePack()))[u"root"_s].toMap();
    QStringList keys;
    for (const auto& key : root.keys()) {
        keys.append(key.toString());
    }
    EXPECT_EQ(keys, QStringList({u"id"_s, u"title"_s, u"color"_s, u"visible"_s, u"stickers"_s}));
    EXPECT_FALSE(root[u"color"_s].isString()) << "a colour is archived as such, not as text";
    EXPECT_TRUE(root[u"visible"_s].isTrue());
    EXPECT_EQ(root[u"stickers"_s].toArray().size(), 2);
}
