#include "search/TagWordIndex.h"

#include "search/QXSDKKovalinPrefixSearchEngine.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;

namespace {

std::vector<quint32> matching(const std::vector<QString>& tags, const QString& text,
                              std::span<const quint8> isCandidate = {})
{
    return TagWordIndex(tags).tagsMatching(SearchWords(text), isCandidate);
}

/// What tagsMatching() must answer, from the ranks of all tags.
std::vector<quint32> ranked(const std::vector<QString>& tags, const QString& text)
{
    const auto words = SearchWords(text).toStringList();
    std::vector<std::pair<int, quint32>> found;
    for (quint32 tag = 0; tag < tags.size(); ++tag) {
        const int rank = QXSDKKovalinPrefixSearchEngine::rankForTag(tags[tag], words);
        if (!words.isEmpty() && rank != QXSDKKovalinTagRankNone) {
            found.emplace_back(rank, tag);
        }
    }
    std::sort(found.begin(), found.end());
    std::vector<quint32> order;
    for (const auto& [rank, tag] : found) {
        order.push_back(tag);
    }
    return order;
}

using Tags = std::vector<quint32>;

} // namespace

TEST(TagWordIndex, OrdersByRankAndThenByNumber)
{
    const std::vector<QString> tags{u"birthdays"_s, u"happy birthday"_s,    u"birthday party"_s,
                                    u"birthday"_s,  u"my birthday party"_s, u"Birthday!"_s};
    EXPECT_EQ(matching(tags, u"birthday"_s), Tags({3, 5, 2, 1, 4, 0}));
}

TEST(TagWordIndex, TellsALeadingPrefixMatch)
{
    const std::vector<QString> tags{u"birthday happy"_s, u"happy birthday"_s};
    EXPECT_EQ(matching(tags, u"happy b"_s), Tags({1, 0}));
}

TEST(TagWordIndex, FindsEveryTagOnce)
{
    const std::vector<QString> tags{u"ha haha hahaha"_s, u"ha ha ha"_s};
    EXPECT_EQ(matching(tags, u"h"_s), Tags({0, 1}));
    EXPECT_EQ(matching(tags, u"ha ha ha"_s), Tags({1, 0}));
}

TEST(TagWordIndex, PassesOverWhatIsNoCandidate)
{
    const std::vector<QString> tags{u"a"_s, u"ab"_s, u"abc"_s};
    const std::vector<quint8> isCandidate{0, 1, 0};
    EXPECT_EQ(matching(tags, u"a"_s, isCandidate), Tags{1});
}

TEST(TagWordIndex, FindsNothingWithoutWordsOrTags)
{
    EXPECT_EQ(matching({u"a"_s, u""_s, u"?"_s}, u" ?"_s), Tags());
    EXPECT_EQ(matching({}, u"a"_s), Tags());
    EXPECT_EQ(matching({u""_s, u"!"_s}, u"a"_s), Tags());
}

TEST(TagWordIndex, FindsNothingWhenAWordBeginsNoTagWord)
{
    EXPECT_EQ(matching({u"happy birthday"_s}, u"happy x"_s), Tags());
    EXPECT_EQ(matching({u"happy"_s, u"birthday"_s}, u"happy birthday"_s), Tags());
    EXPECT_EQ(matching({u"happy"_s}, u"happyy"_s), Tags());
}

// Enough tags that large results go the way that doesn't compare.
TEST(TagWordIndex, AgreesWithTheRanksOfAllTagsForManyAndForFew)
{
    std::mt19937 random(5);
    const QStringList syllables{u"a"_s, u"ab"_s, u"b"_s, u"ba"_s, u"bab"_s, u"é"_s, u"ÉA"_s, u"ж"_s};
    std::vector<QString> tags;
    for (int i = 0; i < 6000; ++i) {
        QString tag;
        for (auto parts = 1 + random() % 4; parts > 0; --parts) {
            tag += syllables[static_cast<qsizetype>(random() % 8)];
            if (random() % 2 == 0) {
                tag += u' ';
            }
        }
        tags.push_back(tag);
    }
    const TagWordIndex index(tags);
    for (const auto& text : {u"a"_s, u"b"_s, u"ba"_s, u"bab"_s, u"a b"_s, u"b a"_s, u"a a"_s, u"ba ba ba"_s, u"é"_s,
                             u"É a"_s, u"ababab"_s, u"ж b"_s, u"bbbbbb"_s, u"zz"_s}) {
        EXPECT_EQ(index.tagsMatching(SearchWords(text), {}), ranked(tags, text)) << text.toStdString();
    }
}
