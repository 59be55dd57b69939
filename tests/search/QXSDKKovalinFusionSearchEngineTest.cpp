#include "search/QXSDKKovalinFusionSearchEngine.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/CachesDirectory.h"
#include "search/QXSDKKovalinLearnedSearchConfig.h"
#include "search/QXSDKKovalinLearnedSearchEngine.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"
#include "search/ScriptedClassifier.h"
#include "search/StickerBuilding.h"
#include "support/ManualWaitClock.h"
#include "support/RecordingMetricsQueue.h"
#include "support/WaitFor.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <utility>

using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;
using Engine = QXSDKKovalinFusionSearchEngine;

namespace {

const QXSDKKovalinSearchResultTypes soloOnly{QXSDKKovalinSearchResultTypeSolovalin};

class FixedConfig final : public QXSDKKovalinLearnedSearchConfig {
public:
    explicit FixedConfig(bool isEnabled)
        : _isEnabled(isEnabled)
    {
    }
    [[nodiscard]] bool isLearnedSearchEnabled() const override { return _isEnabled; }

private:
    bool _isEnabled;
};

struct Found {
    QStringList comics;
    QStringList tags;
};

/// A door that a thread waits at until the test opens it.
class Door final {
public:
    void open()
    {
        const std::scoped_lock lock(_mutex);
        _isOpen = true;
        _opened.notify_all();
    }
    void pass()
    {
        std::unique_lock lock(_mutex);
        _opened.wait(lock, [this] { return _isOpen; });
    }

private:
    std::mutex _mutex;
    std::condition_variable _opened;
    bool _isOpen = false;
};

/// Engines whose learned one has a scripted classifier. What the configuration enables is asked for only after the engine was
/// made, so that no model is delivered.
class QXSDKKovalinFusionSearchEngineTest : public testing::Test {
protected:
    class SwitchableConfig final : public QXSDKKovalinLearnedSearchConfig {
    public:
        bool isEnabled = false;
        [[nodiscard]] bool isLearnedSearchEnabled() const override { return isEnabled; }
    };

    QXSDKKovalinFusionSearchEngineTest() { config->isEnabled = true; }

    void process(const KovalinPackList& packs)
    {
        bool isDone = false;
        engine->processPacks(packs, [&isDone] { isDone = true; });
        ASSERT_TRUE(waitFor([&isDone, this] { return isDone && learned->comicIdToSticker(); }));
    }

    /// The prefix engine's queue lets go of a job's packs before its next job; those here don't go before the door is open.
    void stopPrefixQueueAt(Door& door)
    {
        for (bool isStopped = false; !isStopped;) {
            isStopped = true;
            const auto passOffTheMainThread = [&door, &isStopped](const KovalinPack* last) {
                if (kovalin::platform::isMainThread()) {
                    isStopped =
                        false; // the job was done before the call that asked for it, whose packs were the last then
                } else {
                    door.pass();
                }
                delete last;
            };
            bool isIndexed = false;
            prefix->processPacks({KovalinPackPtr(new KovalinPack, passOffTheMainThread)},
                                 [&isIndexed] { isIndexed = true; });
            ASSERT_TRUE(waitFor([&isIndexed] { return isIndexed; }));
        }
    }

    std::shared_ptr<std::optional<Found>> start(const QString& text)
    {
        auto found = std::make_shared<std::optional<Found>>();
        engine->search(text, soloOnly, [found](const KovalinStickerList& stickers, const QStringList& tags) {
            EXPECT_TRUE(kovalin::platform::isMainThread());
            EXPECT_FALSE(*found) << "completed twice";
            *found = Found{comicIds(stickers), tags};
        });
        return found;
    }

    Found search(const QString& text)
    {
        const auto found = start(text);
        EXPECT_TRUE(waitFor([&found] { return found->has_value(); }));
        return found->value_or(Found());
    }

    std::shared_ptr<ScriptedClassifier> classifier = scriptedClassifier({2, 4}, {"b", "c"});
    std::shared_ptr<QXSDKKovalinPrefixSearchEngine> prefix = std::make_shared<QXSDKKovalinPrefixSearchEngine>();
    std::shared_ptr<QXSDKKovalinLearnedSearchEngine> learned =
        std::make_shared<QXSDKKovalinLearnedSearchEngine>(bridged(classifier));
    std::shared_ptr<SwitchableConfig> config = std::make_shared<SwitchableConfig>();
    std::shared_ptr<Engine> engine = [this] {
        config->isEnabled = false;
        return std::make_shared<Engine>(prefix, learned, config);
    }();
};

/// Stickers 1, 2, 3 for "a", and 4 for nothing that is typed here.
KovalinPackList somePacks()
{
    return {pack(QStringLiteral("pack"),
                 {solo(QStringLiteral("1"), {QStringLiteral("a")}), solo(QStringLiteral("2"), {QStringLiteral("a")}),
                  solo(QStringLiteral("3"), {QStringLiteral("a")}), solo(QStringLiteral("4"), {QStringLiteral("z")})})};
}

QString catchAll(const QString& text)
{
    return QChar(0x200E) + text + QStringLiteral("...");
}

TEST(FusedSearchResults, ArePrefixResultsThatArentLearnedAndThenAllLearnedOnes)
{
    const QStringList prefix{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C"), QStringLiteral("B")};
    const QStringList learned{QStringLiteral("B"), QStringLiteral("D"), QStringLiteral("D")};
    EXPECT_EQ(Engine::_fusePrefixAndLearnedSearchResults(prefix, learned),
              (QStringList{QStringLiteral("A"), QStringLiteral("C"), QStringLiteral("B"), QStringLiteral("D"),
                           QStringLiteral("D")}));
    EXPECT_EQ(Engine::_fusePrefixAndLearnedSearchResults(prefix, QStringList()), prefix);
    EXPECT_EQ(Engine::_fusePrefixAndLearnedSearchResults(QStringList(), learned), learned);
}

TEST(FusedSearchResults, TakeStickersForEqualByComicIdAndUrl)
{
    const auto same = solo(QStringLiteral("1"), {QStringLiteral("other tags")});
    const auto other = pair(QStringLiteral("1"));
    const auto nameless = std::make_shared<const KovalinSticker>();
    const auto alsoNameless = std::make_shared<const KovalinSticker>();
    const KovalinStickerList prefix{solo(QStringLiteral("1")), other, nameless, alsoNameless};
    const KovalinStickerList learned{same, nameless};
    const auto fused = Engine::_fusePrefixAndLearnedSearchResults(prefix, learned);
    const bool isOtherEqual = other->isEqual(*same);
    EXPECT_EQ(fused, isOtherEqual ? (KovalinStickerList{alsoNameless, same, nameless})
                                  : (KovalinStickerList{other, alsoNameless, same, nameless}));
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, FusesTheAnswersOfBothEngines)
{
    process(somePacks());
    const Found found = search(QStringLiteral("a"));
    EXPECT_EQ(found.comics,
              (QStringList{QStringLiteral("1"), QStringLiteral("3"), QStringLiteral("2"), QStringLiteral("4")}));
    EXPECT_EQ(found.tags, (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                                       catchAll(QStringLiteral("a"))}));
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, GivesATagOfBothOnceAtItsLearnedPlace)
{
    classifier->suggestions = {"b", "a"};
    process(somePacks());
    EXPECT_EQ(search(QStringLiteral("a")).tags,
              (QStringList{QStringLiteral("b"), QStringLiteral("a"), catchAll(QStringLiteral("a"))}));
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, GivesThePrefixAnswerAloneWhileLearnedSearchIsDisabled)
{
    process(somePacks());
    config->isEnabled = false;
    const Found found = search(QStringLiteral("a"));
    EXPECT_EQ(found.comics, (QStringList{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}));
    EXPECT_EQ(found.tags, QStringList{QStringLiteral("a")});
    EXPECT_EQ(comicIds(engine->searchWithExactMatch(QStringLiteral("a"), soloOnly)), found.comics);
    EXPECT_EQ(classifier->predictions, 0);
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, GivesThePrefixAnswerAtOnceWhileTheLearnedEngineIsntReady)
{
    classifier->hasModel = false;
    process(somePacks());
    const ManualWaitClock clock; // which never moves: a wait for the learned engine would never end
    EXPECT_EQ(search(QStringLiteral("a")).comics,
              (QStringList{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}));
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, LeavesOutWhatComesAfterTwoSeconds)
{
    process(somePacks());
    Door door;
    classifier->beforePrediction = [&door] {
        door.pass();
    };
    {
        ManualWaitClock clock;
        const auto found = start(QStringLiteral("a"));
        clock.waitForWaits(1);
        EXPECT_THAT(clock.timeouts(), ElementsAre(std::chrono::seconds(2)));
        ASSERT_TRUE(waitFor([this] { return prefix->isInitialized(); }));
        drainMainQueue();
        clock.advance(std::chrono::nanoseconds(1'999'999'999));
        drainMainQueue();
        EXPECT_FALSE(found->has_value());
        clock.advance(std::chrono::nanoseconds(1));
        ASSERT_TRUE(waitFor([&found] { return found->has_value(); }));
        EXPECT_THAT((*found)->tags, testing::Not(testing::Contains(catchAll(QStringLiteral("a")))));
        EXPECT_FALSE((*found)->comics.contains(QStringLiteral("4")));
        door.open();
    }
    EXPECT_TRUE(waitFor([this] { return classifier->predictions == 1; }));
    EXPECT_TRUE(search(QStringLiteral("a")).comics.contains(QStringLiteral("4"))) << "the next search has it again";
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, TakesInWhatComesAfterTheWaitButBeforeItsOwnTurn)
{
    process(somePacks());
    std::atomic<int> begun = 0;
    Door first;
    Door second;
    classifier->beforePrediction = [&] {
        (++begun == 1 ? first : second).open();
    };
    ManualWaitClock clock;
    const auto found = start(QStringLiteral("a"));
    first.pass();
    learned->search(QStringLiteral("a"), soloOnly, [](const auto&, const auto&) {});
    second.pass(); // so the first has been answered, and its answer waits for this thread
    clock.waitForWaits(1);
    clock.advance(std::chrono::seconds(2));
    ASSERT_TRUE(waitFor([&found] { return found->has_value(); }));
    EXPECT_TRUE((*found)->comics.contains(QStringLiteral("4")));
    EXPECT_THAT((*found)->tags, testing::Contains(catchAll(QStringLiteral("a"))));
    EXPECT_TRUE(waitFor([this] { return classifier->predictions == 2; }));
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, AnswersFromTheModelAloneWhileAnIndexTakesTooLong)
{
    process(somePacks());
    Door door;
    stopPrefixQueueAt(door);

    ManualWaitClock clock;
    const auto found = start(QStringLiteral("a"));
    clock.waitForWaits(1);
    ASSERT_TRUE(waitFor([this] { return classifier->predictions == 1; }));
    bool hasAnswered = false; // what the learned engine does after the search tells that the search is done
    learned->processPacks(somePacks(), [&hasAnswered] { hasAnswered = true; });
    ASSERT_TRUE(waitFor([&hasAnswered] { return hasAnswered; }));
    EXPECT_FALSE(found->has_value());
    clock.advance(std::chrono::seconds(2));
    EXPECT_TRUE(waitFor([&found] { return found->has_value(); }));
    EXPECT_EQ((*found)->comics, (QStringList{QStringLiteral("2"), QStringLiteral("4")}));
    EXPECT_EQ((*found)->tags, (QStringList{QStringLiteral("b"), QStringLiteral("c"), catchAll(QStringLiteral("a"))}));
    door.open();
    process(somePacks()); // which comes after the packs that waited at the door
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, AnswersWithNothingLearnedWhereTheModelFails)
{
    process(somePacks());
    classifier->beforePrediction = [] {
        throw std::length_error("too much");
    };
    const QStringList byTags{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")};
    EXPECT_EQ(search(QStringLiteral("a")).comics, byTags);
    EXPECT_EQ(comicIds(engine->searchWithExactMatch(QStringLiteral("a"), soloOnly)), byTags);
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, WaitsForOneQueryAfterTheOther)
{
    process(somePacks());
    Door door;
    classifier->beforePrediction = [&door] {
        door.pass();
    };
    ManualWaitClock clock;
    const auto first = start(QStringLiteral("a"));
    const auto second = start(QStringLiteral("a"));
    clock.waitForWaits(1);
    EXPECT_EQ(clock.timeouts().size(), 1U) << "the second wait begins when the first has ended";
    clock.advance(std::chrono::seconds(2));
    ASSERT_TRUE(waitFor([&first] { return first->has_value(); }));
    clock.waitForWaits(1);
    EXPECT_FALSE(second->has_value());
    clock.advance(std::chrono::seconds(2));
    ASSERT_TRUE(waitFor([&second] { return second->has_value(); }));
    door.open();
    EXPECT_TRUE(waitFor([this] { return classifier->predictions == 2; }));
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, AnswersManySearchesInTheOrderOfTheCalls)
{
    process(somePacks());
    std::vector<int> order;
    for (int number = 0; number < 200; ++number) {
        engine->search(QStringLiteral("a"), soloOnly,
                       [&order, number](const auto&, const auto&) { order.push_back(number); });
        if (number % 20 == 0) {
            engine->contentDidLoadWithPacks(somePacks());
        }
    }
    ASSERT_TRUE(waitFor([&order] { return order.size() == 200; }));
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, FusesExactMatchesAtOnce)
{
    process(somePacks());
    EXPECT_EQ(comicIds(engine->searchWithExactMatch(QStringLiteral("a"), soloOnly)),
              (QStringList{QStringLiteral("1"), QStringLiteral("3"), QStringLiteral("2"), QStringLiteral("4")}));
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, GivesEmptyListsBeforeTheFirstPacks)
{
    EXPECT_FALSE(engine->isInitialized());
    const Found found = search(QStringLiteral("a"));
    EXPECT_THAT(found.comics, IsEmpty());
    EXPECT_THAT(found.tags, IsEmpty());
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, TakesContentAndIgnoresItsAbsenceAndItsFailure)
{
    engine->contentDidLoadWithPacks(std::nullopt);
    engine->contentLoadDidFail(errorWithStatusCode(500, QString(), QString()));
    drainMainQueue();
    EXPECT_FALSE(engine->isInitialized());
    engine->contentDidLoadWithPacks(somePacks());
    ASSERT_TRUE(waitFor([this] { return engine->isInitialized() && learned->isInitialized(); }));
    engine->contentDidLoadWithPacks(std::nullopt);
    engine->contentLoadDidFail(errorWithStatusCode(500, QString(), QString()));
    drainMainQueue();
    EXPECT_FALSE(search(QStringLiteral("a")).comics.isEmpty());
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, IsInitializedWithEitherEngineThatTakesPart)
{
    bool isDone = false;
    learned->processPacks(somePacks(), [&isDone] { isDone = true; });
    ASSERT_TRUE(waitFor([&isDone] { return isDone; }));
    EXPECT_TRUE(engine->isInitialized());
    config->isEnabled = false;
    EXPECT_FALSE(engine->isInitialized());
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, TellsThePrefixEnginesObserversAndTags)
{
    class Observer final : public QXSDKKovalinSearchEngineObserver {
    public:
        void searchEngineDidProcessPacks() override { ++calls; }
        int calls = 0;
    };
    const auto observer = std::make_shared<Observer>();
    engine->addObserver(observer);
    process(somePacks());
    EXPECT_EQ(observer->calls, 1);
    engine->removeObserver(observer);
    process(somePacks());
    EXPECT_EQ(observer->calls, 1);
    EXPECT_EQ(engine->packForTag(QStringLiteral("pack")), prefix->packForTag(QStringLiteral("pack")));
    EXPECT_NE(engine->packForTag(QStringLiteral("pack")), nullptr);
    EXPECT_EQ(engine->emotionForTag(QStringLiteral("a")), QXSDKKovalinEmotionUnknown);
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, MeasuresHowLongIndexingTakes)
{
    const InstalledMetricsQueue metrics;
    process(somePacks());
    ASSERT_EQ(metrics->latencies().size(), 1U);
    EXPECT_TRUE(metrics->latencies().front().first.endsWith(QStringLiteral(":kovalin:search:indexing")));
}

TEST_F(QXSDKKovalinFusionSearchEngineTest, CompletesEvenIfItIsGoneByThen)
{
    process(somePacks());
    const auto found = start(QStringLiteral("a"));
    engine.reset();
    prefix.reset();
    learned.reset();
    EXPECT_TRUE(waitFor([&found] { return found->has_value(); }));
}

TEST(QXSDKKovalinFusionSearchEngine, AsksForNoModelWhileLearnedSearchIsDisabled)
{
    const InstalledMetricsQueue metrics;
    const Engine engine(std::make_shared<QXSDKKovalinPrefixSearchEngine>(),
                        std::make_shared<QXSDKKovalinLearnedSearchEngine>(), std::make_shared<FixedConfig>(false));
    drainMainQueue();
    EXPECT_THAT(metrics->latencies(), IsEmpty());
}

} // namespace
