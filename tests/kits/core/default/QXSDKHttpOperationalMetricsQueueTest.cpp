#include "kits/core/default/QXSDKHttpOperationalMetricsQueue.h"

#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/default/OutboxFile.h"
#include "platform/foundation/CachesDirectory.h"
#include "support/LogLines.h"
#include "support/LoopbackServer.h"
#include "support/ManualClock.h"
#include "support/ManualDelayClock.h"
#include "support/ScriptedRandom.h"
#include "support/WaitFor.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUuid>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <limits>
#include <optional>
#include <string>

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;
using nlohmann::json;

class QXSDKHttpOperationalMetricsQueueTest : public testing::Test {
protected:
    QXSDKHttpOperationalMetricsQueueTest()
    {
        server.script("/api/metrics", ScriptedAnswer::withStatus(204));
        QXSDKClientSetup::setShared({.clientId = QStringLiteral("me"), .apiBaseUrl = baseUrl()});
        queue.emplace(QXSDKHttpOperationalMetricsOptions{.folder = folder.path()});
    }
    ~QXSDKHttpOperationalMetricsQueueTest() override { QXSDKClientSetup::setShared({}); }

    [[nodiscard]] QString baseUrl() const { return server.url(QStringLiteral("/api")).toString(); }
    [[nodiscard]] QString path() const { return folder.filePath(QStringLiteral("qxsdk-operational-metrics.sqlite")); }
    [[nodiscard]] bool hasStored(std::size_t count) const
    {
        return waitFor([&] { return storedAt(path()).entries.size() == count; });
    }
    /// Brings what was added to disk; then it has been taken in too.
    void write(std::size_t count)
    {
        delays.waitForPending(2);
        delays.advance(500ms);
        ASSERT_TRUE(hasStored(count));
    }
    [[nodiscard]] json body(std::size_t count) const
    {
        server.waitForRequests(count);
        return json::parse(server.requests().at(count - 1).body.toStdString());
    }

    QTemporaryDir folder;
    LoopbackServer server;
    ManualClock clock{1'600'000'000'250ms};
    ManualDelayClock delays;
    const ScriptedRandom random{[] {
        return 0U;
    }};
    std::optional<QXSDKHttpOperationalMetricsQueue> queue;
};

TEST_F(QXSDKHttpOperationalMetricsQueueTest, PostsCountsAndLatencies)
{
    queue->addCount(3, QStringLiteral("1_2:kovalin:picker:open"));
    clock.advance(1s);
    queue->addLatencyFromTime(1'600'000'000.0, QStringLiteral("search"));
    write(2);
    delays.advance(29500ms);
    const json posted = body(1);
    EXPECT_EQ(posted["client_id"], "me");
    EXPECT_FALSE(QUuid::fromString(QString::fromStdString(posted["batch_id"])).isNull());
    EXPECT_EQ(posted["dropped"], 0);
    ASSERT_EQ(posted["entries"].size(), 2U);
    json count = posted["entries"][0];
    json latency = posted["entries"][1];
    for (json* const entry : {&count, &latency}) {
        EXPECT_FALSE(QUuid::fromString(QString::fromStdString((*entry)["id"])).isNull());
        entry->erase("id");
    }
    EXPECT_EQ(
        count,
        json({{"type", "count"}, {"name", "1_2:kovalin:picker:open"}, {"value", 3}, {"time", 1'600'000'000'250}}));
    EXPECT_EQ(latency,
              json({{"type", "latency"}, {"name", "search"}, {"milliseconds", 1250.0}, {"time", 1'600'000'001'250}}));
    const ReceivedRequest request = server.requests().front();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/api/metrics");
    EXPECT_EQ(request.header("Content-Type"), "application/json");
    EXPECT_TRUE(hasStored(0));
}

TEST_F(QXSDKHttpOperationalMetricsQueueTest, MeasuresALatencyAtTheCall)
{
    queue->addLatencyFromTime(1'600'000'000.25, QStringLiteral("none"));
    clock.advance(1h);
    write(1);
    delays.advance(29500ms);
    EXPECT_EQ(body(1)["entries"][0]["milliseconds"], 0.0);
}

TEST_F(QXSDKHttpOperationalMetricsQueueTest, DropsALatencyThatIsNone)
{
    using Limits = std::numeric_limits<double>;
    const LogLines log;
    for (const double start : {1'600'000'001.0, Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(),
                               Limits::max(), -Limits::max()}) {
        queue->addLatencyFromTime(start, QStringLiteral("strange"));
    }
    EXPECT_EQ(log.count(QStringLiteral("No latency: strange")), 6);
    queue->addCount(1, QStringLiteral("last"));
    write(1);
    delays.advance(29500ms);
    EXPECT_EQ(body(1)["entries"].size(), 1U);
    EXPECT_EQ(body(1)["dropped"], 0);
}

TEST_F(QXSDKHttpOperationalMetricsQueueTest, PostsAHundredAtOnce)
{
    for (int i = 0; i < 100; ++i) {
        queue->addCount(i, QStringLiteral("n"));
    }
    EXPECT_EQ(body(1)["entries"].size(), 100U);
    EXPECT_TRUE(hasStored(0));
}

TEST_F(QXSDKHttpOperationalMetricsQueueTest, WaitsForAClientSetup)
{
    QXSDKClientSetup::setShared({});
    for (int i = 0; i < 100; ++i) {
        queue->addCount(i, QStringLiteral("n"));
    }
    ASSERT_TRUE(waitFor([&] { return delays.pending() == std::vector<std::chrono::nanoseconds>{5s}; }));
    EXPECT_TRUE(hasStored(100));
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("later"), .apiBaseUrl = baseUrl()});
    delays.advance(5s);
    EXPECT_EQ(body(1)["client_id"], "later");
    EXPECT_EQ(body(1)["entries"].size(), 100U);
}

TEST_F(QXSDKHttpOperationalMetricsQueueTest, ForgetsEverythingWhenAsked)
{
    queue->addCount(1, QStringLiteral("n"));
    write(1);
    queue->erase();
    EXPECT_TRUE(hasStored(0));
    delays.waitForPending(0);
}

TEST_F(QXSDKHttpOperationalMetricsQueueTest, KeepsItsFileInTheCachesDirectory)
{
    const QTemporaryDir caches;
    platform::setCachesDirectory(caches.path());
    const QXSDKHttpOperationalMetricsQueue usual;
    platform::setCachesDirectory({});
    EXPECT_TRUE(
        waitFor([&] { return QFile::exists(caches.filePath(QStringLiteral("qxsdk-operational-metrics.sqlite"))); }));
}

TEST_F(QXSDKHttpOperationalMetricsQueueTest, IsTheProcessesQueueWhereAHostInstallsIt)
{
    QXSDKOperationalMetricsQueue::setSharedInstance(std::make_shared<QXSDKHttpOperationalMetricsQueue>(
        QXSDKHttpOperationalMetricsOptions{.folder = folder.path()}));
    QXSDKOperationalMetricsQueue::sharedInstance()->addCount(1, QStringLiteral("n"));
    QXSDKOperationalMetricsQueue::setSharedInstance(nullptr);
    EXPECT_TRUE(hasStored(1));
}

} // namespace
} // namespace kovalin::test
