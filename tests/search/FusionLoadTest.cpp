// Real engines and a real delivery under a crowd of searches, while packs are indexed again and again.
#include "kits/core/QXSDKClientSetup.h"
#include "learned_search/generated-src/QXNativeLearnedSearchClassifier.h"
#include "learned_search/generated-src/QXNativeModelFileBuffer.h"
#include "platform/dispatch/ThreadCheck.h"
#include "search/ModelDelivery.h"
#include "search/QXSDKKovalinFusionSearchEngine.h"
#include "search/QXSDKKovalinLearnedSearchConfig.h"
#include "search/QXSDKKovalinLearnedSearchEngine.h"
#include "search/QXSDKKovalinModelCacheExecutor.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"
#include "search/StickerBuilding.h"
#include "support/GeneratedModels.h"
#include "support/LoopbackServer.h"
#include "support/ManualWaitClock.h"
#include "support/RecordingMetricsQueue.h"
#include "support/WaitFor.h"

#include <QtCore/QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

using namespace kovalin::test;
using vole::learned_search::test::ModelContent;
using vole::learned_search::test::Random;

namespace {

const QXSDKKovalinSearchResultTypes soloOnly{QXSDKKovalinSearchResultTypeSolovalin};
const QByteArray statusPath = "/content/models/LearnedSearch";
const QByteArray modelPath = "/model";

class Enabled final : public QXSDKKovalinLearnedSearchConfig {
public:
    [[nodiscard]] bool isLearnedSearchEnabled() const override { return true; }
};

struct Answer {
    KovalinStickerList stickers; // compared as the objects that they are
    QStringList tags;

    bool operator==(const Answer&) const = default;
};

ModelContent someModel()
{
    Random random(2025);
    return generateModel(random, {.comics = 300, .words = 40, .keys = 200});
}

QByteArray bytesOf(const ModelContent& model)
{
    const auto bytes = model.toFile();
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

QString textOf(const ModelContent::Key& key)
{
    return QString::fromStdString(*key.word).replace(u'|', u' ');
}

/// Two thirds of the model's comics, another third being left out for each `version`, under tags made of its keys.
KovalinPackList packsFor(const ModelContent& model, std::size_t version)
{
    Random random(version);
    KovalinStickerList stickers;
    for (std::size_t place = 0; place < model.comics->size(); ++place) {
        const QString comic = QString::number((*model.comics)[place]);
        QStringList tags;
        for (int tag = 0; tag < 3; ++tag) {
            tags.append(textOf(model.keys->at(random.below(model.keys->size()))));
        }
        if (place % 3 != version) {
            stickers.append(place % 5 == 0 ? pair(comic, tags) : solo(comic, tags));
        }
    }
    const qsizetype half = stickers.size() / 2;
    return {pack(QStringLiteral("a"), stickers.first(half)), pack(QStringLiteral("b"), stickers.sliced(half))};
}

QStringList queriesFor(const ModelContent& model)
{
    Random random(7);
    QStringList queries{QString(), QStringLiteral("zzz")};
    while (queries.size() < 24) {
        queries.append(QString::fromStdString(generateQuery(random, model, 3)));
    }
    return queries;
}

/// What an engine answers that has taken in its packs and isn't disturbed.
std::vector<Answer> answersOf(QXSDKKovalinSearchEngine& engine, const KovalinPackList& packs,
                              const QStringList& queries)
{
    std::vector<Answer> answers;
    bool isDone = false;
    engine.processPacks(packs, [&isDone] { isDone = true; });
    EXPECT_TRUE(waitFor([&isDone] { return isDone; }));
    for (const QString& query : queries) {
        const std::size_t before = answers.size();
        engine.search(query, soloOnly, [&](const auto& stickers, const auto& tags) {
            answers.push_back({stickers, tags});
        });
        EXPECT_TRUE(waitFor([&] { return answers.size() > before; }));
    }
    return answers;
}

class FusionLoadTest : public testing::Test {
protected:
    static constexpr std::size_t versions = 2;
    static constexpr int posters = 3; // the first is the main thread
    static constexpr int turns = 50;
    static constexpr int searchesATurn = 20;
    static constexpr int searchesOfAThread = 200;

    FusionLoadTest()
    {
        cachesFolder();
        QFile::remove(QXSDKKovalinModelCacheExecutor::_metadataArchivePath(QStringLiteral("LearnedSearch")));
        QXSDKClientSetup::setShared({.contentBaseUrl = server.url(QStringLiteral("/")).toString().chopped(1)});
        server.script(modelPath, ScriptedAnswer::held(bytesOf(model)));
        server.script(statusPath,
                      ScriptedAnswer::ok(QStringLiteral(R"({"shouldUpdate":true,"modelUrl":"%1","modelVersion":1})")
                                             .arg(server.url(QString::fromLatin1(modelPath)).toString())
                                             .toUtf8()));
        workOutAllowedAnswers();
    }
    ~FusionLoadTest() override { QXSDKClientSetup::setShared({}); }

    /// Each engine answers from one version of the packs as a whole, but not necessarily both from the same; and the learned
    /// one not at all before its model is there.
    void workOutAllowedAnswers()
    {
        const vole::learned_search::test::TemporaryFile file(model.toFile());
        const auto classifier = QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(
            QXNativeModelFileBuffer::modelFileBufferInstanceWithPath(QString::fromStdString(file.path())));
        std::vector<std::vector<Answer>> byTags;
        std::vector<std::vector<Answer>> byModel{std::vector<Answer>(static_cast<std::size_t>(queries.size()))};
        for (const auto& version : packs) {
            QXSDKKovalinPrefixSearchEngine prefixEngine;
            byTags.push_back(answersOf(prefixEngine, version, queries));
            QXSDKKovalinLearnedSearchEngine learnedEngine(classifier);
            byModel.push_back(answersOf(learnedEngine, version, queries));
        }
        allowed.resize(static_cast<std::size_t>(queries.size()));
        for (std::size_t query = 0; query < allowed.size(); ++query) {
            for (const auto& prefixAnswers : byTags) {
                for (const auto& learnedAnswers : byModel) {
                    using Engine = QXSDKKovalinFusionSearchEngine;
                    const Answer& tagged = prefixAnswers[query];
                    const Answer& predicted = learnedAnswers[query];
                    allowed[query].push_back(
                        {Engine::_fusePrefixAndLearnedSearchResults(tagged.stickers, predicted.stickers),
                         Engine::_fusePrefixAndLearnedSearchResults(tagged.tags, predicted.tags)});
                }
            }
        }
    }

    /// Any thread, one for each poster.
    void post(int poster, int number)
    {
        const auto query = static_cast<std::size_t>(number) % allowed.size();
        const QString text = queries[static_cast<qsizetype>(query)];
        engine->search(text, soloOnly, [this, poster, number, query, text](const auto& stickers, const auto& tags) {
            ASSERT_TRUE(kovalin::platform::isMainThread());
            completed[static_cast<std::size_t>(poster)].push_back(number);
            ++completions;
            const bool isAllowed = std::ranges::find(allowed[query], Answer{stickers, tags}) != allowed[query].end();
            EXPECT_TRUE(isAllowed) << "an answer of parts that don't belong together to \"" << text.toStdString()
                                   << '"';
            answersWithModel += tags.contains(QChar(0x200E) + text + QStringLiteral("..."));
        });
    }

    void index(std::size_t version)
    {
        ++indexings;
        engine->contentDidLoadWithPacks(packs.at(version % versions));
    }

    /// Half of a thread's searches before the model is there, half after it.
    void postFromThread(int poster)
    {
        for (int number = 0; number < searchesOfAThread; ++number) {
            if (number == searchesOfAThread / 2) {
                hasModel.wait(false);
            }
            if (number % 10 == 0) {
                index(static_cast<std::size_t>(number / 10 + poster));
            }
            post(poster, number);
        }
    }

    void postTurns(int first, int end)
    {
        for (int turn = first; turn < end; ++turn) {
            index(static_cast<std::size_t>(turn));
            for (int number = 0; number < searchesATurn; ++number) {
                post(0, turn * searchesATurn + number);
            }
            drainMainQueue();
        }
    }

    void letTheModelCome()
    {
        server.waitForHeld(1);
        EXPECT_EQ(answersWithModel, 0);
        server.release(modelPath);
        EXPECT_TRUE(waitFor([this] { return learned->isInitialized(); }));
        hasModel = true;
        hasModel.notify_all();
    }

    [[nodiscard]] std::ptrdiff_t latencies(const QString& name) const
    {
        const auto all = metrics->latencies();
        return std::ranges::count_if(all, [&name](const auto& latency) { return latency.first.endsWith(name); });
    }

    const ModelContent model = someModel();
    const std::array<KovalinPackList, versions> packs{packsFor(model, 0), packsFor(model, 1)};
    const QStringList queries = queriesFor(model);
    std::vector<std::vector<Answer>> allowed; // by query
    LoopbackServer server;
    const InstalledMetricsQueue metrics;
    ManualWaitClock clock; // which never moves: every wait ends because what it waits for has come

    std::shared_ptr<QXSDKKovalinPrefixSearchEngine> prefix = std::make_shared<QXSDKKovalinPrefixSearchEngine>();
    std::shared_ptr<QXSDKKovalinLearnedSearchEngine> learned = std::make_shared<QXSDKKovalinLearnedSearchEngine>();
    std::shared_ptr<QXSDKKovalinFusionSearchEngine> engine;

    std::atomic<bool> hasModel = false;
    std::atomic<int> indexings = 0;
    // Main thread only.
    std::array<std::vector<int>, posters> completed;
    int completions = 0;
    int answersWithModel = 0;
};

TEST_F(FusionLoadTest, AnswersEverySearchOnceInOrderWhilePacksChangeAndTheModelArrives)
{
    engine = std::make_shared<QXSDKKovalinFusionSearchEngine>(prefix, learned, std::make_shared<Enabled>());
    index(0); // so that no search comes before the first packs
    std::vector<std::thread> threads;
    for (int poster = 1; poster < posters; ++poster) {
        threads.emplace_back([this, poster] { postFromThread(poster); });
    }
    postTurns(0, turns / 2);
    letTheModelCome();
    postTurns(turns / 2, turns);
    for (std::thread& thread : threads) {
        thread.join();
    }

    const int searches = turns * searchesATurn + (posters - 1) * searchesOfAThread;
    EXPECT_TRUE(
        waitFor([&] { return completions == searches && latencies(QStringLiteral(":search:indexing")) == indexings; }));
    EXPECT_TRUE(waitFor([&] { return latencies(QStringLiteral(":search:learned:init")) == 1; }));
    drainMainQueue();
    EXPECT_EQ(completions, searches);
    for (std::size_t poster = 0; poster < posters; ++poster) {
        const int count = poster == 0 ? turns * searchesATurn : searchesOfAThread;
        std::vector<int> inOrder(static_cast<std::size_t>(count));
        std::ranges::generate(inOrder, [next = 0]() mutable { return next++; });
        EXPECT_EQ(completed[poster], inOrder) << "poster " << poster;
    }
    EXPECT_GT(answersWithModel, searches / 5);
}

} // namespace
