#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/default/Outbox.h"
#include "kits/core/default/OutboxFile.h"
#include "kits/core/default/QXSDKHttpAnalyticsEventsQueue.h"
#include "kits/core/default/QXSDKHttpDynamicConfigManager.h"
#include "kits/core/default/QXSDKHttpOperationalMetricsQueue.h"
#include "platform/dispatch/Gate.h"
#include "platform/dispatch/SerialQueue.h"
#include "support/LoopbackServer.h"
#include "support/ManualDelayClock.h"
#include "support/WaitFor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <vector>

// What is there when the application object dies.

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

int argumentCount = 1;
char programName[] = "kits_core_default_shutdown_tests";
char* arguments[] = {programName, nullptr};

/// An application object for the length of a scope.
class ScopedApplication final {
private:
    const QCoreApplication _application{argumentCount, arguments};
};

class DefaultsShutdown : public testing::Test {
protected:
    [[nodiscard]] kits::OutboxOptions options(const QUrl& url = QUrl(QStringLiteral("http://127.0.0.1:9/"))) const
    {
        return {.path = path,
                .label = QStringLiteral("test outbox"),
                .limits = {.maxBytes = 1'000'000, .maxEntries = 10'000, .maxAge = 1h},
                .batch = {.maxEntries = 5, .maxBytes = 100'000, .longestWait = 1h},
                .retry = {.first = 1h, .longest = 1h, .longestRetryAfter = 1h},
                .request = [url](const kits::OutboxBatch&) {
                    return platform::UrlRequest{.url = url, .method = platform::UrlRequest::Method::Post};
                }};
    }
    [[nodiscard]] std::size_t countOnDisk() const { return storedAt(path).entries.size(); }

    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("outbox.sqlite"));
};

TEST_F(DefaultsShutdown, WritesWhatWasAddedRightBefore)
{
    std::optional<kits::Outbox> outbox;
    {
        const ScopedApplication application;
        outbox.emplace(options());
        for (int i = 0; i < 4; ++i) {
            outbox->add("x");
        }
    }
    EXPECT_EQ(countOnDisk(), 4U);
}

TEST_F(DefaultsShutdown, WritesWhatWasAddedRightBeforeAndDestroyed)
{
    {
        const ScopedApplication application;
        kits::Outbox outbox(options());
        for (int i = 0; i < 4; ++i) {
            outbox.add("x");
        }
    }
    EXPECT_EQ(countOnDisk(), 4U);
}

TEST_F(DefaultsShutdown, WritesBehindAJobThatRuns)
{
    std::optional<kits::Outbox> outbox;
    {
        const ScopedApplication application;
        outbox.emplace(options());
        Gate started;
        outbox->queue()->async([&started] { started.open(); });
        started.wait();
        outbox->add("x");
    }
    EXPECT_EQ(countOnDisk(), 1U);
}

TEST_F(DefaultsShutdown, WritesOnTheCallersThreadWhereThereIsNoApplicationAnyMore)
{
    {
        const ScopedApplication application;
    }
    {
        kits::Outbox outbox(options());
        outbox.add("x");
        EXPECT_EQ(countOnDisk(), 0U);
    }
    EXPECT_EQ(countOnDisk(), 1U);
}

TEST_F(DefaultsShutdown, GoesOnUnderALaterApplication)
{
    std::optional<kits::Outbox> outbox;
    {
        const ScopedApplication application;
        outbox.emplace(options());
        outbox->add("a");
    }
    outbox->add("b"); // nobody comes for it
    {
        const ScopedApplication application;
        LoopbackServer server;
        outbox->add("c");
        finish(*outbox->queue());
    }
    std::vector<QByteArray> entries = storedAt(path).entries;
    EXPECT_THAT(entries, ElementsAre("a", "b", "c"));
}

TEST_F(DefaultsShutdown, DoesNotWaitForARepetition)
{
    std::optional<kits::Outbox> outbox;
    QElapsedTimer timer;
    {
        const ScopedApplication application;
        LoopbackServer server;
        server.script("/post", ScriptedAnswer::withStatus(500));
        outbox.emplace(options(server.url(QStringLiteral("/post"))));
        for (int i = 0; i < 5; ++i) {
            outbox->add("x");
        }
        server.waitForRequests(1);
        timer.start();
    }
    EXPECT_LT(timer.elapsed(), 60'000); // the repetition comes in an hour
    EXPECT_EQ(countOnDisk(), 5U);
}

TEST_F(DefaultsShutdown, DoesNotWaitForARequestThatHangs)
{
    std::optional<kits::Outbox> outbox;
    std::optional<QXSDKHttpDynamicConfigManager> configs;
    std::atomic<int> completions = 0;
    QElapsedTimer timer;
    {
        const ScopedApplication application;
        LoopbackServer server;
        for (const char* const hanging : {"/post", "/configs"}) {
            server.script(hanging, ScriptedAnswer::never());
        }
        QXSDKClientSetup::setShared({.apiBaseUrl = server.url(QStringLiteral("/")).toString().chopped(1)});
        outbox.emplace(options(server.url(QStringLiteral("/post"))));
        for (int i = 0; i < 5; ++i) {
            outbox->add("x");
        }
        configs.emplace(QXSDKHttpDynamicConfigOptions{.folder = folder.path()});
        configs->updateIfNecessary([&completions](bool success) { completions += success ? 100 : 1; });
        server.waitForRequests(2);
        timer.start();
    }
    EXPECT_LT(timer.elapsed(), 9'000); // less than the shorter of the two time-outs
    EXPECT_EQ(countOnDisk(), 5U);
    EXPECT_EQ(completions, 1);
    QXSDKClientSetup::setShared({});
}

TEST_F(DefaultsShutdown, TellsOfAFailureWhereThereIsNoApplicationAnyMore)
{
    {
        const ScopedApplication application;
    }
    QXSDKClientSetup::setShared({.apiBaseUrl = QStringLiteral("http://127.0.0.1:9")});
    QXSDKHttpDynamicConfigManager configs({.folder = folder.path()});
    for (int count = 1; count <= 2; ++count) {
        int completions = 0;
        configs.updateIfNecessary([&completions](bool success) { completions += success ? 100 : 1; });
        EXPECT_EQ(completions, 1);
    }
    QXSDKClientSetup::setShared({});
}

/// Analytics events at the end of an application object. Time stands still in these tests: an end that waited for a delay would
/// never come.
class AnalyticsShutdown : public DefaultsShutdown {
protected:
    static constexpr int kBatch = 100; // so many events leave at once

    ~AnalyticsShutdown() override { QXSDKClientSetup::setShared({}); }

    void makeQueue(const QString& baseUrl)
    {
        QXSDKClientSetup::setShared({.apiBaseUrl = baseUrl});
        queue.emplace(QXSDKHttpAnalyticsEventsOptions{.folder = folder.path()});
    }
    void addBatch()
    {
        for (int i = 0; i < kBatch; ++i) {
            queue->addEvent({.serverEventData = "x"});
        }
    }
    [[nodiscard]] std::size_t eventsOnDisk() const
    {
        return storedAt(folder.filePath(QStringLiteral("qxsdk-analytics-events.sqlite"))).entries.size();
    }

    ManualDelayClock delays;
    std::optional<QXSDKHttpAnalyticsEventsQueue> queue;
};

TEST_F(AnalyticsShutdown, ComesWhileARepetitionWaits)
{
    {
        const ScopedApplication application;
        LoopbackServer server;
        server.script("/events", ScriptedAnswer::withStatus(500));
        makeQueue(server.url(QStringLiteral("/")).toString().chopped(1));
        addBatch();
        server.waitForRequests(1);
        delays.waitForPending(1); // the repetition
        queue->addEvent({.serverEventData = "y"});
    }
    EXPECT_THAT(delays.pending(), testing::IsEmpty());
    EXPECT_EQ(eventsOnDisk(), static_cast<std::size_t>(kBatch) + 1);
}

TEST_F(AnalyticsShutdown, ComesWhileARepetitionThatTheServerAskedForWaits)
{
    {
        const ScopedApplication application;
        LoopbackServer server;
        ScriptedAnswer busy = ScriptedAnswer::withStatus(503);
        busy.headers = {{"Retry-After", "3600"}};
        server.script("/events", busy);
        makeQueue(server.url(QStringLiteral("/")).toString().chopped(1));
        addBatch();
        server.waitForRequests(1);
        delays.waitForPending(1);
        queue.reset(); // and before that the queue's own end
    }
    EXPECT_EQ(eventsOnDisk(), static_cast<std::size_t>(kBatch));
}

TEST_F(AnalyticsShutdown, ComesWhileARequestHangs)
{
    {
        const ScopedApplication application;
        LoopbackServer server;
        server.script("/events", ScriptedAnswer::never());
        makeQueue(server.url(QStringLiteral("/")).toString().chopped(1));
        addBatch();
        server.waitForRequests(1);
    }
    EXPECT_EQ(eventsOnDisk(), static_cast<std::size_t>(kBatch));
}

TEST_F(AnalyticsShutdown, ErasesAfterAnOptOutRightBefore)
{
    {
        const ScopedApplication application;
        makeQueue({});
        addBatch();
        ASSERT_TRUE(waitFor([this] { return eventsOnDisk() == static_cast<std::size_t>(kBatch); }));
        QXSDKClientSetup::setShared({.isAnalyticsEnabled = false});
    }
    EXPECT_EQ(eventsOnDisk(), 0U);
}

TEST_F(AnalyticsShutdown, ErasesWithTheQueueAfterAnOptOutWithoutAnApplication)
{
    {
        const ScopedApplication application;
        makeQueue({});
        addBatch();
    }
    EXPECT_EQ(eventsOnDisk(), static_cast<std::size_t>(kBatch));
    QXSDKClientSetup::setShared({.isAnalyticsEnabled = false});
    queue.reset();
    EXPECT_EQ(eventsOnDisk(), 0U);
}

TEST_F(DefaultsShutdown, LosesNothingWhateverIsUnderWay)
{
    for (int round = 0; round < 20; ++round) {
        std::optional<kits::Outbox> outbox;
        {
            const ScopedApplication application;
            outbox.emplace(options());
            for (int i = 0; i < round * 10; ++i) {
                outbox->add("x");
            }
        }
        outbox.reset();
    }
    EXPECT_EQ(countOnDisk(), 1900U);
}

} // namespace
} // namespace kovalin::test

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
