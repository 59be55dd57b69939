#include "search/QXSDKKovalinPrefixSearchEngine.h"

#include "StickerBuilding.h"
#include "platform/dispatch/ThreadCheck.h"
#include "support/QtPrinting.h"
#include "support/WaitFor.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;
using namespace kovalin::test;

namespace {

const QXSDKKovalinSearchResultTypes soloOnly{QXSDKKovalinSearchResultTypeSolovalin};
const QXSDKKovalinSearchResultTypes pairOnly{QXSDKKovalinSearchResultTypeFriendvalin};
const QXSDKKovalinSearchResultTypes both{QXSDKKovalinSearchResultTypeSolovalin,
                                         QXSDKKovalinSearchResultTypeFriendvalin};

struct Answer {
    int calls = 0;
    QStringList stickers;
    QStringList tags;
    bool onMainThread = false;
};

struct Observer final : QXSDKKovalinSearchEngineObserver {
    void searchEngineDidProcessPacks() override
    {
        ++calls;
        if (onCall) {
            onCall();
        }
    }

    int calls = 0;
    std::function<void()> onCall;
};

class QXSDKKovalinPrefixSearchEngineTest : public testing::Test {
protected:
    void build(const KovalinPackList& packs)
    {
        bool done = false;
        engine->processPacks(packs, [&done] { done = true; });
        ASSERT_TRUE(waitFor([&done] { return done; }));
    }

    Answer search(const QString& text, const QXSDKKovalinSearchResultTypes& types = soloOnly)
    {
        Answer answer;
        engine->search(text, types, [&answer](const KovalinStickerList& stickers, const QStringList& tags) {
            ++answer.calls;
            answer.stickers = comicIds(stickers);
            answer.tags = tags;
            answer.onMainThread = kovalin::platform::isMainThread();
        });
        EXPECT_EQ(answer.calls, 0) << "the completion ran inside the call";
        EXPECT_TRUE(waitFor([&answer] { return answer.calls > 0; }));
        return answer;
    }

    int rank(const QString& tag, const QString& text)
    {
        return QXSDKKovalinPrefixSearchEngine::rankForTag(tag,
                                                          QXSDKKovalinPrefixSearchEngine::wordsForSearchTerm(text));
    }

    QStringList exact(const QString& tag, const QXSDKKovalinSearchResultTypes& types = soloOnly)
    {
        return comicIds(engine->searchWithExactMatch(tag, types));
    }

    std::unique_ptr<QXSDKKovalinPrefixSearchEngine> engine = std::make_unique<QXSDKKovalinPrefixSearchEngine>();
};

} // namespace

// Before the first build.

TEST_F(QXSDKKovalinPrefixSearchEngineTest, AnswersNothingBeforeTheFirstBuild)
{
    EXPECT_FALSE(engine->isInitialized());
    const auto answer = search(u"happy"_s, both);
    EXPECT_EQ(answer.calls, 1);
    EXPECT_TRUE(answer.stickers.isEmpty());
    EXPECT_TRUE(answer.tags.isEmpty());
    EXPECT_TRUE(engine->tagsForSearchTerm(u"happy"_s, both).isEmpty());
    EXPECT_TRUE(exact(u"happy"_s, both).isEmpty());
    EXPECT_EQ(engine->emotionForTag(u"happy"_s), QXSDKKovalinEmotionUnknown);
    EXPECT_EQ(engine->packForTag(u"happy"_s), nullptr);
    EXPECT_EQ(engine->occurenceRankForTag(u"happy"_s), 0);
    EXPECT_EQ(engine->rankValueForRank(QXSDKKovalinTagRankPrefix), 0);
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, IsInitializedByAnEmptyPackList)
{
    build({});
    EXPECT_TRUE(engine->isInitialized());
    EXPECT_EQ(engine->rankValueForRank(QXSDKKovalinTagRankPrefix), 0);
    EXPECT_TRUE(search(u"happy"_s).tags.isEmpty());
}

// What of the packs enters the index.

TEST_F(QXSDKKovalinPrefixSearchEngineTest, FindsAStarTagUnderItsPlainText)
{
    for (const QStringList& tags : {QStringList{u"happy*"_s, u"happy"_s}, QStringList{u"happy"_s, u"happy*"_s}}) {
        build({pack(u"p"_s, {solo(u"plain"_s, {u"happy"_s}), solo(u"both"_s, tags)})});
        EXPECT_EQ(exact(u"happy"_s), QStringList({u"both"_s, u"plain"_s}));
        EXPECT_TRUE(exact(u"happy*"_s).isEmpty());
        EXPECT_EQ(search(u"happy"_s).tags, QStringList{u"happy"_s});
    }
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, KeepsTheEmptyTagOfASingleStarOutOfReachOfText)
{
    build({pack(u"p"_s, {solo(u"1"_s, {u"*"_s, u"x"_s})})});
    EXPECT_EQ(exact(u""_s), QStringList{u"1"_s});
    EXPECT_TRUE(search(u""_s).tags.isEmpty());
    EXPECT_EQ(search(u"x"_s).tags, QStringList{u"x"_s});
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, CutsOneStarOnly)
{
    build({pack(u"p"_s, {solo(u"1"_s, {u"**"_s, u"a**"_s})})});
    EXPECT_EQ(exact(u"*"_s), QStringList{u"1"_s});
    EXPECT_EQ(exact(u"a*"_s), QStringList{u"1"_s});
    EXPECT_TRUE(exact(u"a"_s).isEmpty());
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, DropsTagsWithANumberSignInFrontOrAColon)
{
    build({pack(u"p"_s, {solo(u"1"_s, {u"#a"_s, u"b:c"_s, u":"_s, u"d:*"_s, u"#*"_s, u"e#"_s})}, true, u"greeting"_s)});
    for (const auto& tag : {u"#a"_s, u"a"_s, u"b:c"_s, u":"_s, u"d:"_s, u"d:*"_s, u"#"_s, u"#*"_s}) {
        EXPECT_TRUE(exact(tag).isEmpty()) << tag.toStdString();
        EXPECT_EQ(engine->emotionForTag(tag), QXSDKKovalinEmotionUnknown) << tag.toStdString();
    }
    EXPECT_EQ(exact(u"e#"_s), QStringList{u"1"_s});
    EXPECT_TRUE(search(u"b"_s).tags.isEmpty());
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, TellsTagsApartByCase)
{
    build({pack(u"p"_s, {solo(u"1"_s, {u"Happy"_s}), solo(u"2"_s, {u"happy"_s}), solo(u"3"_s, {u"happy"_s})})});
    EXPECT_EQ(exact(u"Happy"_s), QStringList{u"1"_s});
    EXPECT_EQ(exact(u"happy"_s), QStringList({u"2"_s, u"3"_s}));
    EXPECT_EQ(search(u"HAPPY"_s).tags, QStringList({u"happy"_s, u"Happy"_s}));
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, FindsStickersOfAnInvisiblePackButNotItsTitle)
{
    const auto invisible = pack(u"secret"_s, {solo(u"1"_s, {u"happy"_s})}, false);
    build({invisible});
    EXPECT_EQ(engine->packForTag(u"secret"_s), nullptr);
    EXPECT_TRUE(exact(u"secret"_s).isEmpty());
    EXPECT_EQ(search(u"happy"_s).stickers, QStringList{u"1"_s});
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, PassesOverAPackWithoutStickers)
{
    build({pack(u"empty"_s, {}), nullptr});
    EXPECT_EQ(engine->packForTag(u"empty"_s), nullptr);
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, HasNoTitleForAPackWithoutOne)
{
    build({pack(std::nullopt, {solo(u"1"_s, {u"happy"_s})})});
    EXPECT_EQ(engine->packForTag(u""_s), nullptr);
    EXPECT_EQ(exact(u"happy"_s), QStringList{u"1"_s});
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, KeepsTheLaterOfTwoPacksOfOneTitle)
{
    const auto first = pack(u"t"_s, {solo(u"1"_s)});
    const auto second = pack(u"t"_s, {solo(u"2"_s)});
    build({first, second});
    EXPECT_EQ(engine->packForTag(u"t"_s), second);
    EXPECT_EQ(exact(u"t"_s), QStringList{u"2"_s});
    build({second, pack(u"t"_s, {solo(u"3"_s)}, false), pack(u"t"_s, {})});
    EXPECT_EQ(engine->packForTag(u"t"_s), second);
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, KeepsTheEmotionOfTheLastPackThatHasOne)
{
    const KovalinStickerList stickers{solo(u"1"_s, {u"tag"_s, u"starred*"_s})};
    build({pack(u"a"_s, stickers, true, u"positive"_s), pack(u"b"_s, stickers, true, u"other"_s),
           pack(u"c"_s, stickers, true, std::nullopt)});
    EXPECT_EQ(engine->emotionForTag(u"tag"_s), QXSDKKovalinEmotionPositive);
    EXPECT_EQ(engine->emotionForTag(u"starred"_s), QXSDKKovalinEmotionPositive);

    build({pack(u"a"_s, stickers, false, u"greeting"_s), pack(u"b"_s, stickers, false, u"occasions"_s)});
    EXPECT_EQ(engine->emotionForTag(u"tag"_s), QXSDKKovalinEmotionOccasions);
    EXPECT_EQ(engine->emotionForTag(u"unknown"_s), QXSDKKovalinEmotionUnknown);
    EXPECT_EQ(engine->emotionForTag(u"Tag"_s), QXSDKKovalinEmotionUnknown);

    build({pack(u"a"_s, stickers)});
    EXPECT_EQ(engine->emotionForTag(u"tag"_s), QXSDKKovalinEmotionUnknown);
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, BuildsFromNothingEachTime)
{
    build({pack(u"one"_s, manySolo(u"a"_s, 10, {u"happy"_s}), true, u"positive"_s)});
    EXPECT_EQ(engine->rankValueForRank(QXSDKKovalinTagRankWordsLeading), 10);

    build({pack(u"two"_s, {solo(u"b"_s, {u"sad"_s})})});
    EXPECT_TRUE(exact(u"happy"_s).isEmpty());
    EXPECT_EQ(engine->packForTag(u"one"_s), nullptr);
    EXPECT_EQ(engine->emotionForTag(u"happy"_s), QXSDKKovalinEmotionUnknown);
    EXPECT_EQ(engine->rankValueForRank(QXSDKKovalinTagRankWordsLeading), 1);
    EXPECT_TRUE(search(u"happy"_s).tags.isEmpty());
}

// Ranks.

TEST_F(QXSDKKovalinPrefixSearchEngineTest, RanksTagsByTheirWords)
{
    struct Row {
        QString text;
        QString tag;
        int rank;
    };
    for (const Row& row : {
             Row{u"birthday"_s, u"birthday"_s, 0},
             Row{u"happy birthday"_s, u"Happy-Birthday!"_s, 0},
             Row{u"birthday"_s, u"birthday party"_s, 1},
             Row{u"happy birthday"_s, u"happy first birthday"_s, 1},
             Row{u"birthday"_s, u"happy birthday"_s, 2},
             Row{u"birthday happy"_s, u"happy birthday"_s, 2},
             Row{u"happy b"_s, u"happy birthday"_s, 3},
             Row{u"happy b"_s, u"birthday happy"_s, 4},
             Row{u"b"_s, u"happy birthday"_s, 4},
             Row{u"hap"_s, u"happy"_s, 4},
             Row{u"h h"_s, u"happy"_s, 4},         // one tag word serves two search words
             Row{u"happy happy"_s, u"happy"_s, 1}, // one occurrence is enough
             Row{u"happy"_s, u"happy happy"_s, 1},
             Row{u"happy x"_s, u"happy birthday"_s, 5},
             Row{u"appy"_s, u"happy"_s, 5},
             Row{u"happyy"_s, u"happy"_s, 5},
             Row{u"Don't"_s, u"dont"_s, 0},
             Row{u"dont"_s, u"Don't"_s, 0},
             Row{u"don’t"_s, u"don't"_s, 5}, // a typographic apostrophe separates
             Row{u"x"_s, u""_s, 5},
         }) {
        EXPECT_EQ(rank(row.tag, row.text), row.rank) << row.text.toStdString() << " / " << row.tag.toStdString();
    }
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, FindsTagsByTheSameRanks)
{
    const QStringList tags{u"birthday happy"_s, u"happy birthday"_s, u"birthday party"_s, u"birthday"_s, u"dont"_s};
    build({pack(u"p"_s, {solo(u"1"_s, tags)})});
    EXPECT_EQ(engine->tagsForSearchTerm(u"happy b"_s, soloOnly),
              QStringList({u"happy birthday"_s, u"birthday happy"_s}));
    EXPECT_EQ(engine->tagsForSearchTerm(u"birthday"_s, soloOnly).first(), u"birthday"_s);
    EXPECT_EQ(engine->tagsForSearchTerm(u"birthday"_s, soloOnly).last(), u"happy birthday"_s);
    EXPECT_EQ(engine->tagsForSearchTerm(u"Don't"_s, soloOnly), QStringList{u"dont"_s});
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, ComparesWordLists)
{
    using Engine = QXSDKKovalinPrefixSearchEngine;
    const QStringList tag{u"happy"_s, u"birthday"_s};

    EXPECT_TRUE(Engine::hasExactMatchWithTagWords(tag, tag));
    EXPECT_FALSE(Engine::hasExactMatchWithTagWords(tag, {u"birthday"_s, u"happy"_s}));
    EXPECT_FALSE(Engine::hasExactMatchWithTagWords(tag, {u"happy"_s}));

    EXPECT_TRUE(Engine::containsExactWordsWithTagWords(tag, {u"birthday"_s, u"happy"_s}));
    EXPECT_TRUE(Engine::containsExactWordsWithTagWords(tag, {u"happy"_s, u"happy"_s}));
    EXPECT_FALSE(Engine::containsExactWordsWithTagWords(tag, {u"happy"_s, u"b"_s}));

    EXPECT_TRUE(Engine::prefixMatchesWordsWithTagWords(tag, {u"b"_s, u"happy"_s}));
    EXPECT_TRUE(Engine::prefixMatchesWordsWithTagWords(tag, {u"h"_s, u"ha"_s}));
    EXPECT_FALSE(Engine::prefixMatchesWordsWithTagWords(tag, {u"h"_s, u"x"_s}));
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, RanksAgainstNoSearchWordsWithoutReadingPastThem)
{
    EXPECT_EQ(rank(u""_s, u""_s), 0);
    EXPECT_EQ(rank(u"happy"_s, u""_s), 2);
}

// Scores.

TEST_F(QXSDKKovalinPrefixSearchEngineTest, LetsTheRankDecideBeforeTheCount)
{
    auto stickers = manySolo(u"many"_s, 10, {u"happy birthday"_s});
    stickers.append(solo(u"one"_s, {u"birthday party"_s}));
    build({pack(u"p"_s, stickers)});

    const auto score = [this](const QString& tag) {
        const auto words = QXSDKKovalinPrefixSearchEngine::wordsForSearchTerm(u"birthday"_s);
        return engine->rankValueForRank(QXSDKKovalinPrefixSearchEngine::rankForTag(tag, words)) +
               engine->occurenceRankForTag(tag);
    };
    EXPECT_EQ(score(u"birthday party"_s), 19);
    EXPECT_EQ(score(u"happy birthday"_s), 20);
    EXPECT_EQ(search(u"birthday"_s).tags, QStringList({u"birthday party"_s, u"happy birthday"_s}));
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, PutsTheTagWithMoreStickersFirstAmongEqualRanks)
{
    build({pack(u"p"_s, manySolo(u"a"_s, 2, {u"happy b"_s}) + manySolo(u"b"_s, 3, {u"happy c"_s}) +
                            manySolo(u"c"_s, 1, {u"happy a"_s}))});
    EXPECT_EQ(engine->occurenceRankForTag(u"happy c"_s), 0);
    EXPECT_EQ(engine->occurenceRankForTag(u"happy a"_s), 2);
    EXPECT_EQ(engine->occurenceRankForTag(u"unknown"_s), 3);
    EXPECT_EQ(search(u"happy"_s).tags, QStringList({u"happy c"_s, u"happy b"_s, u"happy a"_s}));
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, MultipliesRanksByTheLargestCount)
{
    build({pack(u"p"_s, manySolo(u"a"_s, 7, {u"x"_s}))});
    for (int rank = QXSDKKovalinTagRankExact; rank <= QXSDKKovalinTagRankNone; ++rank) {
        EXPECT_EQ(engine->rankValueForRank(static_cast<QXSDKKovalinTagRank>(rank)), rank * 7);
    }
}

// Free text.

TEST_F(QXSDKKovalinPrefixSearchEngineTest, AnswersATextWithoutWordsWithEmptyLists)
{
    build({pack(u"p"_s, {solo(u"1"_s, {u"happy"_s, u"?"_s, u" "_s})})});
    for (const auto& text : {u""_s, u"   "_s, u"?!…"_s, u"'"_s, u"\t"_s}) {
        const auto answer = search(text);
        EXPECT_EQ(answer.calls, 1);
        EXPECT_TRUE(answer.tags.isEmpty());
        EXPECT_TRUE(answer.stickers.isEmpty());
    }
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, AnswersOnTheMainThread)
{
    build({pack(u"p"_s, {solo(u"1"_s, {u"happy"_s})})});
    EXPECT_TRUE(search(u"happy"_s).onMainThread);
    EXPECT_TRUE(search(u""_s).onMainThread);
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, KeepsAStickerUnderItsBestTag)
{
    build({pack(u"p"_s, {solo(u"1"_s, {u"birthday party"_s}), solo(u"2"_s, {u"birthday party"_s, u"birthday"_s}),
                         solo(u"3"_s, {u"birthdays"_s, u"birthday"_s}), solo(u"2"_s, {u"birthdays"_s})})});
    const auto answer = search(u"birthday"_s);
    EXPECT_EQ(answer.tags.first(), u"birthday"_s);
    EXPECT_EQ(answer.stickers, QStringList({u"2"_s, u"3"_s, u"1"_s}));
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, DoesNotSuggestTitles)
{
    build({pack(u"Birthday"_s, {solo(u"1"_s, {u"cake"_s})})});
    EXPECT_TRUE(search(u"birthday"_s).tags.isEmpty());
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, AnswersATagThatIsATitleWithTheWholePack)
{
    build({pack(u"love"_s, {solo(u"1"_s, {u"kiss"_s}), solo(u"2"_s, {u"love"_s}), pair(u"3"_s, {u"love"_s})}),
           pack(u"other"_s, {solo(u"4"_s, {u"love*"_s})})});
    EXPECT_EQ(exact(u"love"_s, both), QStringList({u"1"_s, u"2"_s, u"3"_s}));
    EXPECT_EQ(exact(u"love"_s, soloOnly), QStringList({u"1"_s, u"2"_s}));
    EXPECT_EQ(search(u"love"_s, both).stickers, QStringList({u"1"_s, u"2"_s, u"3"_s}));
    EXPECT_EQ(search(u"lov"_s, pairOnly).stickers, QStringList{u"3"_s});
    EXPECT_EQ(search(u"love"_s, both).tags, QStringList{u"love"_s});
}

// Result types.

TEST_F(QXSDKKovalinPrefixSearchEngineTest, SuggestsATwoPersonTagOnlyWhenTwoPersonStickersAreWanted)
{
    build({pack(u"p"_s, {pair(u"1"_s, {u"hug"_s})})});
    EXPECT_TRUE(search(u"hug"_s, soloOnly).tags.isEmpty());
    EXPECT_TRUE(search(u"hug"_s, {}).tags.isEmpty());
    EXPECT_EQ(search(u"hug"_s, both).tags, QStringList{u"hug"_s});
    EXPECT_EQ(search(u"hug"_s, pairOnly).tags, QStringList{u"hug"_s});
    EXPECT_EQ(search(u"hug"_s, both).stickers, QStringList{u"1"_s});
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, SuggestsAOnePersonTagWhateverIsWanted)
{
    build({pack(u"p"_s, {solo(u"1"_s, {u"hug"_s})})});
    for (const auto& types : {pairOnly, QXSDKKovalinSearchResultTypes{}}) {
        const auto answer = search(u"hug"_s, types);
        EXPECT_EQ(answer.tags, QStringList{u"hug"_s});
        EXPECT_TRUE(answer.stickers.isEmpty());
    }
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, FiltersExactMatchesInOrder)
{
    build({pack(u"p"_s,
                {solo(u"1"_s, {u"x"_s}), pair(u"2"_s, {u"x"_s}), solo(u"3"_s, {u"x*"_s}), pair(u"4"_s, {u"x"_s})})});
    EXPECT_EQ(exact(u"x"_s, both), QStringList({u"3"_s, u"4"_s, u"2"_s, u"1"_s}));
    EXPECT_EQ(exact(u"x"_s, soloOnly), QStringList({u"3"_s, u"1"_s}));
    EXPECT_EQ(exact(u"x"_s, pairOnly), QStringList({u"4"_s, u"2"_s}));
    EXPECT_TRUE(exact(u"x"_s, {}).isEmpty());
    EXPECT_TRUE(exact(u"X"_s, both).isEmpty());
    EXPECT_TRUE(exact(u"x "_s, both).isEmpty());
}

// Observers, order, lifetime.

TEST_F(QXSDKKovalinPrefixSearchEngineTest, TellsObserversBeforeTheCompletion)
{
    const auto observer = std::make_shared<Observer>();
    const auto removed = std::make_shared<Observer>();
    auto dead = std::make_shared<Observer>();
    engine->addObserver(observer);
    engine->addObserver(observer);
    engine->addObserver(removed);
    engine->addObserver(dead);
    engine->removeObserver(removed);
    dead.reset();

    int toldBefore = -1;
    bool onMainThread = false;
    observer->onCall = [&onMainThread] {
        onMainThread = kovalin::platform::isMainThread();
    };
    engine->processPacks({}, [&] { toldBefore = observer->calls; });
    EXPECT_EQ(observer->calls, 0);
    ASSERT_TRUE(waitFor([&] { return toldBefore >= 0; }));
    EXPECT_EQ(toldBefore, 1);
    EXPECT_TRUE(onMainThread);
    EXPECT_EQ(removed->calls, 0);
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, ShowsObserversTheNewIndex)
{
    const auto observer = std::make_shared<Observer>();
    QStringList found;
    observer->onCall = [&] {
        found = exact(u"happy"_s);
    };
    engine->addObserver(observer);
    build({pack(u"p"_s, {solo(u"1"_s, {u"happy"_s})})});
    EXPECT_EQ(found, QStringList{u"1"_s});
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, LetsASearchWaitForTheBuildBeforeIt)
{
    // No turn of the event loop between the calls: the search is queued behind a build that has not run yet.
    QStringList order;
    engine->processPacks({pack(u"p"_s, manySolo(u"a"_s, 5000, {u"happy"_s}))}, [&order] { order.append(u"built"_s); });
    qsizetype found = -1;
    engine->search(u"happy"_s, soloOnly, [&](const KovalinStickerList& stickers, const QStringList&) {
        found = stickers.size();
        order.append(u"searched"_s);
    });
    ASSERT_TRUE(waitFor([&found] { return found >= 0; }));
    EXPECT_EQ(found, 5000);
    EXPECT_EQ(order, QStringList({u"built"_s, u"searched"_s}));
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, CallsEveryCompletionThoughItDied)
{
    const auto observer = std::make_shared<Observer>();
    engine->addObserver(observer);
    int built = 0;
    int searched = 0;
    for (int i = 0; i < 10; ++i) {
        engine->processPacks({pack(u"p"_s, manySolo(u"a"_s, 1000, {u"happy"_s}))}, [&built] { ++built; });
        engine->search(u"happy"_s, soloOnly, [&searched](const auto&, const auto&) { ++searched; });
    }
    engine.reset();
    ASSERT_TRUE(waitFor([&] { return built == 10 && searched == 10; }));
    drainMainQueue();
    EXPECT_EQ(built, 10);
    EXPECT_EQ(searched, 10);
    EXPECT_EQ(observer->calls, 0);
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, MayDieInItsOwnCompletion)
{
    bool done = false;
    engine->processPacks({}, [&] {
        engine.reset();
        done = true;
    });
    ASSERT_TRUE(waitFor([&done] { return done; }));
    EXPECT_EQ(engine, nullptr);
}

TEST_F(QXSDKKovalinPrefixSearchEngineTest, LeavesSetsReadableAfterTheNextBuild)
{
    build({pack(u"p"_s, {solo(u"1"_s, {u"happy"_s})})});
    const auto found = engine->searchWithExactMatch(u"happy"_s, soloOnly);
    build({});
    engine.reset();
    EXPECT_EQ(comicIds(found), QStringList{u"1"_s});
}
