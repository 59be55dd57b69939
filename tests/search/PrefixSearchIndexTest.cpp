#include "search/PrefixSearchIndex.h"

#include "StickerBuilding.h"
#include "support/PackGenerator.h"
#include "support/PlainPrefixSearch.h"
#include "support/QtPrinting.h"

#include <QtCore/QSet>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kovalin::test;

namespace {

const QList<QXSDKKovalinSearchResultTypes> allTypes{
    {},
    {QXSDKKovalinSearchResultTypeSolovalin},
    {QXSDKKovalinSearchResultTypeFriendvalin},
    {QXSDKKovalinSearchResultTypeSolovalin, QXSDKKovalinSearchResultTypeFriendvalin},
};

/// The same tags in the same order of scores; tags of equal scores may stand in any order.
void expectEqualTags(const QStringList& tags, const QList<PlainPrefixSearch::ScoredTag>& expected)
{
    ASSERT_EQ(tags.size(), expected.size());
    QHash<QString, qint64> scores;
    for (const auto& scored : expected) {
        scores.insert(scored.tag, scored.score);
    }
    ASSERT_EQ(scores.size(), expected.size());
    QSet<QString> seen;
    for (qsizetype i = 0; i < tags.size(); ++i) {
        ASSERT_TRUE(scores.contains(tags[i])) << tags[i].toStdString();
        ASSERT_EQ(scores.value(tags[i]), expected[i].score) << tags[i].toStdString();
        seen.insert(tags[i]);
    }
    ASSERT_EQ(seen.size(), tags.size()) << "a tag stands twice";
}

/// Asks both for all that they know of the packs, and for the queries.
void expectAgreement(const KovalinPackList& packs, const QStringList& queries)
{
    PlainPrefixSearch plain;
    plain.processPacks(packs);
    const PrefixSearchIndex index(packs);

    EXPECT_EQ(index.maxTagOccurrence(), plain.maxTagOccurrence);
    EXPECT_EQ(index.tagToPack(), plain.tagToPack);
    EXPECT_EQ(index.tagToEmotion(), plain.tagToEmotion);
    ASSERT_EQ(index.tagToKovalins().size(), plain.tagToKovalins.size());
    QStringList names = plain.tagToPack.keys() + plain.tagToKovalins.keys();
    for (auto set = plain.tagToKovalins.cbegin(); set != plain.tagToKovalins.cend(); ++set) {
        const auto found = index.tagToKovalins().constFind(set.key());
        ASSERT_NE(found, index.tagToKovalins().constEnd()) << set.key().toStdString();
        ASSERT_EQ(found->array(), set->array) << set.key().toStdString();
        ASSERT_EQ(found->count(), set->array.size()) << set.key().toStdString();
        ASSERT_EQ(found->hasSolovalin(), set->hasSolovalin) << set.key().toStdString();
    }
    for (const QString& name : names + queries) {
        for (const auto& types : allTypes) {
            ASSERT_EQ(index.searchWithExactMatch(name, types), plain.searchWithExactMatch(name, types))
                << name.toStdString();
        }
    }
    for (const QString& query : queries) {
        SCOPED_TRACE(query.toStdString());
        // Of the types, the tags depend only on whether two-person stickers are wanted.
        const auto soloTags = plain.tagsForSearchTerm(query, {});
        const auto allTags = plain.tagsForSearchTerm(query, {QXSDKKovalinSearchResultTypeFriendvalin});
        for (const auto& types : allTypes) {
            const auto result = index.search(query, types);
            expectEqualTags(result.tags, QXSDKKovalinSearchResultTypeHasFriendvalin(types) ? allTags : soloTags);
            if (testing::Test::HasFatalFailure()) {
                return;
            }
            // Which of two tags of equal score comes first is open, and the stickers follow the tags.
            ASSERT_EQ(result.stickers, plain.stickersForTags(result.tags, types));
            ASSERT_EQ(index.tagsForSearchTerm(query, types), result.tags);
        }
    }
}

} // namespace

TEST(PrefixSearchIndex, AgreesWithThePlainMethodOverTheExamplePacks)
{
    const auto packs = examplePacks();
    ASSERT_EQ(packs.size(), 13);
    expectAgreement(packs, generateQueries(packs, 1000, 1));
}

TEST(PrefixSearchIndex, AgreesWithThePlainMethodOverOddPacks)
{
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(seed);
        const auto packs = generateOddPacks(seed);
        expectAgreement(packs, generateQueries(packs, 120, seed));
        if (HasFailure()) {
            return;
        }
    }
}

TEST(PrefixSearchIndex, AgreesWithThePlainMethodOverManyPacks)
{
    PackShape shape;
    shape.stickers = 3000;
    shape.tags = 1500;
    shape.tagsPerSticker = 6;
    const auto packs = generatePacks(shape);
    expectAgreement(packs, generateQueries(packs, 400, 2));
}

TEST(PrefixSearchIndex, IsEmptyOfNoPacks)
{
    expectAgreement({}, {u""_s, u"a"_s});
}

TEST(PrefixSearchIndex, SkipsNullPacks)
{
    const PrefixSearchIndex index({nullptr, pack(u"p"_s, {solo(u"1"_s, {u"x"_s})}), nullptr});
    EXPECT_EQ(index.tagToKovalins().size(), 1);
}

TEST(PrefixSearchIndex, GivesTheStickersThemselvesNotCopies)
{
    const auto sticker = solo(u"1"_s, {u"x"_s});
    const PrefixSearchIndex index({pack(u"p"_s, {sticker})});
    EXPECT_EQ(index.search(u"x"_s, allTypes.last()).stickers.first(), sticker);
}

TEST(PrefixSearchIndex, LetsItsSetsOutliveIt)
{
    auto index = std::make_unique<PrefixSearchIndex>(KovalinPackList{pack(u"p"_s, {solo(u"1"_s, {u"x"_s})})});
    const QXSDKKovalinSet set = *index->tagToKovalins().constFind(u"x"_s);
    index.reset();
    EXPECT_EQ(comicIds(set.array()), QStringList{u"1"_s});
}
