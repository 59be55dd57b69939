#include "search/QXSDKKovalinModelUpdateExecutor.h"

#include "kits/core/QXSDKClientSetup.h"
#include "search/ModelDelivery.h"
#include "support/LoopbackServer.h"
#include "support/ManualWaitClock.h"
#include "support/RecordingMetricsQueue.h"
#include "support/WaitFor.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using namespace kovalin::test;
using Executor = QXSDKKovalinModelUpdateExecutor;
using Status = QXNativeStatusEnums;

namespace {

const QString name = QStringLiteral("UpdateTest");
const QByteArray statusPath = "/content/models/UpdateTest";
const QByteArray modelPath = "/model";

/// Lets go of what other tests have counted: the shared logger keeps it for its next flush.
bool drainMetrics()
{
    const InstalledMetricsQueue metrics;
    auto& logger = QXSDKKovalinOperationalMetricsLogger::shared();
    logger.addCount(1, QStringLiteral("drained"));
    logger.pushToQueue();
    return waitFor([&metrics] { return !metrics->counts().empty(); });
}

class QXSDKKovalinModelUpdateExecutorTest : public testing::Test {
protected:
    QXSDKKovalinModelUpdateExecutorTest()
    {
        cachesFolder();
        EXPECT_TRUE(isDrained);
        QXSDKClientSetup::setShared({.contentBaseUrl = server.url(QStringLiteral("/")).toString().chopped(1)});
    }
    ~QXSDKKovalinModelUpdateExecutorTest() override { QXSDKClientSetup::setShared({}); }

    QXNativeKovalinApiResponsePtr status(std::optional<std::int32_t> version = 3)
    {
        return offTheMainThread([&] { return executor.getRemoteModelStatus(name, version); });
    }
    QXNativeModelMetaDataPtr download(std::int32_t version)
    {
        const auto remote = remoteRecord(version);
        return offTheMainThread([&] { return executor.downloadModel(name, remote); });
    }
    [[nodiscard]] QXNativeModelMetaDataPtr remoteRecord(std::int32_t version) const
    {
        return QXNativeModelMetaData::ModelMetaDataWithModelUrl(server.url(QString::fromLatin1(modelPath)).toString(),
                                                                version, Status::SUCCESS);
    }
    static void flushMetrics() { QXSDKKovalinOperationalMetricsLogger::shared().pushToQueue(); }

    /// How often was counted under the name, the last part of what it is sent under.
    [[nodiscard]] qint64 counted(const QString& metric) const
    {
        qint64 sum = 0;
        for (const auto& [full, count] : metrics->counts()) {
            sum += full.endsWith(QStringLiteral(":kovalin:") + metric) ? count : 0;
        }
        return sum;
    }
    [[nodiscard]] bool isCounted(const QString& metric, qint64 wanted = 1)
    {
        const qint64 marks = counted(QStringLiteral("mark"));
        QXSDKKovalinOperationalMetricsLogger::shared().addCount(1, QStringLiteral("mark"));
        flushMetrics();
        // All counts of one flush are there when the mark is, but for those behind it in no particular order.
        return waitFor([&] { return counted(QStringLiteral("mark")) > marks && counted(metric) == wanted; });
    }
    [[nodiscard]] qsizetype latencies(const QString& metric) const
    {
        qsizetype count = 0;
        for (const auto& [full, start] : metrics->latencies()) {
            count += full.endsWith(QStringLiteral(":kovalin:") + metric);
        }
        return count;
    }
    void expectNoUpdate(const QXNativeKovalinApiResponsePtr& response)
    {
        ASSERT_NE(response, nullptr);
        EXPECT_FALSE(response->shouldUpdate());
        EXPECT_EQ(response->remoteModelUrl(), std::nullopt);
        EXPECT_EQ(response->remoteModelVersion(), std::nullopt);
    }

    const bool isDrained = drainMetrics();
    LoopbackServer server;
    const InstalledMetricsQueue metrics;
    Executor executor;
};

TEST_F(QXSDKKovalinModelUpdateExecutorTest, GivesTheServersAnswer)
{
    server.script(statusPath,
                  ScriptedAnswer::ok(R"({"shouldUpdate":true,"modelUrl":"http://model","modelVersion":9})"));
    const auto response = status();
    EXPECT_TRUE(response->shouldUpdate());
    EXPECT_EQ(response->remoteModelUrl(), QStringLiteral("http://model"));
    EXPECT_EQ(response->remoteModelVersion(), 9);
    EXPECT_EQ(latencies(QStringLiteral("model:status")), 1);
    EXPECT_TRUE(isCounted(QStringLiteral("model:status:failure"), 0));
}

TEST_F(QXSDKKovalinModelUpdateExecutorTest, AsksWithTheCachedVersion)
{
    server.script(statusPath, ScriptedAnswer::ok("{}"));
    static_cast<void>(status(-1));
    ASSERT_EQ(server.requests().size(), 1U);
    EXPECT_EQ(server.requests().front().method, "GET");
    EXPECT_EQ(server.requests().front().target, statusPath + "?client_cached_version=-1");
}

TEST_F(QXSDKKovalinModelUpdateExecutorTest, CountsAnUnusableAnswerAndLeavesTheModelAlone)
{
    const ScriptedAnswer answers[] = {ScriptedAnswer::withStatus(404, R"({"shouldUpdate":true})"),
                                      ScriptedAnswer::withStatus(500),
                                      ScriptedAnswer::ok("{not json"),
                                      ScriptedAnswer::ok(""),
                                      ScriptedAnswer::garbage("no http"),
                                      ScriptedAnswer::closed(),
                                      ScriptedAnswer::cut(R"({"shouldUpdate":true})", 5)};
    qint64 failures = 0;
    for (const ScriptedAnswer& answer : answers) {
        server.script(statusPath, answer);
        expectNoUpdate(status());
        EXPECT_TRUE(isCounted(QStringLiteral("model:status:failure"), ++failures));
        EXPECT_EQ(latencies(QStringLiteral("model:status")), failures) << "every answer is measured";
    }
}

TEST_F(QXSDKKovalinModelUpdateExecutorTest, TakesAMissingFlagForNoUpdateAndTheRestAsItIs)
{
    server.script(statusPath, ScriptedAnswer::ok(R"({"modelUrl":"http://model","modelVersion":9})"));
    const auto response = status();
    EXPECT_FALSE(response->shouldUpdate());
    EXPECT_EQ(response->remoteModelUrl(), QStringLiteral("http://model"));
    EXPECT_EQ(response->remoteModelVersion(), 9);
    EXPECT_TRUE(isCounted(QStringLiteral("model:status:failure"), 0));
}

TEST_F(QXSDKKovalinModelUpdateExecutorTest, TakesValuesOfAnotherKindForAbsent)
{
    for (const char* json :
         {R"({"shouldUpdate":null,"modelUrl":5,"modelVersion":"9"})",
          R"({"shouldUpdate":{},"modelUrl":[],"modelVersion":1.5})", R"({"modelVersion":3000000000})", "[]"}) {
        server.script(statusPath, ScriptedAnswer::ok(json));
        expectNoUpdate(status());
    }
}

TEST_F(QXSDKKovalinModelUpdateExecutorTest, FailsAtOnceWithoutABaseUrl)
{
    QXSDKClientSetup::setShared({});
    expectNoUpdate(status());
    EXPECT_TRUE(isCounted(QStringLiteral("model:status:failure")));
}

TEST_F(QXSDKKovalinModelUpdateExecutorTest, StoresTheModelAsItCame)
{
    const QByteArray model("\0\xFFmodel\r\n", 9);
    server.script(modelPath, ScriptedAnswer::ok(model));
    const auto record = download(5);
    EXPECT_EQ(record->statusCode(), Status::SUCCESS);
    EXPECT_EQ(record->modelVersion(), 5);
    EXPECT_EQ(record->modelUrl(), Executor::_modelDiskPath(name, 5));
    EXPECT_EQ(readFile(*record->modelUrl()), model);
    EXPECT_TRUE(isCounted(QStringLiteral("model:download:UpdateTest:success")));
    EXPECT_EQ(latencies(QStringLiteral("model:download:UpdateTest")), 1);
}

TEST_F(QXSDKKovalinModelUpdateExecutorTest, NamesTheFileAfterModelAndVersion)
{
    EXPECT_EQ(QFileInfo(Executor::_modelDiskPath(QStringLiteral("LearnedSearch"), 12)).fileName(),
              QStringLiteral("qxsdk-kovalin-model-LearnedSearch-12.plist"));
}

TEST_F(QXSDKKovalinModelUpdateExecutorTest, LeavesTheOldFileWhereTheDownloadFails)
{
    server.script(modelPath, ScriptedAnswer::ok("old"));
    ASSERT_EQ(download(6)->statusCode(), Status::SUCCESS);
    const ScriptedAnswer answers[] = {ScriptedAnswer::withStatus(404, "new"), ScriptedAnswer::closed(),
                                      ScriptedAnswer::cut("new model", 3), ScriptedAnswer::garbage("new")};
    qint64 failures = 0;
    for (const ScriptedAnswer& answer : answers) {
        server.script(modelPath, answer);
        const auto record = download(6);
        EXPECT_EQ(record->statusCode(), Status::DOWNLOAD_FAILED);
        EXPECT_EQ(record->modelUrl(), remoteRecord(6)->modelUrl());
        EXPECT_EQ(record->modelVersion(), 6);
        EXPECT_EQ(readFile(Executor::_modelDiskPath(name, 6)), "old");
        EXPECT_TRUE(isCounted(QStringLiteral("model:download:UpdateTest:failure"), ++failures));
    }
}

TEST_F(QXSDKKovalinModelUpdateExecutorTest, TellsThePathThatCouldntBeWritten)
{
    const QString path = Executor::_modelDiskPath(name, 77);
    ASSERT_TRUE(QDir().mkpath(path)); // a folder where the file should be
    server.script(modelPath, ScriptedAnswer::ok("model"));
    const auto record = download(77);
    EXPECT_EQ(record->statusCode(), Status::FILE_FAILED);
    EXPECT_EQ(record->modelUrl(), path);
    EXPECT_TRUE(isCounted(QStringLiteral("model:download:UpdateTest:failure")));
    QDir().rmdir(path);
}

TEST_F(QXSDKKovalinModelUpdateExecutorTest, RefusesTheMainThreadWithoutAMetric)
{
    expectNoUpdate(executor.getRemoteModelStatus(name, 3));
    const auto record = executor.downloadModel(name, remoteRecord(8));
    EXPECT_EQ(record->statusCode(), Status::DOWNLOAD_FAILED);
    EXPECT_EQ(record->modelUrl(), remoteRecord(8)->modelUrl());
    EXPECT_TRUE(server.requests().empty());
    EXPECT_TRUE(metrics->latencies().empty());
}

TEST_F(QXSDKKovalinModelUpdateExecutorTest, WaitsTenSecondsAndStoresALateModelAllTheSame)
{
    server.script(modelPath, ScriptedAnswer::held("late"));
    QXNativeModelMetaDataPtr record;
    {
        ManualWaitClock clock;
        const auto remote = remoteRecord(9);
        std::thread downloading([&] { record = executor.downloadModel(name, remote); });
        clock.waitForWaits(1);
        EXPECT_THAT(clock.timeouts(), testing::ElementsAre(std::chrono::seconds(10)));
        clock.advance(std::chrono::seconds(10));
        downloading.join();
    }
    EXPECT_EQ(record->statusCode(), Status::DOWNLOAD_FAILED);
    EXPECT_FALSE(QFile::exists(Executor::_modelDiskPath(name, 9)));
    server.release(modelPath);
    EXPECT_TRUE(waitFor([&] { return latencies(QStringLiteral("model:download:UpdateTest")) == 1; }));
    EXPECT_EQ(readFile(Executor::_modelDiskPath(name, 9)), "late");
    EXPECT_TRUE(isCounted(QStringLiteral("model:download:UpdateTest:success")));
}

} // namespace
