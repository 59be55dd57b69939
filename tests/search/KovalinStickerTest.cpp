#include "search/KovalinSticker.h"

#include "StickerBuilding.h"
#include "platform/foundation/KeyedArchiver.h"
#include "platform/foundation/KeyedUnarchiver.h"
#include "support/QtPrinting.h"

#include <QtCore/QCborMap>
#include <QtCore/QCborValue>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace kovalin::platform;
using namespace kovalin::test;

namespace {

/// What a sticker becomes on its way through an archive.
std::shared_ptr<KovalinSticker> archivedAndBack(const KovalinSticker& sticker)
{
    return KeyedUnarchiver::unarchiveObjectWithData<KovalinSticker>(KeyedArchiver::archivedData(sticker));
}

/// A record that writes any keys in a sticker's place.
struct HandWritten {
    std::function<void(KeyedArchiver&)> write;

    void encodeWithCoder(KeyedArchiver& coder) const { write(coder); }
};

std::shared_ptr<KovalinSticker> stickerFrom(const std::function<void(KeyedArchiver&)>& write)
{
    return KeyedUnarchiver::unarchiveObjectWithData<KovalinSticker>(KeyedArchiver::archivedData(HandWritten{write}));
}

} // namespace

TEST(KovalinSticker, ReadsEveryFieldOfItsJson)
{
    const KovalinSticker sticker(json(R"({"comic_id": "17", "tags": ["happy*", "#x", "a:b"],
        "url": "https://stickers.example/17-%s.png", "template_id": "t17", "capabilities": ["FRIENDS"]})"));

    EXPECT_EQ(sticker.comicId(), QStringLiteral("17"));
    EXPECT_EQ(sticker.tags(), QStringList({u"happy*"_s, u"#x"_s, u"a:b"_s}));
    EXPECT_EQ(sticker.url(), QStringLiteral("https://stickers.example/17-%s.png"));
    EXPECT_EQ(sticker.templateId(), QStringLiteral("t17"));
    EXPECT_TRUE(sticker.isFriendvalin());
}

TEST(KovalinSticker, LeavesMissingFieldsAbsent)
{
    const KovalinSticker sticker(json("{}"));

    EXPECT_EQ(sticker.comicId(), std::nullopt);
    EXPECT_EQ(sticker.tags(), std::nullopt);
    EXPECT_EQ(sticker.url(), std::nullopt);
    EXPECT_EQ(sticker.templateId(), std::nullopt);
    EXPECT_FALSE(sticker.isFriendvalin());
}

TEST(KovalinSticker, TellsEmptyFieldsFromAbsentOnes)
{
    const KovalinSticker sticker(json(R"({"comic_id": "", "tags": [], "url": "", "template_id": ""})"));

    EXPECT_EQ(sticker.comicId(), QString());
    EXPECT_EQ(sticker.tags(), QStringList());
    EXPECT_EQ(sticker.url(), QString());
    EXPECT_EQ(sticker.templateId(), QString());
}

TEST(KovalinSticker, TakesValuesOfAnotherTypeForAbsent)
{
    const KovalinSticker sticker(
        json(R"({"comic_id": 17, "tags": "happy", "url": null, "template_id": ["t"], "capabilities": "FRIENDS"})"));

    EXPECT_EQ(sticker.comicId(), std::nullopt);
    EXPECT_EQ(sticker.tags(), std::nullopt);
    EXPECT_EQ(sticker.url(), std::nullopt);
    EXPECT_EQ(sticker.templateId(), std::nullopt);
    EXPECT_FALSE(sticker.isFriendvalin());
}

TEST(KovalinSticker, LeavesOutTagsThatAreNoStrings)
{
    const KovalinSticker sticker(json(R"({"tags": ["a", 1, null, ["b"], "c"]})"));

    EXPECT_EQ(sticker.tags(), QStringList({u"a"_s, u"c"_s}));
}

TEST(KovalinSticker, IsForTwoOnlyByTheCapability)
{
    EXPECT_TRUE(KovalinSticker(json(R"({"capabilities": ["A", 3, "FRIENDS", "B"]})")).isFriendvalin());
    EXPECT_FALSE(KovalinSticker(json(R"({"capabilities": ["friends"]})")).isFriendvalin());
    EXPECT_FALSE(KovalinSticker(json(R"({"capabilities": ["FRIENDS "]})")).isFriendvalin());
    EXPECT_FALSE(KovalinSticker(json(R"({"capabilities": []})")).isFriendvalin());
    EXPECT_FALSE(KovalinSticker(json(R"({"capabilities": {"FRIENDS": true}})")).isFriendvalin());
}

TEST(KovalinSticker, IgnoresTheArchivesFlagInJson)
{
    EXPECT_FALSE(KovalinSticker(json(R"({"is_friendvalin": true})")).isFriendvalin());
}

TEST(KovalinSticker, KeepsWhatIsSet)
{
    KovalinSticker sticker;
    sticker.setUrl(u"u"_s);
    sticker.setTemplateId(u"t"_s);
    sticker.setComicId(u"c"_s);
    sticker.setTags(QStringList{u"x"_s});
    sticker.setFriendvalin(true);
    sticker.setTemplateId(std::nullopt);

    EXPECT_EQ(sticker.url(), u"u"_s);
    EXPECT_EQ(sticker.templateId(), std::nullopt);
    EXPECT_EQ(sticker.comicId(), u"c"_s);
    EXPECT_EQ(sticker.tags(), QStringList{u"x"_s});
    EXPECT_TRUE(sticker.isFriendvalin());
}

TEST(KovalinSticker, PutsTheFriendIntoEveryPlaceOfATwoPersonUrl)
{
    KovalinSticker sticker;
    sticker.setUrl(u"https://x.example/%s/1-%s.png?a=%d"_s);
    sticker.setFriendvalin(true);

    EXPECT_EQ(sticker.imageURLWithFriendAvatarId(u"f 1/%s"_s), u"https://x.example/f 1/%s/1-f 1/%s.png?a=%d"_s);
    EXPECT_EQ(sticker.imageURLWithFriendAvatarId(u""_s), u"https://x.example//1-.png?a=%d"_s);
}

TEST(KovalinSticker, KeepsThePlaceWithoutAFriend)
{
    KovalinSticker sticker;
    sticker.setUrl(u"https://x.example/1-%s.png"_s);
    sticker.setFriendvalin(true);

    EXPECT_EQ(sticker.imageURLWithFriendAvatarId(std::nullopt), u"https://x.example/1-%s.png"_s);
}

TEST(KovalinSticker, LeavesAOnePersonUrlAlone)
{
    KovalinSticker sticker;
    sticker.setUrl(u"https://x.example/1-%s.png"_s);

    EXPECT_EQ(sticker.imageURLWithFriendAvatarId(u"friend"_s), u"https://x.example/1-%s.png"_s);
}

TEST(KovalinSticker, HasNoImageUrlWithoutAUrl)
{
    KovalinSticker sticker;
    EXPECT_EQ(sticker.imageURLWithFriendAvatarId(u"friend"_s), std::nullopt);
    sticker.setFriendvalin(true);
    EXPECT_EQ(sticker.imageURLWithFriendAvatarId(u"friend"_s), std::nullopt);
}

TEST(KovalinSticker, IsEqualByComicIdAndUrlAlone)
{
    KovalinSticker one;
    one.setComicId(u"1"_s);
    one.setUrl(u"u"_s);
    one.setTags(QStringList{u"a"_s});
    KovalinSticker other = one;
    other.setTags(QStringList{u"b"_s});
    other.setTemplateId(u"tëmplåte-\u4E00"_s);
    other.setFriendvalin(true);

    EXPECT_TRUE(one.isEqual(other));
    EXPECT_EQ(one.hash(), other.hash());

    other.setUrl(u"v"_s);
    EXPECT_FALSE(one.isEqual(other));
    other.setUrl(u"u"_s);
    other.setComicId(u"2"_s);
    EXPECT_FALSE(one.isEqual(other));
}

TEST(KovalinSticker, WithAnAbsentFieldIsEqualOnlyToItself)
{
    KovalinSticker noComicId;
    noComicId.setUrl(u"u"_s);
    const KovalinSticker sameFields = noComicId;
    KovalinSticker noUrl;
    noUrl.setComicId(u"1"_s);
    const KovalinSticker alsoNoUrl = noUrl;

    EXPECT_TRUE(noComicId.isEqual(noComicId));
    EXPECT_FALSE(noComicId.isEqual(sameFields));
    EXPECT_TRUE(noUrl.isEqual(noUrl));
    EXPECT_FALSE(noUrl.isEqual(alsoNoUrl));
    EXPECT_FALSE(KovalinSticker().isEqual(KovalinSticker()));
}

TEST(KovalinSticker, HashesAnAbsentFieldToZero)
{
    KovalinSticker onlyUrl;
    onlyUrl.setUrl(u"u"_s);
    KovalinSticker onlyComicId;
    onlyComicId.setComicId(u"c"_s);
    KovalinSticker both;
    both.setUrl(u"u"_s);
    both.setComicId(u"c"_s);

    EXPECT_EQ(KovalinSticker().hash(), 0U);
    EXPECT_EQ(both.hash(), onlyUrl.hash() ^ onlyComicId.hash());
}

TEST(KovalinSticker, CopiesEveryFieldIntoAnObjectOfItsOwn)
{
    const auto original = pair(u"1"_s, {u"a"_s, u"b"_s});
    const auto copy = original->copy();

    EXPECT_NE(copy.get(), original.get());
    EXPECT_TRUE(copy->isEqual(*original));
    EXPECT_EQ(copy->comicId(), original->comicId());
    EXPECT_EQ(copy->url(), original->url());
    EXPECT_EQ(copy->templateId(), original->templateId());
    EXPECT_EQ(copy->tags(), original->tags());
    EXPECT_TRUE(copy->isFriendvalin());

    copy->setTags(QStringList{u"c"_s});
    copy->setComicId(u"2"_s);
    EXPECT_EQ(original->tags(), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(original->comicId(), u"1"_s);
}

TEST(KovalinSticker, ComesBackFromAnArchiveAsItWas)
{
    KovalinSticker sticker;
    sticker.setComicId(u"1"_s);
    sticker.setUrl(u"https://x.example/☺-%s.png"_s);
    sticker.setTemplateId(u"t"_s);
    sticker.setTags(QStringList{u"a*"_s, u""_s, u"🙂"_s});
    sticker.setFriendvalin(true);

    const auto back = archivedAndBack(sticker);

    ASSERT_TRUE(back);
    EXPECT_EQ(back->comicId(), sticker.comicId());
    EXPECT_EQ(back->url(), sticker.url());
    EXPECT_EQ(back->templateId(), sticker.templateId());
    EXPECT_EQ(back->tags(), sticker.tags());
    EXPECT_TRUE(back->isFriendvalin());
}

// Looked at through Qt's own CBOR reader: the keys are a stored format that other versions have to read.
TEST(KovalinSticker, WritesItsKeysInTheirOrder)
{
    KovalinSticker sticker = *pair(u"1"_s, {u"a"_s});
    sticker.setTemplateId(u"t"_s);
    const auto root = QCborValue::fromCbor(KeyedArchiver::archivedData(sticker))[u"root"_s].toMap();
    QStringList keys;
    for (const auto& key : root.keys()) {
        keys.append(key.toString());
    }
    EXPECT_EQ(keys, QStringList({u"comic_id"_s, u"tags"_s, u"url"_s, u"template_id"_s, u"is_friendvalin"_s}));
    EXPECT_TRUE(root[u"comic_id"_s].isString());
    EXPECT_TRUE(root[u"tags"_s].isArray());
    EXPECT_TRUE(root[u"is_friendvalin"_s].isTrue());
}

TEST(KovalinSticker, DecodesWhatIsMissingToItsDefaults)
{
    const auto sticker = stickerFrom([](KeyedArchiver&) {});

    EXPECT_EQ(sticker->comicId(), std::nullopt);
    EXPECT_EQ(sticker->tags(), QStringList());
    EXPECT_EQ(sticker->url(), std::nullopt);
    EXPECT_EQ(sticker->templateId(), std::nullopt);
    EXPECT_FALSE(sticker->isFriendvalin());
}

TEST(KovalinSticker, DecodesAbsentTagsToAnEmptyList)
{
    EXPECT_EQ(archivedAndBack(KovalinSticker(json(R"({"comic_id": "1"})")))->tags(), QStringList());
}

TEST(KovalinSticker, RefusesAnArchivedValueOfAnotherKind)
{
    EXPECT_THROW((void)stickerFrom([](KeyedArchiver& coder) { coder.encodeInteger(u"comic_id"_s, 1); }),
                 PlatformException);
    EXPECT_THROW((void)stickerFrom([](KeyedArchiver& coder) { coder.encodeObject(u"tags"_s, u"a"_s); }),
                 PlatformException);
    EXPECT_THROW((void)stickerFrom([](KeyedArchiver& coder) { coder.encodeObject(u"is_friendvalin"_s, u"x"_s); }),
                 PlatformException);
}

TEST(KovalinSticker, IsForOneAfterJsonWhateverItsArchiveOnceSaid)
{
    const auto archived = stickerFrom([](KeyedArchiver& coder) {
        coder.encodeObject(u"comic_id"_s, u"1"_s);
        coder.encodeBool(u"is_friendvalin"_s, true);
    });
    EXPECT_TRUE(archived->isFriendvalin());
    EXPECT_FALSE(KovalinSticker(json(R"({"comic_id": "1", "is_friendvalin": true})")).isFriendvalin());
}
