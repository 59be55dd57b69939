#include "kits/core/default/AnalyticsFixture.h"
#include "kits/core/default/AnalyticsOutbox.h"
#include "support/ChildProcess.h"

#include <atomic>
#include <memory>
#include <thread>

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

// A program of its own: an opt-out counts for all queues that the process makes later, and so for other tests.

/// What becomes of events when the client setup's switch is off, by the moment at which that happens.
class AnalyticsOptOut : public AnalyticsFixture {
protected:
    /// Whether the text stands anywhere on disk. Read by another process: in this one, closing a file ends SQLite's locks on it.
    [[nodiscard]] bool isOnDisk(const QByteArray& text) const
    {
        ChildProcess reading(QStringLiteral("/bin/sh"),
                             {QStringLiteral("-c"), QStringLiteral("cat \"$0\"/*"), folder.path()});
        return reading.readAll().contains(text);
    }

    /// Lets time pass until the server has got so many requests; and again, since the queue may still be busy erasing when it
    /// begins.
    [[nodiscard]] bool passTimeUntilPosted(std::size_t count)
    {
        return waitFor([&] {
            delays.advance(1s);
            return server.requests().size() >= count;
        });
    }

    /// Shows that the queue has nothing from before: what is added now is all that it posts.
    void expectNothingButWhatIsAddedNow(std::size_t requestsBefore)
    {
        answer(ScriptedAnswer::withStatus(200));
        QXSDKAnalyticsEventsQueue& used = queue ? *queue : *QXSDKAnalyticsEventsQueue::sharedInstance();
        used.addEvent(shareEvent("now"));
        ASSERT_TRUE(passTimeUntilPosted(requestsBefore + 1));
        const DecodedBatch posted = batch(requestsBefore + 1);
        EXPECT_THAT(posted.stickers(), ElementsAre("now"));
        EXPECT_EQ(posted.dropped, "0");
        EXPECT_TRUE(hasStored(0));
        EXPECT_TRUE(waitsFor({}));
        EXPECT_EQ(server.requests().size(), requestsBefore + 1);
    }
};

TEST_F(AnalyticsOptOut, TakesNothingWhileItLasts)
{
    open();
    setAnalytics(false);
    addShares(0, 250);
    setAnalytics(true);
    expectNothingButWhatIsAddedNow(0);
}

TEST_F(AnalyticsOptOut, TakesNothingThroughTheProcessesQueueEither)
{
    QXSDKAnalyticsEventsQueue::setSharedInstance(
        std::make_shared<QXSDKHttpAnalyticsEventsQueue>(QXSDKHttpAnalyticsEventsOptions{.folder = folder.path()}));
    setAnalytics(false);
    for (int i = 0; i < kBatch; ++i) {
        QXSDKAnalyticsEventsQueue::sharedInstance()->addEvent(shareEvent("a"));
    }
    setAnalytics(true);
    expectNothingButWhatIsAddedNow(0);
    QXSDKAnalyticsEventsQueue::setSharedInstance(nullptr);
}

TEST_F(AnalyticsOptOut, ErasesWhatLiesInMemory)
{
    open();
    addShares(0, 50);
    setAnalytics(false);
    setAnalytics(true);
    expectNothingButWhatIsAddedNow(0);
}

TEST_F(AnalyticsOptOut, ErasesWhatLiesOnDisk)
{
    open();
    queue->addEvent(shareEvent("unmistakable"));
    ASSERT_TRUE(waitFor([this] {
        delays.advance(100ms);
        return isOnDisk("unmistakable");
    }));
    setAnalytics(false);
    EXPECT_TRUE(hasStored(0));
    EXPECT_TRUE(waitFor([this] { return !isOnDisk("unmistakable"); })); // the log is cut off after the removal
    ASSERT_TRUE(waitsFor({}));
    setAnalytics(true);
    expectNothingButWhatIsAddedNow(0);
}

TEST_F(AnalyticsOptOut, BreaksOffWhatIsOnItsWayAndNeverPostsItAgain)
{
    answer(ScriptedAnswer::held(""));
    open();
    addBatch();
    server.waitForHeld(1);
    setAnalytics(false);
    EXPECT_TRUE(hasStored(0));
    server.release("/api/events");
    setAnalytics(true);
    expectNothingButWhatIsAddedNow(1);
}

TEST_F(AnalyticsOptOut, EndsTheWaitForARepetition)
{
    answer(ScriptedAnswer::withStatus(500));
    open();
    addBatch();
    ASSERT_TRUE(waitsFor({5s}));
    setAnalytics(false);
    ASSERT_TRUE(waitsFor({}));
    EXPECT_TRUE(hasStored(0));
    setAnalytics(true);
    expectNothingButWhatIsAddedNow(1);
}

TEST_F(AnalyticsOptOut, ForgetsWhatWasDroppedToo)
{
    answer(ScriptedAnswer::withStatus(400));
    open();
    addBatch();
    server.waitForRequests(1);
    ASSERT_TRUE(waitFor([this] { return storedAt(path()).dropped == kBatch; }));
    setAnalytics(false);
    ASSERT_TRUE(waitFor([this] { return storedAt(path()).dropped == 0; }));
    setAnalytics(true);
    expectNothingButWhatIsAddedNow(1);
}

TEST_F(AnalyticsOptOut, ErasesWhatAnEarlierRunLeftAndPostsNoneOfItFirst)
{
    QXSDKClientSetup::setShared({}); // no server yet
    open();
    addBatch();
    ASSERT_TRUE(waitsFor({5s}));
    close(kBatch);
    setAnalytics(false);
    EXPECT_EQ(storedAt(path()).entries.size(), static_cast<std::size_t>(kBatch)); // nobody is there to erase it
    open(); // With as much on disk, it would post at once.
    EXPECT_TRUE(hasStored(0));
    setAnalytics(true);
    expectNothingButWhatIsAddedNow(0);
}

TEST_F(AnalyticsOptOut, CountsThoughItWasTakenBackBeforeTheQueueWasMade)
{
    QXSDKClientSetup::setShared({});
    open();
    addBatch();
    ASSERT_TRUE(waitsFor({5s}));
    close(kBatch);
    setAnalytics(false);
    setAnalytics(true);
    open();
    EXPECT_TRUE(hasStored(0));
    expectNothingButWhatIsAddedNow(0);
}

TEST_F(AnalyticsOptOut, IsDoneWithOnceItIsCarriedOut)
{
    open();
    setAnalytics(false);
    setAnalytics(true);
    addShares(0, 3);
    close(3);
    open(); // What came after it stays.
    ASSERT_TRUE(passTimeUntilPosted(1));
    EXPECT_THAT(batch(1).stickers(), ElementsAre("0", "1", "2"));
}

TEST_F(AnalyticsOptOut, HoldsForAQueueThatIsMadeMeanwhile)
{
    setAnalytics(false);
    open();
    addShares(0, 10);
    queue.reset();
    open(); // a second one, after an opt-out that the first one carried out
    addShares(0, 10);
    setAnalytics(true);
    expectNothingButWhatIsAddedNow(0);
}

TEST_F(AnalyticsOptOut, LeavesEverythingAloneWhereTheSetupChangesOtherwise)
{
    open();
    addShares(0, 3);
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("other")});
    setAnalytics(true);
    addShares(3, 4);
    ASSERT_TRUE(passTimeUntilPosted(1));
    EXPECT_THAT(batch(1).stickers(), ElementsAre("0", "1", "2", "3"));
}

TEST_F(AnalyticsOptOut, IsNoMatterOfADestroyedQueue)
{
    open();
    addShares(0, 3);
    close(3);
    setAnalytics(false);
    EXPECT_EQ(storedAt(path()).entries.size(), 3U);
}

TEST_F(AnalyticsOptOut, ErasesWhatAKilledProcessLeft)
{
    {
        ChildProcess child(QStringLiteral(KOVALIN_ANALYTICS_CHILD),
                           {folder.path(), QString(), QStringLiteral("0"), QStringLiteral("100")});
        ASSERT_TRUE(child.readLine().has_value());
    }
    ASSERT_EQ(storedAt(path()).entries.size(), static_cast<std::size_t>(kBatch));
    setAnalytics(false);
    open();
    EXPECT_TRUE(hasStored(0));
    setAnalytics(true);
    expectNothingButWhatIsAddedNow(0);
}

TEST_F(AnalyticsOptOut, KeepsNothingThatIsAddedAfterItWhateverOthersDo)
{
    answer(ScriptedAnswer::withStatus(200));
    open();
    std::atomic<bool> isOver = false;
    std::thread other([&] {
        while (!isOver) {
            queue->addEvent(shareEvent("of another thread"));
        }
    });
    constexpr int turns = 200;
    for (int turn = 0; turn < turns; ++turn) {
        setAnalytics(false);
        queue->addEvent(shareEvent("unwanted"));
        setAnalytics(true);
        queue->addEvent(shareEvent("wanted"));
    }
    isOver = true;
    other.join();
    queue.reset();
    ASSERT_TRUE(waitsFor({}));
    for (const ReceivedRequest& request : server.requests()) {
        EXPECT_FALSE(request.body.contains("unwanted"));
    }
    EXPECT_FALSE(isOnDisk("unwanted"));
}

TEST_F(AnalyticsOptOut, EmptiesTheQueueWhileOthersAdd)
{
    answer(ScriptedAnswer::withStatus(500));
    open();
    std::atomic<bool> isOver = false;
    std::vector<std::thread> others;
    for (int i = 0; i < 2; ++i) {
        others.emplace_back([&] {
            while (!isOver) {
                queue->addEvent(shareEvent("a"));
            }
        });
    }
    server.waitForRequests(1);
    setAnalytics(false);
    EXPECT_TRUE(hasStored(0));
    isOver = true;
    for (std::thread& thread : others) {
        thread.join();
    }
    EXPECT_TRUE(waitsFor({}));
    EXPECT_TRUE(hasStored(0));
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(AnalyticsOptOut, MayComeWhileQueuesAreMadeAndDestroyed)
{
    std::atomic<bool> isOver = false;
    std::thread other([&] {
        while (!isOver) {
            setAnalytics(false);
            setAnalytics(true);
        }
    });
    const auto alive = std::make_shared<int>();
    for (int turn = 0; turn < 50; ++turn) {
        const auto outbox =
            kits::AnalyticsOutbox::create({.path = folder.filePath(QString::number(turn)),
                                           .label = QStringLiteral("test outbox"),
                                           .limits = {.maxBytes = 1000, .maxEntries = 10, .maxAge = 1h},
                                           .batch = {.maxEntries = 10, .maxBytes = 1000, .longestWait = 1h},
                                           .retry = {.first = 1h, .longest = 1h, .longestRetryAfter = 1h},
                                           .request = [alive](const kits::OutboxBatch&) {
                                               return platform::UrlRequest();
                                           }});
        outbox->add("x");
        outbox->end();
    }
    EXPECT_TRUE(waitFor([&alive] { return alive.use_count() == 1; })); // all have gone
    isOver = true;
    other.join();
}

} // namespace
} // namespace kovalin::test
