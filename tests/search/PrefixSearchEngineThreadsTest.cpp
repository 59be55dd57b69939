#include "StickerBuilding.h"
#include "platform/dispatch/ThreadCheck.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"
#include "support/QtPrinting.h"
#include "support/WaitFor.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <thread>

using namespace Qt::StringLiterals;
using namespace kovalin::test;

// Whether a reader sees one index whole is for the thread sanitizer to say as much as for the expectations here.

namespace {

const QXSDKKovalinSearchResultTypes both{QXSDKKovalinSearchResultTypeSolovalin,
                                         QXSDKKovalinSearchResultTypeFriendvalin};

/// A pack list whose every answer tells its generation.
KovalinPackList generation(const QString& name)
{
    return {pack(u"title"_s, manySolo(name, 50, {u"happy"_s, u"sad*"_s}), true,
                 name == u"even" ? u"positive"_s : u"negative"_s)};
}

/// A search completion that can't be handed on by another thread than the main thread before the gate opens.
class GatedCompletion final {
public:
    GatedCompletion(std::latch& gate, int& completions)
        : _gate(&gate)
        , _completions(&completions)
    {
    }
    GatedCompletion(const GatedCompletion& other)
        : _gate(other._gate)
        , _completions(other._completions)
    {
        if (!kovalin::platform::isMainThread()) {
            _gate->wait();
        }
    }
    GatedCompletion& operator=(const GatedCompletion&) = delete;
    ~GatedCompletion() = default;

    void operator()(const KovalinStickerList&, const QStringList&) const { ++*_completions; }

private:
    std::latch* _gate;
    int* _completions;
};

} // namespace

TEST(PrefixSearchEngineThreads, ShowAReaderTheOldOrTheNewMaps)
{
    QXSDKKovalinPrefixSearchEngine engine;
    std::atomic<int> built = 0;
    std::atomic<bool> stop = false;
    std::atomic<int> mixed = 0;
    std::atomic<int> readings = 0;

    std::vector<std::thread> readers;
    std::latch started(4);
    for (int i = 0; i < 4; ++i) {
        readers.emplace_back([&] {
            started.arrive_and_wait();
            do {
                for (const auto& tag : {u"happy"_s, u"sad"_s, u"title"_s}) {
                    const auto stickers = engine.searchWithExactMatch(tag, both);
                    const auto ids = comicIds(stickers);
                    const bool isWhole =
                        ids.isEmpty() ||
                        (ids.size() == 50 && std::all_of(ids.cbegin(), ids.cend(), [&ids](const QString& id) {
                             return id.startsWith(ids.first().first(3));
                         }));
                    mixed += isWhole ? 0 : 1;
                }
                const auto emotion = engine.emotionForTag(u"sad"_s);
                mixed += emotion == QXSDKKovalinEmotionPositive || emotion == QXSDKKovalinEmotionNegative ||
                                 emotion == QXSDKKovalinEmotionUnknown
                             ? 0
                             : 1;
                const auto title = engine.packForTag(u"title"_s);
                mixed += !title || title->stickers().size() == 50 ? 0 : 1;
                ++readings;
            } while (!stop);
        });
    }
    for (int i = 0; i < 100; ++i) {
        engine.processPacks(generation(i % 2 == 0 ? u"even"_s : u"odd"_s), [&built] { ++built; });
    }
    EXPECT_TRUE(waitFor([&] { return built == 100 && readings > 0; }));
    stop = true;
    for (auto& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(mixed, 0);
}

TEST(PrefixSearchEngineThreads, DoNotMakeTheCallerWaitForABuild)
{
    std::latch gate(1);
    int completions = 0;
    QXSDKKovalinPrefixSearchEngine engine;
    // The first search holds up the engine's queue until the gate opens.
    engine.search(u"happy"_s, both, GatedCompletion(gate, completions));

    for (int i = 0; i < 10; ++i) {
        engine.processPacks(generation(u"even"_s), [&completions] { ++completions; });
        engine.search(u"happy"_s, both, [&completions](const KovalinStickerList& stickers, const QStringList&) {
            EXPECT_EQ(stickers.size(), 50);
            ++completions;
        });
    }
    EXPECT_FALSE(engine.isInitialized());
    EXPECT_TRUE(engine.searchWithExactMatch(u"happy"_s, both).isEmpty());
    EXPECT_EQ(engine.packForTag(u"title"_s), nullptr);

    gate.count_down();
    EXPECT_TRUE(waitFor([&completions] { return completions == 21; }));
    EXPECT_TRUE(engine.isInitialized());
}

TEST(PrefixSearchEngineThreads, TakeCallsFromAnyThread)
{
    QXSDKKovalinPrefixSearchEngine engine;
    std::atomic<int> completions = 0;
    std::vector<std::thread> callers;
    for (int i = 0; i < 4; ++i) {
        callers.emplace_back([&engine, &completions, i] {
            for (int round = 0; round < 25; ++round) {
                engine.processPacks(generation(i % 2 == 0 ? u"even"_s : u"odd"_s), [&completions] { ++completions; });
                engine.search(u"ha"_s, both,
                              [&completions](const KovalinStickerList& stickers, const QStringList& tags) {
                                  EXPECT_EQ(tags, QStringList{u"happy"_s});
                                  EXPECT_EQ(stickers.size(), 50);
                                  ++completions;
                              });
            }
        });
    }
    for (auto& caller : callers) {
        caller.join();
    }
    EXPECT_TRUE(waitFor([&completions] { return completions == 200; }));
}

TEST(PrefixSearchEngineThreads, LetTheEngineDieOnAnother)
{
    for (int round = 0; round < 20; ++round) {
        auto engine = std::make_unique<QXSDKKovalinPrefixSearchEngine>();
        std::atomic<int> completions = 0;
        engine->processPacks(generation(u"even"_s), [&completions] { ++completions; });
        engine->search(u"happy"_s, both, [&completions](const auto&, const auto&) { ++completions; });
        std::thread([dying = std::move(engine)]() mutable { dying.reset(); }).join();
        EXPECT_TRUE(waitFor([&completions] { return completions == 2; }));
    }
}
