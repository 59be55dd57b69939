#include "kits/core/default/QXSDKHttpAnalyticsEventsQueue.h"

#include "kits/core/VoleKitEvents.h"
#include "kits/core/default/AnalyticsFixture.h"
#include "kits/core/picoproto.h"
#include "platform/foundation/CachesDirectory.h"

#include <QtCore/QFile>
#include <QtCore/QUuid>

#include <set>

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

bool isUuid(const std::string& text)
{
    return !QUuid::fromString(QString::fromStdString(text)).isNull();
}

/// What a server is told, and when.
class QXSDKHttpAnalyticsEventsQueueTest : public AnalyticsFixture {
protected:
    QXSDKHttpAnalyticsEventsQueueTest() { open(); }
};

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, PostsWhatItsFormatSays)
{
    queue->addEvent(shareEvent("first"));
    clock.advance(1s);
    picoproto_ctx_s* const data = picoproto_new("ServerEventData");
    picoproto_ctx_s* const close = picoproto_new("KovalinKitStickerPickerClose");
    picoproto_write_varint_field(close, 2, 12'345);
    picoproto_write_embedded_message_field(data, 31, close, 1);
    queue->addEvent(VoleKitEvents::serverEventWithServerEventData(data));
    queue->addEvent({}); // an event with nothing in it
    write(3);
    delays.advance(29500ms);

    const DecodedBatch posted = batch(1);
    EXPECT_TRUE(isUuid(posted.id));
    EXPECT_EQ(posted.dropped, "0");
    ASSERT_EQ(posted.events.size(), 3U);
    for (const std::string& id : posted.ids()) {
        EXPECT_TRUE(isUuid(id));
    }
    EXPECT_EQ(posted.events[0].timeMillis, "1600000000250");
    const DecodedMessage share = posted.events[0].data.one("kovalin_kit_share");
    EXPECT_EQ(share.value("sticker_id"), "first");
    EXPECT_EQ(share.value("share_category"), "2");
    EXPECT_EQ(share.value("search_category"), "3");
    const DecodedMessage base = share.one("kovalin_kit_event_base");
    EXPECT_EQ(base.value("sticker_picker_session_id"), "session");
    EXPECT_EQ(base.one("kit_event_base").value("kit_type"), "1");
    EXPECT_EQ(base.one("kit_event_base").value("client_id"), "me");
    EXPECT_EQ(posted.events[1].timeMillis, "1600000001250");
    EXPECT_EQ(
        posted.events[1].data.one("kovalin_kit_sticker_picker_close").value("sticker_picker_session_duration_millis"),
        "12345");
    EXPECT_EQ(posted.events[2].timeMillis, "1600000001250");
    EXPECT_THAT(posted.events[2].data.messages, IsEmpty());

    const ReceivedRequest request = server.requests().front();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/api/events");
    EXPECT_EQ(request.header("Content-Type"), "application/x-protobuf");
    EXPECT_TRUE(hasStored(0));
}

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, PostsAHundredAtOnceInTheirOrderWithAnIdEach)
{
    addBatch();
    const DecodedBatch posted = batch(1);
    std::vector<std::string> expected;
    for (int number = 0; number < kBatch; ++number) {
        expected.push_back(std::to_string(number));
    }
    EXPECT_EQ(posted.stickers(), expected);
    const auto ids = posted.ids();
    EXPECT_EQ(std::set(ids.begin(), ids.end()).size(), expected.size());
    EXPECT_TRUE(hasStored(0));
}

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, WaitsForAClientSetup)
{
    QXSDKClientSetup::setShared({});
    addBatch();
    ASSERT_TRUE(waitsFor({5s}));
    EXPECT_TRUE(hasStored(kBatch));
    setAnalytics(true);
    delays.advance(5s);
    EXPECT_EQ(batch(1).events.size(), static_cast<std::size_t>(kBatch));
}

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, RepeatsABatchWithTheSameIdsUntilItArrives)
{
    answer(ScriptedAnswer::withStatus(500));
    addBatch();
    ASSERT_TRUE(waitsFor({5s}));
    const DecodedBatch first = batch(1);
    answer(ScriptedAnswer::closed()); // It may have arrived, or not.
    delays.advance(5s);
    ASSERT_TRUE(waitsFor({10s}));
    answer(ScriptedAnswer::withStatus(200));
    delays.advance(10s);
    for (const std::size_t repeat : {2U, 3U}) {
        EXPECT_EQ(batch(repeat).id, first.id);
        EXPECT_EQ(batch(repeat).ids(), first.ids());
    }
    EXPECT_TRUE(hasStored(0));
}

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, PostsNothingAgainThatArrived)
{
    addBatch();
    server.waitForRequests(1);
    ASSERT_TRUE(hasStored(0));
    EXPECT_THAT(delays.pending(), IsEmpty()); // Nothing would wake it.
    queue.reset();
    open();
    addShares(kBatch, kBatch + 1);
    write(1);
    delays.advance(29500ms);
    EXPECT_THAT(batch(2).stickers(), ElementsAre("100"));
    EXPECT_TRUE(hasStored(0));
    EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, WaitsAsLongAsTheServerAsksFor)
{
    ScriptedAnswer busy = ScriptedAnswer::withStatus(503);
    busy.headers = {{"Retry-After", "90"}};
    answer(busy);
    addBatch();
    ASSERT_TRUE(waitsFor({90s}));
    busy = ScriptedAnswer::withStatus(429);
    busy.headers = {{"Retry-After", "100000"}}; // more than an hour, which is what is granted
    answer(busy);
    delays.advance(90s);
    server.waitForRequests(2);
    ASSERT_TRUE(waitsFor({1h}));
    answer(ScriptedAnswer::withStatus(200));
    delays.advance(1h - 1ms);
    EXPECT_EQ(server.requests().size(), 2U);
    delays.advance(1ms);
    EXPECT_EQ(batch(3).ids(), batch(1).ids());
}

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, GivesUpWhatTheServerRefusesAndTellsOfIt)
{
    answer(ScriptedAnswer::withStatus(400));
    addBatch();
    server.waitForRequests(1);
    ASSERT_TRUE(hasStored(0));
    EXPECT_EQ(storedAt(path()).dropped, kBatch);
    EXPECT_THAT(delays.pending(), IsEmpty());
    answer(ScriptedAnswer::withStatus(200));
    addShares(kBatch, 2 * kBatch);
    EXPECT_EQ(batch(2).dropped, "100");
    EXPECT_EQ(batch(2).stickers().front(), "100");
    addBatch();
    EXPECT_EQ(batch(3).dropped, "0");
}

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, KeepsFiveThousandAndTellsHowManyOlderOnesItDropped)
{
    constexpr int kept = 5000;
    constexpr int dropped = 30;
    answer(ScriptedAnswer::withStatus(500));
    addBatch();
    ASSERT_TRUE(waitsFor({5s}));
    addShares(kBatch, kept + dropped);
    ASSERT_TRUE(waitsFor({500ms, 5s}));
    delays.advance(500ms);
    ASSERT_TRUE(hasStored(kept));
    EXPECT_EQ(storedAt(path()).dropped, dropped);
    answer(ScriptedAnswer::withStatus(200));
    delays.advance(4500ms);
    const DecodedBatch posted = batch(2);
    EXPECT_EQ(posted.dropped, "30");
    EXPECT_EQ(posted.stickers().front(), "30");
    server.waitForRequests(1 + kept / kBatch);
    EXPECT_EQ(batch(3).dropped, "0");
    EXPECT_TRUE(hasStored(0));
    EXPECT_EQ(batch(1 + kept / kBatch).stickers().back(), std::to_string(kept + dropped - 1));
}

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, KeepsTwoMebibytes)
{
    constexpr qsizetype kept = qsizetype(2) * 1024 * 1024;
    constexpr int added = 40;
    answer(ScriptedAnswer::withStatus(500));
    for (int number = 0; number < added; ++number) {
        // 64 KiB, so that each is a batch of its own; known by its first letters.
        queue->addEvent(shareEvent(std::to_string(number) + std::string(65'536, '.')));
        if (number == 0) {
            ASSERT_TRUE(waitsFor({5s}));
        }
    }
    ASSERT_TRUE(waitsFor({500ms, 5s}));
    delays.advance(500ms);
    ASSERT_TRUE(waitFor([this] { return storedAt(path()).dropped > 0; }));
    const StoredOutbox stored = storedAt(path());
    qsizetype bytes = 0;
    for (const QByteArray& entry : stored.entries) {
        bytes += entry.size();
    }
    EXPECT_LE(bytes, kept);
    EXPECT_GT(bytes + stored.entries.front().size(), kept);
    EXPECT_EQ(stored.dropped + static_cast<qint64>(stored.entries.size()), added);
    answer(ScriptedAnswer::withStatus(200));
    delays.advance(4500ms);
    const DecodedBatch posted = batch(2);
    EXPECT_EQ(posted.dropped, std::to_string(stored.dropped));
    ASSERT_EQ(posted.events.size(), 1U);
    EXPECT_TRUE(posted.stickers().front().starts_with(std::to_string(stored.dropped) + '.'));
}

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, DropsWhatIsOlderThanAWeek)
{
    addShares(0, 2);
    write(2);
    clock.advance(24h * 7); // asleep: no delay passes
    addShares(2, 3);
    ASSERT_TRUE(waitsFor({500ms, 29500ms}));
    delays.advance(500ms);
    EXPECT_TRUE(hasStored(3));
    clock.advance(1ms);
    delays.advance(29s);
    const DecodedBatch posted = batch(1);
    EXPECT_THAT(posted.stickers(), ElementsAre("2"));
    EXPECT_EQ(posted.dropped, "2");
}

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, LeavesWhatItHasToTheNextOne)
{
    addShares(0, 3);
    close(3);
    const QStringList ids = storedAt(path()).ids;
    open();
    ASSERT_TRUE(waitsFor({30s}));
    delays.advance(30s);
    EXPECT_THAT(batch(1).stickers(), ElementsAre("0", "1", "2"));
    EXPECT_THAT(batch(1).ids(), ElementsAre(ids[0].toStdString(), ids[1].toStdString(), ids[2].toStdString()));
}

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, KeepsItsFileInTheCachesDirectory)
{
    const QTemporaryDir caches;
    platform::setCachesDirectory(caches.path());
    const QXSDKHttpAnalyticsEventsQueue usual;
    platform::setCachesDirectory({});
    EXPECT_TRUE(
        waitFor([&] { return QFile::exists(caches.filePath(QStringLiteral("qxsdk-analytics-events.sqlite"))); }));
}

TEST_F(QXSDKHttpAnalyticsEventsQueueTest, IsTheProcessesQueueWhereAHostInstallsIt)
{
    queue.reset();
    QXSDKAnalyticsEventsQueue::setSharedInstance(
        std::make_shared<QXSDKHttpAnalyticsEventsQueue>(QXSDKHttpAnalyticsEventsOptions{.folder = folder.path()}));
    QXSDKAnalyticsEventsQueue::sharedInstance()->addEvent(shareEvent("a"));
    QXSDKAnalyticsEventsQueue::setSharedInstance(nullptr);
    EXPECT_TRUE(hasStored(1));
}

} // namespace
} // namespace kovalin::test
