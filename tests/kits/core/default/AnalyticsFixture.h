#pragma once

#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/default/OutboxFile.h"
#include "kits/core/default/QXSDKHttpAnalyticsEventsQueue.h"
#include "kits/core/default/ShareEvent.h"
#include "support/DecodedMessage.h"
#include "support/LoopbackServer.h"
#include "support/ManualClock.h"
#include "support/ManualDelayClock.h"
#include "support/ScriptedRandom.h"
#include "support/WaitFor.h"

#include <QtCore/QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kovalin::test {

/// A batch as a server reads it.
struct DecodedBatch {
    struct Event {
        std::string id;
        std::string timeMillis;
        DecodedMessage data;
    };

    std::string id;
    std::string dropped;
    std::vector<Event> events;

    [[nodiscard]] std::vector<std::string> ids() const
    {
        std::vector<std::string> all;
        for (const Event& event : events) {
            all.push_back(event.id);
        }
        return all;
    }
    /// Of shares.
    [[nodiscard]] std::vector<std::string> stickers() const
    {
        std::vector<std::string> all;
        for (const Event& event : events) {
            all.push_back(event.data.one("kovalin_kit_share").value("sticker_id").value_or("none"));
        }
        return all;
    }
};

[[nodiscard]] inline DecodedBatch decodedBatch(const QByteArray& body)
{
    const auto message = decodedEvents(QStringLiteral("EventBatch"), body);
    EXPECT_TRUE(message.has_value()) << "the body isn't an EventBatch";
    DecodedBatch batch;
    if (message) {
        batch.id = message->value("batch_id").value_or("none");
        batch.dropped = message->value("dropped").value_or("0"); // which isn't shown
        for (const DecodedMessage& event : message->all("events")) {
            batch.events.push_back({.id = event.value("event_id").value_or("none"),
                                    .timeMillis = event.value("time_millis").value_or("0"),
                                    .data = event.one("data")});
        }
    }
    return batch;
}

/// An analytics queue on a folder of its own, which posts to a server, with time and chance standing still.
class AnalyticsFixture : public testing::Test {
protected:
    static constexpr int kBatch = 100; // so many events leave at once

    AnalyticsFixture()
    {
        answer(ScriptedAnswer::withStatus(204));
        setAnalytics(true);
    }
    ~AnalyticsFixture() override { QXSDKClientSetup::setShared({}); }

    /// Replaces the client setup by one that differs in its switch alone.
    void setAnalytics(bool isEnabled) const
    {
        QXSDKClientSetup::setShared({.clientId = QStringLiteral("me"),
                                     .apiBaseUrl = server.url(QStringLiteral("/api")).toString(),
                                     .isAnalyticsEnabled = isEnabled});
    }
    void answer(ScriptedAnswer answer) { server.script("/api/events", std::move(answer)); }

    void open() { queue.emplace(QXSDKHttpAnalyticsEventsOptions{.folder = folder.path()}); }
    /// Adds shares of the stickers of these numbers, the last one not included.
    void addShares(int first, int last)
    {
        for (int number = first; number < last; ++number) {
            queue->addEvent(shareEvent(std::to_string(number)));
        }
    }
    void addBatch() { addShares(0, kBatch); }

    [[nodiscard]] QString path() const { return folder.filePath(QStringLiteral("qxsdk-analytics-events.sqlite")); }
    [[nodiscard]] bool hasStored(std::size_t count) const
    {
        return waitFor([&] { return storedAt(path()).entries.size() == count; });
    }
    /// Waits until the queue has nothing to do but what these delays say.
    [[nodiscard]] bool waitsFor(const std::vector<std::chrono::nanoseconds>& pending) const
    {
        return waitFor([&] { return delays.pending() == pending; });
    }
    /// Brings a few first events to disk. They leave 29.5 seconds later.
    void write(std::size_t count)
    {
        using namespace std::chrono_literals;
        ASSERT_TRUE(waitsFor({500ms, 30s}));
        delays.advance(500ms);
        ASSERT_TRUE(hasStored(count));
    }
    /// Ends the queue and waits until it has gone, and that many are on disk.
    void close(std::size_t count)
    {
        queue.reset();
        ASSERT_TRUE(hasStored(count));
        ASSERT_TRUE(waitsFor({}));
    }

    /// Waits for the server's `count`th request, and reads it.
    [[nodiscard]] DecodedBatch batch(std::size_t count) const
    {
        server.waitForRequests(count);
        return decodedBatch(server.requests().at(count - 1).body);
    }

    QTemporaryDir folder;
    LoopbackServer server;
    ManualClock clock{std::chrono::milliseconds(1'600'000'000'250)};
    ManualDelayClock delays;
    const ScriptedRandom random{[] {
        return 0U;
    }}; // takes nothing off a delay
    std::optional<QXSDKHttpAnalyticsEventsQueue> queue;
};

} // namespace kovalin::test
