#include "search/QXSDKKovalinLearnedSearchEngine.h"

#include "search/ScriptedClassifier.h"
#include "search/StickerBuilding.h"
#include "support/WaitFor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <thread>

using namespace kovalin::test;
using testing::IsEmpty;
using Engine = QXSDKKovalinLearnedSearchEngine;

namespace {

const QXSDKKovalinSearchResultTypes soloOnly{QXSDKKovalinSearchResultTypeSolovalin};
const QXSDKKovalinSearchResultTypes bothTypes{QXSDKKovalinSearchResultTypeSolovalin,
                                              QXSDKKovalinSearchResultTypeFriendvalin};

struct Found {
    QStringList comics;
    QStringList tags;
};

void process(Engine& engine, const KovalinPackList& packs)
{
    bool isDone = false;
    engine.processPacks(packs, [&isDone] { isDone = true; });
    ASSERT_TRUE(waitFor([&isDone] { return isDone; }));
}

Found search(Engine& engine, const QString& text, const QXSDKKovalinSearchResultTypes& types = soloOnly)
{
    std::optional<Found> found;
    engine.search(text, types, [&found](const KovalinStickerList& stickers, const QStringList& tags) {
        EXPECT_FALSE(found) << "completed twice";
        found = Found{comicIds(stickers), tags};
    });
    EXPECT_TRUE(waitFor([&found] { return found.has_value(); }));
    return found.value_or(Found());
}

KovalinPackList somePacks()
{
    return {pack(QStringLiteral("visible"), {solo(QStringLiteral("1")), pair(QStringLiteral("2"))}),
            pack(QStringLiteral("hidden"), {solo(QStringLiteral("-3"))}, false)};
}

QString catchAll(const QString& text)
{
    return QChar(0x200E) + text + QStringLiteral("...");
}

TEST(QXSDKKovalinLearnedSearchEngine, IsInitializedOnceModelAndPacksAreThere)
{
    Engine withoutModel;
    EXPECT_FALSE(withoutModel.isInitialized());
    process(withoutModel, somePacks());
    EXPECT_FALSE(withoutModel.isInitialized());

    Engine withModel(bridged(scriptedClassifier({1})));
    EXPECT_FALSE(withModel.isInitialized());
    process(withModel, somePacks());
    EXPECT_TRUE(withModel.isInitialized());

    const auto unusable = scriptedClassifier({1});
    unusable->hasModel = false;
    Engine withUnusableModel(bridged(unusable));
    process(withUnusableModel, somePacks());
    EXPECT_FALSE(withUnusableModel.isInitialized());
}

TEST(QXSDKKovalinLearnedSearchEngine, CompletesBeforeItReturnsWhileItIsntReady)
{
    Engine engine(bridged(scriptedClassifier({1})));
    const auto thread = std::this_thread::get_id();
    bool isDone = false;
    engine.search(QStringLiteral("a"), bothTypes, [&](const KovalinStickerList& stickers, const QStringList& tags) {
        EXPECT_EQ(std::this_thread::get_id(), thread);
        EXPECT_THAT(stickers, IsEmpty());
        EXPECT_THAT(tags, IsEmpty());
        isDone = true;
    });
    EXPECT_TRUE(isDone);
    EXPECT_THAT(engine.searchWithExactMatch(QStringLiteral("a"), bothTypes), IsEmpty());
}

TEST(QXSDKKovalinLearnedSearchEngine, GivesThePredictedStickersInTheirOrder)
{
    const auto classifier = scriptedClassifier({-3, 99, 2, 1, -3});
    Engine engine(bridged(classifier));
    process(engine, somePacks());
    EXPECT_EQ(search(engine, QStringLiteral("a"), bothTypes).comics,
              (QStringList{QStringLiteral("-3"), QStringLiteral("2"), QStringLiteral("1"), QStringLiteral("-3")}));
    EXPECT_EQ(classifier->lastTopN, 1000);
}

TEST(QXSDKKovalinLearnedSearchEngine, DropsTheKindsThatArentWantedAndKeepsTheOrder)
{
    Engine engine(bridged(scriptedClassifier({-3, 2, 1})));
    process(engine, somePacks());
    EXPECT_EQ(search(engine, QStringLiteral("a")).comics, (QStringList{QStringLiteral("-3"), QStringLiteral("1")}));
    EXPECT_EQ(search(engine, QStringLiteral("a"), {QXSDKKovalinSearchResultTypeFriendvalin}).comics,
              QStringList{QStringLiteral("2")});
    EXPECT_THAT(search(engine, QStringLiteral("a"), {}).comics, IsEmpty());
}

TEST(QXSDKKovalinLearnedSearchEngine, EndsTheTagsWithTheTypedTextIfThereIsAnySticker)
{
    Engine engine(bridged(scriptedClassifier({1}, {"good morning", "good"})));
    process(engine, somePacks());
    EXPECT_EQ(
        search(engine, QStringLiteral(" GOOD ")).tags,
        (QStringList{QStringLiteral("good morning"), QStringLiteral("good"), catchAll(QStringLiteral(" GOOD "))}));
}

TEST(QXSDKKovalinLearnedSearchEngine, GivesTheSuggestionsAloneWithoutASticker)
{
    Engine engine(bridged(scriptedClassifier({99, 2}, {"good"})));
    process(engine, somePacks());
    EXPECT_EQ(search(engine, QStringLiteral("goo")).tags, QStringList{QStringLiteral("good")})
        << "2 is of a kind that isn't wanted";
    EXPECT_EQ(search(engine, QStringLiteral("nothing")).tags, QStringList{QStringLiteral("good")});
}

TEST(QXSDKKovalinLearnedSearchEngine, KnowsTheLastStickerOfAComicId)
{
    Engine engine(bridged(scriptedClassifier({1})));
    const auto first = solo(QStringLiteral("1"), {QStringLiteral("first")});
    const auto last = solo(QStringLiteral("1"), {QStringLiteral("last")});
    process(engine, {pack(QStringLiteral("a"), {first}), pack(QStringLiteral("b"), {last})});
    const auto stickers = engine.searchWithExactMatch(QStringLiteral("a"), soloOnly);
    ASSERT_EQ(stickers.size(), 1);
    EXPECT_EQ(stickers.front(), last);
}

TEST(QXSDKKovalinLearnedSearchEngine, DoesntFindStickersWithoutAComicId)
{
    const auto absent = std::make_shared<KovalinSticker>();
    const auto empty = std::make_shared<KovalinSticker>();
    empty->setComicId(QString(QLatin1String("")));
    Engine engine(bridged(scriptedClassifier({0})));
    process(engine, {pack(QStringLiteral("a"), {absent, empty})});
    EXPECT_TRUE(engine.comicIdToSticker()->isEmpty());
    EXPECT_TRUE(engine.isInitialized()) << "packs without anything to find are packs";
}

TEST(QXSDKKovalinLearnedSearchEngine, PassesOverPacksAndStickersThatArentThere)
{
    Engine engine(bridged(scriptedClassifier({1})));
    process(engine, {nullptr, pack(QStringLiteral("a"), {nullptr, solo(QStringLiteral("1"))}), nullptr});
    EXPECT_EQ(search(engine, QStringLiteral("a")).comics, QStringList{QStringLiteral("1")});
}

TEST(QXSDKKovalinLearnedSearchEngine, ReplacesItsPacksAsAWhole)
{
    Engine engine(bridged(scriptedClassifier({1, 4})));
    process(engine, somePacks());
    const auto before = engine.comicIdToSticker();
    process(engine, {pack(QStringLiteral("a"), {solo(QStringLiteral("4"))})});
    EXPECT_EQ(before->size(), 3);
    EXPECT_EQ(search(engine, QStringLiteral("a")).comics, QStringList{QStringLiteral("4")});
}

TEST(QXSDKKovalinLearnedSearchEngine, AnswersAnExactMatchOnTheCallersThread)
{
    const auto thread = std::this_thread::get_id();
    const auto classifier = scriptedClassifier({2, 1});
    Engine engine(bridged(classifier));
    process(engine, somePacks());
    classifier->beforePrediction = [thread] {
        EXPECT_EQ(std::this_thread::get_id(), thread);
    };
    EXPECT_EQ(comicIds(engine.searchWithExactMatch(catchAll(QStringLiteral("a")), soloOnly)),
              QStringList{QStringLiteral("1")});
    EXPECT_EQ(classifier->lastTopN, 1000);
}

TEST(QXSDKKovalinLearnedSearchEngine, AnswersWithNothingWhenTheModelFails)
{
    const auto classifier = scriptedClassifier({1}, {"a"});
    Engine engine(bridged(classifier));
    process(engine, somePacks());
    classifier->beforePrediction = [] {
        throw std::length_error("too much");
    };
    const Found found = search(engine, QStringLiteral("a"));
    EXPECT_THAT(found.comics, IsEmpty());
    EXPECT_THAT(found.tags, IsEmpty());
    EXPECT_THAT(engine.searchWithExactMatch(QStringLiteral("a"), soloOnly), IsEmpty());
    classifier->beforePrediction = [] {
    };
    EXPECT_EQ(search(engine, QStringLiteral("a")).comics, QStringList{QStringLiteral("1")})
        << "the next one may be well";
}

TEST(QXSDKKovalinLearnedSearchEngine, CompletesEvenIfItIsGoneByThen)
{
    int completions = 0;
    {
        Engine engine(bridged(scriptedClassifier({1})));
        process(engine, somePacks());
        engine.search(QStringLiteral("a"), soloOnly, [&completions](const auto&, const auto&) { ++completions; });
        engine.processPacks(somePacks(), [&completions] { ++completions; });
    }
    EXPECT_TRUE(waitFor([&completions] { return completions == 2; }));
}

} // namespace
