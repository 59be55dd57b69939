#include "kits/core/default/OutboxFixture.h"
#include "platform/foundation/Random.h"
#include "support/LogLines.h"

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// What is on the way from an outbox to its server.
class OutboxSending : public OutboxFixture {
protected:
    OutboxSending() { answer(ScriptedAnswer::withStatus(204)); }

    /// Waits until the outbox has nothing to do but what this says: the delays that are pending.
    void waitForDelay(std::chrono::nanoseconds delay)
    {
        ASSERT_TRUE(waitFor([&] { return delays.pending() == std::vector{delay}; }));
    }
    const std::vector<std::string> five = {"a", "b", "c", "d", "e"};
};

TEST_F(OutboxSending, PostsABatchAsSoonAsThereIsEnough)
{
    open();
    add(five);
    const PostedBatch posted = batch(1);
    EXPECT_EQ(posted.entries, five);
    EXPECT_EQ(posted.dropped, 0);
    EXPECT_EQ(QSet<QString>(posted.ids.begin(), posted.ids.end()).size(), 5);
    EXPECT_TRUE(isOnDisk({}));
    EXPECT_THAT(delays.pending(), IsEmpty()); // Nothing to do, and nothing wakes up.
}

TEST_F(OutboxSending, PostsABatchAsSoonAsThereAreEnoughBytes)
{
    open();
    add({std::string(60, 'x'), std::string(60, 'y')});
    EXPECT_THAT(batch(1).entries, ElementsAre(std::string(60, 'x')));
}

TEST_F(OutboxSending, LetsAFewEntriesWaitForOthers)
{
    open();
    add({"a"});
    settle();
    advance(29s);
    add({"b"});
    settle();
    EXPECT_THAT(posted(), IsEmpty());
    advance(1s);
    EXPECT_THAT(batch(1).entries, ElementsAre("a", "b"));
    EXPECT_TRUE(isOnDisk({}));
}

TEST_F(OutboxSending, PostsWhatIsLeftOfAnEarlierRun)
{
    open();
    add({"a", "b"});
    close();
    const QStringList ids = storedAt(path()).ids;
    open();
    settle();
    advance(30s);
    EXPECT_THAT(batch(1).entries, ElementsAre("a", "b"));
    EXPECT_EQ(batch(1).ids, ids);
}

TEST_F(OutboxSending, PostsOneBatchAtATimeOldestFirst)
{
    answer(ScriptedAnswer::held(""));
    open();
    add(five);
    server.waitForHeld(1);
    add({"f", "g", "h", "i", "j", "k"});
    settle();
    EXPECT_EQ(posted().size(), 1U);
    server.release("/post");
    EXPECT_THAT(batch(2).entries, ElementsAre("f", "g", "h", "i", "j"));
    EXPECT_TRUE(isOnDisk({"k"}));
    waitForDelay(30s);
    advance(30s);
    EXPECT_THAT(batch(3).entries, ElementsAre("k"));
}

TEST_F(OutboxSending, IsOnDiskBeforeItLeaves)
{
    answer(ScriptedAnswer::held(""));
    open();
    add(five);
    server.waitForHeld(1);
    EXPECT_EQ(onDisk(), five);
    server.release("/post");
    EXPECT_TRUE(isOnDisk({}));
}

TEST_F(OutboxSending, RepeatsTheBatchAfterAServersFailure)
{
    answer(ScriptedAnswer::withStatus(500));
    open();
    add(five);
    const PostedBatch first = batch(1);
    waitForDelay(8s);
    EXPECT_EQ(onDisk(), five);
    answer(ScriptedAnswer::withStatus(200));
    advance(7999ms);
    EXPECT_EQ(posted().size(), 1U);
    advance(1ms);
    const PostedBatch second = batch(2);
    EXPECT_EQ(second.id, first.id);
    EXPECT_EQ(second.ids, first.ids);
    EXPECT_TRUE(isOnDisk({}));
    EXPECT_EQ(posted().size(), 2U);
}

TEST_F(OutboxSending, WaitsLongerAfterEachFailureUpToALimitAndAnewAfterSuccess)
{
    const LogLines log;
    answer(ScriptedAnswer::withStatus(503));
    open();
    add(five);
    std::size_t count = 0;
    for (const auto delay : {8s, 16s, 32s, 60s, 60s}) {
        server.waitForRequests(++count);
        waitForDelay(delay);
        advance(delay - 1s);
        EXPECT_EQ(posted().size(), count);
        if (count == 5) {
            answer(ScriptedAnswer::withStatus(200));
        }
        advance(1s);
    }
    server.waitForRequests(6);
    EXPECT_TRUE(isOnDisk({}));
    EXPECT_EQ(log.count(QStringLiteral("can't post")), 1);
    answer(ScriptedAnswer::withStatus(503));
    add(five);
    server.waitForRequests(7);
    waitForDelay(8s);
}

TEST_F(OutboxSending, LetsChanceTakeUpToHalfOffADelay)
{
    const ScriptedRandom half{[] {
        return 0x8000'0000U;
    }};
    answer(ScriptedAnswer::withStatus(500));
    open();
    add(five);
    server.waitForRequests(1);
    waitForDelay(6s);
}

TEST_F(OutboxSending, WaitsAsLongAsTheServerAsksForWithinALimit)
{
    ScriptedAnswer busy = ScriptedAnswer::withStatus(429);
    busy.headers = {{"Retry-After", "90"}};
    answer(busy);
    open();
    add(five);
    server.waitForRequests(1);
    waitForDelay(90s);

    busy = ScriptedAnswer::withStatus(503);
    busy.headers = {{"Retry-After", "Sun, 13 Sep 2020 12:28:30 GMT"}}; // 110 seconds after the clock's start
    answer(busy);
    advance(90s);
    server.waitForRequests(2);
    waitForDelay(20s);

    busy.headers = {{"Retry-After", "100000"}};
    answer(busy);
    advance(20s);
    server.waitForRequests(3);
    waitForDelay(120s);
}

TEST_F(OutboxSending, GivesUpWhatTheServerRefuses)
{
    const LogLines log;
    answer(ScriptedAnswer::withStatus(400));
    open();
    add(five);
    server.waitForRequests(1);
    EXPECT_TRUE(isOnDisk({}));
    EXPECT_EQ(storedAt(path()).dropped, 5);
    EXPECT_EQ(log.count(QStringLiteral("gives up")), 1);
    EXPECT_THAT(delays.pending(), IsEmpty());

    answer(ScriptedAnswer::withStatus(200));
    add({"f", "g", "h", "i", "j"});
    EXPECT_EQ(batch(2).dropped, 5);
    EXPECT_TRUE(waitFor([&] { return storedAt(path()).dropped == 0; }));
    add({"k", "l", "m", "n", "o"});
    EXPECT_EQ(batch(3).dropped, 0);
}

TEST_F(OutboxSending, RepeatsAfterTimeOutsByStatus)
{
    answer(ScriptedAnswer::withStatus(408));
    open();
    add(five);
    server.waitForRequests(1);
    waitForDelay(8s);
}

TEST_F(OutboxSending, RepeatsAfterACutConnection)
{
    for (const auto& cut : {ScriptedAnswer::closed(), ScriptedAnswer::garbage("nonsense\r\n\r\n"),
                            ScriptedAnswer::cut("0123456789", 5)}) {
        answer(cut);
        open();
        add(five);
        server.waitForRequests(1);
        waitForDelay(8s);
        EXPECT_EQ(onDisk(), five);
        outbox->erase();
        settle();
        close();
    }
}

TEST_F(OutboxSending, RepeatsWhereNobodyListens)
{
    const QUrl url = [] {
        LoopbackServer gone;
        gone.stopListening();
        return gone.url(QStringLiteral("/post"));
    }();
    auto refused = options();
    refused.request = [url](const kits::OutboxBatch& batch) {
        return platform::UrlRequest{.url = url, .method = platform::UrlRequest::Method::Post, .body = bodyOf(batch)};
    };
    outbox.emplace(refused);
    add(five);
    waitForDelay(8s);
    EXPECT_EQ(onDisk(), five);
    advance(8s);
    waitForDelay(16s);
}

TEST_F(OutboxSending, RepeatsWhereAnotherAddressAnswered)
{
    server.script("/login", ScriptedAnswer::ok("who are you?"));
    answer(ScriptedAnswer::redirect("/login"));
    open();
    add(five);
    server.waitForRequests(2);
    waitForDelay(8s);
    EXPECT_EQ(onDisk(), five);
}

TEST_F(OutboxSending, TakesWhatCameMeanwhileAlongWhenItRepeats)
{
    answer(ScriptedAnswer::withStatus(500));
    open();
    add({"a"});
    settle();
    advance(30s);
    const PostedBatch first = batch(1);
    waitForDelay(8s);
    add({"b", "c", "d", "e", "f"});
    settle(); // Enough for a batch; but the server is left alone.
    EXPECT_EQ(posted().size(), 1U);
    answer(ScriptedAnswer::withStatus(200));
    advance(8s);
    EXPECT_THAT(batch(2).entries, ElementsAre("a", "b", "c", "d", "e"));
    EXPECT_NE(batch(2).id, first.id);
    EXPECT_EQ(batch(2).ids.first(), first.ids.first());
    EXPECT_TRUE(isOnDisk({"f"}));
}

} // namespace
} // namespace kovalin::test
