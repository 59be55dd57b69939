#include "kovalin/Searcher.h"

#include "apps/KovalinProgram.h"
#include "apps/ModelWriting.h"
#include "kits/core/QXSDKClientSetup.h"
#include "search/ModelDelivery.h"
#include "search/QXSDKKovalinFusionSearchEngine.h"
#include "search/QXSDKKovalinLearnedSearchConfig.h"
#include "search/QXSDKKovalinLearnedSearchEngine.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"
#include "support/LoopbackServer.h"
#include "support/RecordingMetricsQueue.h"
#include "support/WaitFor.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace kovalin::cli;
using namespace kovalin::test;
using testing::IsEmpty;

namespace {

const QXSDKKovalinSearchResultTypes soloOnly{QXSDKKovalinSearchResultTypeSolovalin};

class Enabled final : public QXSDKKovalinLearnedSearchConfig {
public:
    [[nodiscard]] bool isLearnedSearchEnabled() const override { return true; }
};

KovalinPackList readExamplePacks()
{
    QFile file(examplePacks());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return KovalinPack::packsFromJson(QJsonDocument::fromJson(file.readAll())[u"packs"].toArray());
}

/// A server that has a model, and a caches directory for it.
class SearcherBesideAServer : public testing::Test {
protected:
    SearcherBesideAServer()
    {
        cachesFolder();
        server.script("/content/models/LearnedSearch", ScriptedAnswer::ok(R"({"shouldUpdate":false})"));
        QXSDKClientSetup::setShared({.contentBaseUrl = server.url(QStringLiteral("/")).toString().chopped(1)});
    }
    ~SearcherBesideAServer() override { QXSDKClientSetup::setShared({}); }

    /// Makes an engine as a host has it, which asks the server; whoever asked before it stands before it.
    void askTheServerOnce()
    {
        const QXSDKKovalinFusionSearchEngine engine(std::make_shared<QXSDKKovalinPrefixSearchEngine>(),
                                                    std::make_shared<QXSDKKovalinLearnedSearchEngine>(),
                                                    std::make_shared<Enabled>());
        ASSERT_TRUE(waitFor([this] {
            return std::ranges::any_of(metrics->latencies(), [](const auto& latency) {
                return latency.first.endsWith(QStringLiteral(":search:learned:init"));
            });
        }));
    }

    LoopbackServer server;
    InstalledMetricsQueue metrics;
};

TEST_F(SearcherBesideAServer, AnswersFromTheModelAtHandAndAsksNobody)
{
    const Searcher searcher(Searcher::Engine::Fusion, readExamplePacks(), exampleModelBuffer());
    const auto found = searcher.search(QStringLiteral("happy"), soloOnly);
    EXPECT_EQ(found.tags.last(), QStringLiteral("\u200Ehappy...")) << "the model took part";
    EXPECT_FALSE(searcher.searchWithExactMatch(QStringLiteral("happy"), soloOnly).stickers.isEmpty());
    drainMainQueue();
    EXPECT_THAT(server.requests(), IsEmpty());
    EXPECT_THAT(metrics->latencies(), IsEmpty()) << "no model was loaded";

    askTheServerOnce();
    EXPECT_EQ(server.requests().size(), 1U) << "just the engine made as a host makes it";
    EXPECT_THAT(QDir(cachesFolder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), IsEmpty());
    EXPECT_EQ(searcher.search(QStringLiteral("happy"), soloOnly).tags, found.tags);
}

TEST_F(SearcherBesideAServer, AsksNobodyWithAnyOtherEngineEither)
{
    const auto packs = readExamplePacks();
    const Searcher byPrefix(Searcher::Engine::Prefix, packs, nullptr);
    EXPECT_FALSE(byPrefix.search(QStringLiteral("happy"), soloOnly).stickers.isEmpty());
    const Searcher byModel(Searcher::Engine::Learned, packs, exampleModelBuffer());
    EXPECT_FALSE(byModel.search(QStringLiteral("happy"), soloOnly).stickers.isEmpty());
    askTheServerOnce();
    EXPECT_EQ(server.requests().size(), 1U);
}

} // namespace
