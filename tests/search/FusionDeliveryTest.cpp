// What the fusion engine tells of the delivery that it starts, over a real one.
#include "kits/core/QXSDKClientSetup.h"
#include "search/ModelDelivery.h"
#include "search/QXSDKKovalinFusionSearchEngine.h"
#include "search/QXSDKKovalinLearnedSearchConfig.h"
#include "search/QXSDKKovalinLearnedSearchEngine.h"
#include "search/QXSDKKovalinModelCacheExecutor.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"
#include "search/StickerBuilding.h"
#include "support/LoopbackServer.h"
#include "support/ModelContent.h"
#include "support/RecordingMetricsQueue.h"
#include "support/WaitFor.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <QtCore/QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

using namespace kovalin::test;

namespace {

const QXSDKKovalinSearchResultTypes soloOnly{QXSDKKovalinSearchResultTypeSolovalin};
const QByteArray statusPath = "/content/models/LearnedSearch";
const QByteArray modelPath = "/model";

class Enabled final : public QXSDKKovalinLearnedSearchConfig {
public:
    [[nodiscard]] bool isLearnedSearchEnabled() const override { return true; }
};

/// A model that knows comic 11 for "dog".
QByteArray someModel()
{
    using vole::learned_search::test::ModelContent;
    const auto bytes = ModelContent().list({11}).add("dog", {{11, 0.5F}}, 1, 1).toFile();
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

class FusionDelivery : public testing::Test {
protected:
    FusionDelivery()
    {
        cachesFolder();
        QFile::remove(QXSDKKovalinModelCacheExecutor::_metadataArchivePath(QStringLiteral("LearnedSearch")));
        QXSDKClientSetup::setShared({.contentBaseUrl = server.url(QStringLiteral("/")).toString().chopped(1)});
        QXSDKKovalinOperationalMetricsLogger::shared().pushToQueue(); // what others counted before
    }
    ~FusionDelivery() override { QXSDKClientSetup::setShared({}); }

    void offer(const ScriptedAnswer& model)
    {
        server.script(modelPath, model);
        server.script(statusPath,
                      ScriptedAnswer::ok(QStringLiteral(R"({"shouldUpdate":true,"modelUrl":"%1","modelVersion":1})")
                                             .arg(server.url(QString::fromLatin1(modelPath)).toString())
                                             .toUtf8()));
    }

    void makeEngine() { engine = std::make_shared<QXSDKKovalinFusionSearchEngine>(prefix, learned, config); }

    void takePacks()
    {
        engine->contentDidLoadWithPacks(
            KovalinPackList{pack(QStringLiteral("a"), {solo(QStringLiteral("11")), solo(QStringLiteral("12"))})});
        ASSERT_TRUE(waitFor([this] { return prefix->isInitialized() && learned->comicIdToSticker(); }));
    }

    void waitForTheLoad()
    {
        ASSERT_TRUE(waitFor([this] { return latencies() == 1; }));
        auto& logger = QXSDKKovalinOperationalMetricsLogger::shared();
        logger.pushToQueue();
        logger.addCount(1, QStringLiteral("last"));
        logger.pushToQueue();
        ASSERT_TRUE(waitFor([this] { return countOf(QStringLiteral(":last")) == 1; }));
    }

    [[nodiscard]] std::ptrdiff_t latencies() const
    {
        const auto all = metrics->latencies();
        return std::ranges::count_if(
            all, [](const auto& latency) { return latency.first.endsWith(QStringLiteral(":search:learned:init")); });
    }
    [[nodiscard]] qint64 failures() const { return countOf(QStringLiteral(":search:learned:init:failure")); }

    [[nodiscard]] qint64 countOf(const QString& name) const
    {
        qint64 count = 0;
        for (const auto& [fullName, value] : metrics->counts()) {
            count += fullName.endsWith(name) ? value : 0;
        }
        return count;
    }

    QStringList search()
    {
        QStringList found;
        bool isDone = false;
        engine->search(QStringLiteral("dog"), soloOnly, [&](const KovalinStickerList& stickers, const QStringList&) {
            found = comicIds(stickers);
            isDone = true;
        });
        EXPECT_TRUE(waitFor([&isDone] { return isDone; }));
        return found;
    }

    LoopbackServer server;
    const InstalledMetricsQueue metrics;
    std::shared_ptr<Enabled> config = std::make_shared<Enabled>();
    std::shared_ptr<QXSDKKovalinPrefixSearchEngine> prefix = std::make_shared<QXSDKKovalinPrefixSearchEngine>();
    std::shared_ptr<QXSDKKovalinLearnedSearchEngine> learned = std::make_shared<QXSDKKovalinLearnedSearchEngine>();
    std::shared_ptr<QXSDKKovalinFusionSearchEngine> engine;
};

TEST_F(FusionDelivery, MeasuresALoadThatSucceeds)
{
    offer(ScriptedAnswer::held(someModel()));
    makeEngine();
    takePacks();
    server.release(modelPath);
    waitForTheLoad();
    EXPECT_EQ(latencies(), 1);
    EXPECT_EQ(failures(), 0);
    EXPECT_EQ(search(), QStringList{QStringLiteral("11")});
}

TEST_F(FusionDelivery, CountsAModelThatDoesntCome)
{
    offer(ScriptedAnswer::withStatus(404));
    makeEngine();
    takePacks();
    waitForTheLoad();
    EXPECT_EQ(latencies(), 1);
    EXPECT_EQ(failures(), 1);
    EXPECT_EQ(search(), QStringList());
}

TEST_F(FusionDelivery, CountsAModelThatComesBeforeThePacksAndUsesItAllTheSame)
{
    offer(ScriptedAnswer::ok(someModel()));
    makeEngine();
    waitForTheLoad();
    EXPECT_EQ(failures(), 1);
    EXPECT_FALSE(learned->isInitialized());
    takePacks();
    EXPECT_TRUE(learned->isInitialized());
    EXPECT_EQ(search(), QStringList{QStringLiteral("11")});
}

TEST_F(FusionDelivery, AsksOnceForOneEngine)
{
    offer(ScriptedAnswer::ok(someModel()));
    makeEngine();
    waitForTheLoad();
    for (int time = 0; time < 3; ++time) {
        takePacks();
        static_cast<void>(search());
    }
    EXPECT_EQ(server.requests().size(), 2U) << "the status and the model";
}

} // namespace
