#include "search/QXSDKKovalinSetBuilder.h"

#include "StickerBuilding.h"
#include "support/PlainPrefixSearch.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <random>

using namespace Qt::StringLiterals;
using namespace kovalin::test;

namespace {

QStringList builtIds(const QXSDKKovalinSetBuilder& builder)
{
    return comicIds(builder.build().array());
}

} // namespace

TEST(QXSDKKovalinSetBuilder, BuildsAnEmptySetOfNothing)
{
    const QXSDKKovalinSetBuilder builder;

    EXPECT_FALSE(builder.hasSolovalin());
    EXPECT_EQ(builder.build().count(), 0);
    EXPECT_FALSE(builder.build().hasSolovalin());
}

TEST(QXSDKKovalinSetBuilder, PutsTwoPersonStickersFirstInReverse)
{
    QXSDKKovalinSetBuilder builder;
    builder.addKovalin(solo(u"A"_s), false);
    builder.addKovalin(pair(u"C"_s), false);
    builder.addKovalin(solo(u"B"_s), false);
    builder.addKovalin(pair(u"D"_s), false);

    EXPECT_EQ(builtIds(builder), QStringList({u"D"_s, u"C"_s, u"A"_s, u"B"_s}));
    EXPECT_TRUE(builder.build().hasSolovalin());
    EXPECT_EQ(builder.build().count(), 4);
}

TEST(QXSDKKovalinSetBuilder, PutsTheStarSegmentFirst)
{
    QXSDKKovalinSetBuilder builder;
    builder.addKovalin(solo(u"plain"_s), false);
    builder.addKovalin(pair(u"plain pair"_s), false);
    builder.addKovalin(solo(u"star"_s), true);
    builder.addKovalin(pair(u"star pair"_s), true);
    builder.addKovalin(pair(u"star pair 2"_s), true);

    EXPECT_EQ(comicIds(builder.starTagged()), QStringList({u"star pair 2"_s, u"star pair"_s, u"star"_s}));
    EXPECT_EQ(comicIds(builder.nonStarTagged()), QStringList({u"plain pair"_s, u"plain"_s}));
    EXPECT_EQ(builtIds(builder), comicIds(builder.starTagged() + builder.nonStarTagged()));
}

TEST(QXSDKKovalinSetBuilder, MovesAStickerToTheStarSegment)
{
    for (const bool isPair : {false, true}) {
        const auto a = isPair ? pair(u"A"_s) : solo(u"A"_s);
        QXSDKKovalinSetBuilder builder;
        builder.addKovalin(a, false);
        builder.addKovalin(a, true);

        EXPECT_EQ(builder.starTagged(), KovalinStickerList{a});
        EXPECT_TRUE(builder.nonStarTagged().isEmpty());
        EXPECT_EQ(builder.hasSolovalin(), !isPair);
    }
}

TEST(QXSDKKovalinSetBuilder, LeavesAStickerInTheStarSegment)
{
    for (const bool isPair : {false, true}) {
        const auto a = isPair ? pair(u"A"_s) : solo(u"A"_s);
        QXSDKKovalinSetBuilder builder;
        builder.addKovalin(a, true);
        builder.addKovalin(a, false);

        EXPECT_EQ(builder.starTagged(), KovalinStickerList{a});
        EXPECT_TRUE(builder.nonStarTagged().isEmpty());
    }
}

TEST(QXSDKKovalinSetBuilder, HasNoOnePersonStickerInATwoPersonSet)
{
    QXSDKKovalinSetBuilder builder;
    builder.addKovalin(pair(u"A"_s), false);
    builder.addKovalin(pair(u"B"_s), true);

    EXPECT_FALSE(builder.hasSolovalin());
    EXPECT_FALSE(builder.build().hasSolovalin());
}

TEST(QXSDKKovalinSetBuilder, KeepsAPlaceThatIsTaken)
{
    QXSDKKovalinSetBuilder builder;
    builder.addKovalin(pair(u"A"_s), false);
    builder.addKovalin(pair(u"B"_s), false);
    builder.addKovalin(pair(u"A"_s), false);
    builder.addKovalin(solo(u"C"_s), false);
    builder.addKovalin(solo(u"D"_s), false);
    builder.addKovalin(solo(u"C"_s), false);

    EXPECT_EQ(builtIds(builder), QStringList({u"B"_s, u"A"_s, u"C"_s, u"D"_s}));
}

TEST(QXSDKKovalinSetBuilder, KeepsTheFirstOfEqualStickers)
{
    const auto first = solo(u"A"_s);
    const auto equal = solo(u"A"_s);
    QXSDKKovalinSetBuilder builder;
    builder.addKovalin(first, false);
    builder.addKovalin(equal, false);
    EXPECT_EQ(builder.build().array(), KovalinStickerList{first});

    // The star brings in the object that carries it.
    builder.addKovalin(equal, true);
    EXPECT_EQ(builder.build().array(), KovalinStickerList{equal});
}

TEST(QXSDKKovalinSetBuilder, CountsAOnePersonStickerBesideItsTwoPersonEqual)
{
    QXSDKKovalinSetBuilder plain;
    plain.addKovalin(pair(u"A"_s), false);
    plain.addKovalin(solo(u"A"_s), false);
    EXPECT_TRUE(plain.hasSolovalin());
    EXPECT_EQ(plain.build().count(), 1);

    QXSDKKovalinSetBuilder starred;
    starred.addKovalin(pair(u"A"_s), true);
    starred.addKovalin(solo(u"A"_s), true);
    EXPECT_FALSE(starred.hasSolovalin());
}

TEST(QXSDKKovalinSetBuilder, TakesStickersWithoutIdentityForDifferent)
{
    const auto a = std::make_shared<const KovalinSticker>();
    const auto b = std::make_shared<const KovalinSticker>();
    QXSDKKovalinSetBuilder builder;
    builder.addKovalin(a, false);
    builder.addKovalin(b, false);
    builder.addKovalin(a, false);

    EXPECT_EQ(builder.build().array(), KovalinStickerList({a, b}));
}

TEST(QXSDKKovalinSetBuilder, MayBeUsedOnAfterABuild)
{
    QXSDKKovalinSetBuilder builder;
    builder.addKovalin(solo(u"A"_s), false);
    const auto before = builder.build();
    builder.addKovalin(solo(u"B"_s), true);

    EXPECT_EQ(comicIds(before.array()), QStringList{u"A"_s});
    EXPECT_EQ(builtIds(builder), QStringList({u"B"_s, u"A"_s}));
}

TEST(QXSDKKovalinSetBuilder, AgreesWithTwoOrderedSets)
{
    std::mt19937 random(11);
    KovalinStickerList stickers;
    for (int i = 0; i < 8; ++i) {
        const QString comicId = QString::number(i / 2); // two equal stickers of each, of either kind
        stickers.append((random() & 1U) != 0 ? solo(comicId) : pair(comicId));
    }
    stickers.append(std::make_shared<const KovalinSticker>());
    for (int round = 0; round < 2000; ++round) {
        QXSDKKovalinSetBuilder builder;
        PlainPrefixSearch::SetBuilder plain;
        const auto length = random() % 14;
        for (unsigned step = 0; step < length; ++step) {
            const auto& sticker = stickers[static_cast<qsizetype>(random() % 9)];
            const bool isStarTag = random() % 3 == 0;
            builder.addKovalin(sticker, isStarTag);
            plain.addKovalin(sticker, isStarTag);
        }
        ASSERT_EQ(builder.starTagged(), plain.starTagged.list()) << round;
        ASSERT_EQ(builder.nonStarTagged(), plain.nonStarTagged.list()) << round;
        ASSERT_EQ(builder.build().array(), plain.build()) << round;
        ASSERT_EQ(builder.hasSolovalin(), plain.hasSolovalin) << round;
    }
}
