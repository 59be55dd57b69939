#include "platform/dispatch/SerialQueue.h"

#include "platform/dispatch/Gate.h"
#include "platform/dispatch/GlobalQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <functional>
#include <memory>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

namespace kovalin::platform {
namespace {

using test::finish;
using test::Gate;
using test::whenDestroyed;
using testing::ElementsAre;

TEST(SerialQueue, KeepsItsLabel)
{
    const SerialQueue queue(QStringLiteral("com.vole.connect.Schlange \u00e4"));
    EXPECT_EQ(queue.label(), QStringLiteral("com.vole.connect.Schlange \u00e4"));
}

TEST(SerialQueue, RunsJobsInTheOrderTheyCame)
{
    SerialQueue queue(QStringLiteral("order"));
    std::vector<int> ran;
    for (int i = 0; i < 1000; ++i) {
        queue.async([&ran, i] { ran.push_back(i); });
    }
    finish(queue);

    std::vector<int> expected(1000);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(ran, expected);
}

TEST(SerialQueue, KeepsTheOrderOfEachThreadThatAddsJobs)
{
    constexpr int kThreads = 4;
    constexpr int kJobs = 500;
    SerialQueue queue(QStringLiteral("order of each"));
    std::vector<std::vector<int>> ran(kThreads);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (std::size_t thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&queue, &ran, thread] {
            for (int i = 0; i < kJobs; ++i) {
                queue.async([&ran, thread, i] { ran[thread].push_back(i); });
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    finish(queue);

    std::vector<int> expected(kJobs);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_THAT(ran, testing::Each(expected));
}

TEST(SerialQueue, RunsOneJobAtATimeWhoeverAddsThem)
{
    constexpr int kThreads = 8;
    constexpr int kJobs = 1000;
    SerialQueue queue(QStringLiteral("one at a time"));
    // Neither is synchronised: only the queue keeps the jobs apart.
    int counter = 0;
    bool isInJob = false;
    int overlaps = 0;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&] {
            for (int i = 0; i < kJobs; ++i) {
                queue.async([&] {
                    overlaps += isInJob ? 1 : 0;
                    isInJob = true;
                    ++counter;
                    isInJob = false;
                });
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    finish(queue);
    EXPECT_EQ(counter, kThreads * kJobs);
    EXPECT_EQ(overlaps, 0);
}

TEST(SerialQueue, ShowsEachJobTheWritesOfTheOneBeforeAlsoAfterARest)
{
    SerialQueue queue(QStringLiteral("writes"));
    int value = 0;
    for (int i = 0; i < 300; ++i) {
        // The queue falls asleep between the jobs, and another thread wakes it each time.
        std::thread([&queue, &value] {
            Gate ran;
            queue.async([&value, &ran] {
                ++value;
                ran.open();
            });
            ran.wait();
        }).join();
    }
    int seen = 0;
    queue.async([&value, &seen] { seen = value; });
    finish(queue);
    EXPECT_EQ(seen, 300);
}

TEST(SerialQueue, ShowsAJobTheWritesOfItsPosterOnAnotherQueue)
{
    SerialQueue ping(QStringLiteral("ping"));
    SerialQueue pong(QStringLiteral("pong"));
    int value = 0; // Handed to and fro with no other synchronisation.
    Gate done;
    std::function<void()> hit = [&] {
        if (++value == 500) {
            done.open();
            return;
        }
        (ping.isCurrent() ? pong : ping).async(hit);
    };
    ping.async(hit);
    done.wait();
    finish(ping);
    finish(pong);
    EXPECT_EQ(value, 500);
}

TEST(SerialQueue, RunsAJobAddedByAJobAfterwardsBehindThoseAlreadyThere)
{
    SerialQueue queue(QStringLiteral("inside"));
    std::vector<std::string> ran;
    Gate allAdded;
    Gate done;
    queue.async([&] {
        allAdded.wait();
        queue.async([&] {
            ran.emplace_back("inner");
            done.open();
        });
        ran.emplace_back("first");
    });
    queue.async([&] { ran.emplace_back("second"); });
    allAdded.open();
    done.wait();
    finish(queue);
    EXPECT_THAT(ran, ElementsAre("first", "second", "inner"));
}

TEST(SerialQueue, ReturnsFromAsyncWhileAJobBlocks)
{
    SerialQueue queue(QStringLiteral("blocked"));
    Gate gate;
    bool didRun = false;
    queue.async([&gate] { gate.wait(); });
    queue.async([&didRun] { didRun = true; });
    gate.open(); // Reached at all only because neither call waited.
    finish(queue);
    EXPECT_TRUE(didRun);
}

TEST(SerialQueue, IsCurrentInItsOwnJobsAlone)
{
    SerialQueue queue(QStringLiteral("same label"));
    SerialQueue other(QStringLiteral("same label"));
    bool inOwn = false;
    bool inOther = true;
    bool inGlobal = true;
    Gate globalRan;
    queue.async([&] { inOwn = queue.isCurrent(); });
    other.async([&] { inOther = queue.isCurrent(); });
    dispatchGlobal([&] {
        inGlobal = queue.isCurrent();
        globalRan.open();
    });
    finish(queue);
    finish(other);
    globalRan.wait();
    EXPECT_TRUE(inOwn);
    EXPECT_FALSE(inOther);
    EXPECT_FALSE(inGlobal);
    EXPECT_FALSE(queue.isCurrent());
}

TEST(SerialQueue, PassesTheAssertionInItsOwnJob)
{
    SerialQueue queue(QStringLiteral("own"));
    bool passed = false;
    queue.async([&] {
        queue.assertOnQueue();
        passed = true;
    });
    finish(queue);
    EXPECT_TRUE(passed);
}

TEST(SerialQueueDeathTest, StopsOffTheQueueAndNamesTheLabelAndTheCaller)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const SerialQueue queue(QStringLiteral("com.vole.connect.Lonely"));
    EXPECT_EXIT(queue.assertOnQueue(), testing::KilledBySignal(SIGABRT),
                "TestBody.*serial queue \"com.vole.connect.Lonely\"");
}

TEST(SerialQueueDeathTest, StopsOnAnotherQueue)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const SerialQueue queue(QStringLiteral("wanted"));
    SerialQueue other(QStringLiteral("other"));
    EXPECT_EXIT(
        {
            other.async([&queue] { queue.assertOnQueue(); });
            finish(other);
        },
        testing::KilledBySignal(SIGABRT), "serial queue \"wanted\"");
}

TEST(SerialQueue, DestroysAJobOnTheQueueBeforeTheNextStarts)
{
    SerialQueue queue(QStringLiteral("captures"));
    std::vector<std::string> events;
    for (const char* const name : {"1", "2"}) {
        queue.async([&events, name, token = whenDestroyed([&queue, &events, name] {
                                        events.push_back(std::string(queue.isCurrent() ? "gone " : "astray ") + name);
                                    })] { events.push_back(std::string("ran ") + name); });
    }
    finish(queue);
    EXPECT_THAT(events, ElementsAre("ran 1", "gone 1", "ran 2", "gone 2"));
}

TEST(SerialQueue, TakesJobsFromTheCapturesOfADestroyedJob)
{
    SerialQueue queue(QStringLiteral("last words"));
    Gate done;
    queue.async([token = whenDestroyed([&] { queue.async([&] { done.open(); }); })] {});
    done.wait();
    finish(queue);
    EXPECT_TRUE(done.isOpen());
}

TEST(SerialQueue, RunsWhatIsPendingInOrderAfterItIsDestroyed)
{
    std::vector<int> ran;
    Gate destroyed;
    Gate done;
    {
        SerialQueue queue(QStringLiteral("short-lived"));
        queue.async([&destroyed] { destroyed.wait(); });
        for (int i = 0; i < 100; ++i) {
            queue.async([&ran, i] { ran.push_back(i); });
        }
        queue.async([&done] { done.open(); });
    }
    destroyed.open();
    done.wait();

    std::vector<int> expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(ran, expected);
}

TEST(SerialQueue, CanBeDestroyedInItsOwnJob)
{
    auto queue = std::make_unique<SerialQueue>(QStringLiteral("own end"));
    bool didDestroy = false;
    Gate allAdded;
    Gate done;
    queue->async([&] {
        allAdded.wait();
        queue.reset();
        didDestroy = true;
    });
    queue->async([&done] { done.open(); });
    allAdded.open();
    done.wait();
    EXPECT_TRUE(didDestroy);
    EXPECT_EQ(queue, nullptr);
}

TEST(SerialQueue, CanBeDestroyedByTheCapturesOfItsOwnJob)
{
    Gate allAdded;
    Gate done;
    auto queue = std::make_shared<SerialQueue>(QStringLiteral("held by its job"));
    const std::weak_ptr<SerialQueue> watched = queue;
    bool wasGone = false;
    queue->async([&allAdded, queue] { allAdded.wait(); });
    queue->async([&] {
        wasGone = watched.expired();
        done.open();
    });
    queue.reset();
    allAdded.open();
    done.wait();
    EXPECT_TRUE(wasGone);
}

TEST(SerialQueue, RunsSideBySideWithAnotherQueue)
{
    SerialQueue one(QStringLiteral("one"));
    SerialQueue two(QStringLiteral("two"));
    Gate oneStarted;
    Gate twoStarted;
    one.async([&] {
        oneStarted.open();
        twoStarted.wait();
    });
    two.async([&] {
        twoStarted.open();
        oneStarted.wait();
    });
    finish(one);
    finish(two);
    EXPECT_TRUE(oneStarted.isOpen());
    EXPECT_TRUE(twoStarted.isOpen());
}

TEST(SerialQueue, KeepsTwentyOtherQueuesGoingWhileItIsBlocked)
{
    SerialQueue blocked(QStringLiteral("blocked"));
    Gate gate;
    blocked.async([&gate] { gate.wait(); });

    std::vector<std::unique_ptr<SerialQueue>> others;
    std::atomic<int> ran = 0;
    for (int i = 0; i < 20; ++i) {
        others.push_back(std::make_unique<SerialQueue>(QStringLiteral("other")));
        others.back()->async([&ran] { ++ran; });
    }
    for (const auto& other : others) {
        finish(*other);
    }
    EXPECT_EQ(ran, 20);
    gate.open();
    finish(blocked);
}

TEST(SerialQueue, LeavesTheGlobalPoolToOthersWhileManyQueuesBlock)
{
    std::vector<std::unique_ptr<SerialQueue>> blocked;
    Gate gate;
    for (int i = 0; i < 20; ++i) {
        blocked.push_back(std::make_unique<SerialQueue>(QStringLiteral("blocked")));
        blocked.back()->async([&gate] { gate.wait(); });
    }
    Gate globalRan;
    dispatchGlobal([&globalRan] { globalRan.open(); });
    globalRan.wait();
    gate.open();
    for (const auto& queue : blocked) {
        finish(*queue);
    }
    EXPECT_TRUE(globalRan.isOpen());
}

} // namespace
} // namespace kovalin::platform
