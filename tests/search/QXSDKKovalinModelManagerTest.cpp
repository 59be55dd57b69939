// The road of a model from a server to a classifier, over real sockets and files.
#include "search/QXSDKKovalinModelManager.h"

#include "kits/core/QXSDKClientSetup.h"
#include "learned_search/generated-src/QXNativeLearnedSearchClassifier.h"
#include "learned_search/generated-src/QXNativeModelFileBuffer.h"
#include "search/ModelDelivery.h"
#include "search/QXSDKKovalinLearnedSearchEngine.h"
#include "search/QXSDKKovalinModelCacheExecutor.h"
#include "search/StickerBuilding.h"
#include "support/LoopbackServer.h"
#include "support/ModelContent.h"
#include "support/WaitFor.h"

#include <QtCore/QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>

using namespace kovalin::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString name = QStringLiteral("LearnedSearch");
const QByteArray statusPath = "/content/models/LearnedSearch";

/// A model that knows one comic for "dog".
QByteArray modelFor(std::int32_t comic)
{
    using vole::learned_search::test::ModelContent;
    const auto bytes = ModelContent().list({comic}).add("dog", {{comic, 0.5F}}, 1, 1).toFile();
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

class QXSDKKovalinModelManagerTest : public testing::Test {
protected:
    QXSDKKovalinModelManagerTest()
    {
        cachesFolder();
        QFile::remove(QXSDKKovalinModelCacheExecutor::_metadataArchivePath(name));
        QXSDKClientSetup::setShared({.contentBaseUrl = server.url(QStringLiteral("/")).toString().chopped(1)});
    }
    ~QXSDKKovalinModelManagerTest() override { QXSDKClientSetup::setShared({}); }

    void offer(int version, const ScriptedAnswer& model)
    {
        const QString path = QStringLiteral("/model-%1").arg(version);
        server.script(path.toLatin1(), model);
        server.script(statusPath,
                      ScriptedAnswer::ok(QStringLiteral(R"({"shouldUpdate":true,"modelUrl":"%1","modelVersion":%2})")
                                             .arg(server.url(path).toString(), QString::number(version))
                                             .toUtf8()));
    }
    void offerNothing() { server.script(statusPath, ScriptedAnswer::ok(R"({"shouldUpdate":false})")); }

    /// What the model of a fresh start predicts for "dog".
    QList<std::int32_t> predictionOfAStart()
    {
        std::atomic<bool> isDone = false;
        std::shared_ptr<QXNativeModelFileBuffer> loaded;
        QXSDKKovalinModelManager manager;
        manager.loadModel(name, [&](const std::shared_ptr<QXNativeModelFileBuffer>& buffer) {
            EXPECT_NE(buffer, nullptr);
            loaded = buffer;
            isDone = true;
        });
        EXPECT_TRUE(waitFor([&isDone] { return isDone.load(); }));
        return QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(loaded)->predict(
            QStringLiteral("dog"), 10);
    }
    [[nodiscard]] std::size_t downloads() const
    {
        std::size_t count = 0;
        for (const auto& request : server.requests()) {
            count += request.target.startsWith("/model-");
        }
        return count;
    }

    LoopbackServer server;
};

TEST_F(QXSDKKovalinModelManagerTest, DownloadsAtTheFirstStartAndReusesTheFileAtTheSecond)
{
    offer(1, ScriptedAnswer::ok(modelFor(11)));
    EXPECT_THAT(predictionOfAStart(), ElementsAre(11));
    offerNothing();
    EXPECT_THAT(predictionOfAStart(), ElementsAre(11));
    EXPECT_EQ(downloads(), 1U);
    EXPECT_EQ(server.requests().back().target, statusPath + "?client_cached_version=1");
}

TEST_F(QXSDKKovalinModelManagerTest, ReplacesTheModelByANewerOne)
{
    offer(1, ScriptedAnswer::ok(modelFor(11)));
    static_cast<void>(predictionOfAStart());
    offer(2, ScriptedAnswer::ok(modelFor(22)));
    EXPECT_THAT(predictionOfAStart(), ElementsAre(22));
}

TEST_F(QXSDKKovalinModelManagerTest, ServesTheOlderModelWhereTheUpdateFails)
{
    offer(1, ScriptedAnswer::ok(modelFor(11)));
    static_cast<void>(predictionOfAStart());
    for (const ScriptedAnswer& status : {ScriptedAnswer::withStatus(500), ScriptedAnswer::garbage("?"),
                                         ScriptedAnswer::closed(), ScriptedAnswer::ok("{")}) {
        server.script(statusPath, status);
        EXPECT_THAT(predictionOfAStart(), ElementsAre(11));
    }
    for (const ScriptedAnswer& model :
         {ScriptedAnswer::withStatus(404), ScriptedAnswer::closed(), ScriptedAnswer::cut(modelFor(22), 40)}) {
        offer(2, model);
        EXPECT_THAT(predictionOfAStart(), ElementsAre(11));
    }
}

TEST_F(QXSDKKovalinModelManagerTest, StoresAGarbageModelThatTheNextVersionMends)
{
    offer(3, ScriptedAnswer::ok("garbage that arrives whole"));
    EXPECT_THAT(predictionOfAStart(), IsEmpty());
    offer(4, ScriptedAnswer::ok(modelFor(44)));
    EXPECT_THAT(predictionOfAStart(), ElementsAre(44));
}

TEST_F(QXSDKKovalinModelManagerTest, AsksForAnyVersionWithoutARecord)
{
    offerNothing();
    EXPECT_THAT(predictionOfAStart(), IsEmpty());
    EXPECT_EQ(server.requests().back().target, statusPath + "?client_cached_version=-1");
}

TEST_F(QXSDKKovalinModelManagerTest, MakesTheLearnedEngineReady)
{
    offer(5, ScriptedAnswer::ok(modelFor(55)));
    QXSDKKovalinLearnedSearchEngine engine;
    bool isProcessed = false;
    engine.processPacks({pack(QStringLiteral("a"), {solo(QStringLiteral("55"))})},
                        [&isProcessed] { isProcessed = true; });
    ASSERT_TRUE(waitFor([&isProcessed] { return isProcessed; }));
    std::optional<bool> isReady;
    engine.loadModel([&isReady](bool ready) { isReady = ready; });
    ASSERT_TRUE(waitFor([&isReady] { return isReady.has_value(); }));
    EXPECT_TRUE(*isReady);
    EXPECT_EQ(comicIds(engine.searchWithExactMatch(QStringLiteral("dog"), {QXSDKKovalinSearchResultTypeSolovalin})),
              QStringList{QStringLiteral("55")});
}

TEST_F(QXSDKKovalinModelManagerTest, TellsTheLearnedEngineOfAModelThatCameBeforeThePacks)
{
    offer(6, ScriptedAnswer::ok(modelFor(66)));
    QXSDKKovalinLearnedSearchEngine engine;
    std::optional<bool> isReady;
    engine.loadModel([&isReady](bool ready) { isReady = ready; });
    ASSERT_TRUE(waitFor([&isReady] { return isReady.has_value(); }));
    EXPECT_FALSE(*isReady) << "the packs are missing";
    EXPECT_FALSE(engine.isInitialized());
    bool isProcessed = false;
    engine.processPacks({}, [&isProcessed] { isProcessed = true; });
    ASSERT_TRUE(waitFor([&isProcessed] { return isProcessed; }));
    EXPECT_TRUE(engine.isInitialized());
}

TEST_F(QXSDKKovalinModelManagerTest, CompletesALoadWhoseEngineIsGone)
{
    offer(7, ScriptedAnswer::ok(modelFor(77)));
    std::optional<bool> isReady;
    {
        QXSDKKovalinLearnedSearchEngine engine;
        engine.loadModel([&isReady](bool ready) { isReady = ready; });
    }
    ASSERT_TRUE(waitFor([&isReady] { return isReady.has_value(); }));
    EXPECT_FALSE(*isReady);
}

} // namespace
