#include "platform/dispatch/ThreadQueue.h"

#include "platform/dispatch/Gate.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/dispatch/ThreadCheck.h"

#include <QtCore/QEventLoop>
#include <QtCore/QThread>
#include <QtCore/QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace kovalin::platform {
namespace {

using test::Gate;
using test::whenDestroyed;
using testing::ElementsAre;

void finish(ThreadQueue& queue)
{
    Gate done;
    queue.async([&done] { done.open(); });
    done.wait();
}

TEST(ThreadQueue, NamesItselfAndItsThread)
{
    ThreadQueue queue(QStringLiteral("named"));
    EXPECT_EQ(queue.label(), QStringLiteral("named"));
    QString name;
    queue.async([&name] { name = QThread::currentThread()->objectName(); });
    finish(queue);
    EXPECT_EQ(name, QStringLiteral("named"));
}

TEST(ThreadQueue, RunsJobsInTheOrderTheyCameOnOneThread)
{
    ThreadQueue queue(QStringLiteral("order"));
    std::vector<int> ran;
    std::set<std::thread::id> threads;
    for (int i = 0; i < 1000; ++i) {
        queue.async([&, i] {
            ran.push_back(i);
            threads.insert(std::this_thread::get_id());
        });
    }
    finish(queue);
    std::vector<int> expected(1000);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(ran, expected);
    EXPECT_EQ(threads.size(), 1U);
    EXPECT_FALSE(threads.contains(std::this_thread::get_id()));
}

TEST(ThreadQueue, RunsOneJobAtATimeWhoeverAddsThem)
{
    ThreadQueue queue(QStringLiteral("one at a time"));
    int counter = 0; // Only the queue keeps the jobs apart.
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int i = 0; i < 500; ++i) {
                queue.async([&counter] { ++counter; });
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    finish(queue);
    EXPECT_EQ(counter, 2000);
}

TEST(ThreadQueue, ShowsAJobTheWritesOfItsPosterOnAnotherQueue)
{
    ThreadQueue ping(QStringLiteral("ping"));
    SerialQueue pong(QStringLiteral("pong"));
    int value = 0; // Handed to and fro with no other synchronisation.
    Gate done;
    std::function<void()> hit = [&] {
        if (++value == 300) {
            done.open();
        } else if (ping.isCurrent()) {
            pong.async(hit);
        } else {
            ping.async(hit);
        }
    };
    ping.async(hit);
    done.wait();
    finish(ping);
    test::finish(pong);
    EXPECT_EQ(value, 300);
}

TEST(ThreadQueue, RunsAnEventLoopForTheObjectsOnIt)
{
    ThreadQueue queue(QStringLiteral("loop"));
    Gate fired;
    QTimer* timer = nullptr;
    queue.async([&] {
        timer = new QTimer;
        timer->setSingleShot(true);
        QObject::connect(timer, &QTimer::timeout, timer, [&fired] { fired.open(); });
        timer->start(1);
    });
    fired.wait();
    queue.async([&timer] { delete timer; });
    finish(queue);
    EXPECT_TRUE(fired.isOpen());
}

TEST(ThreadQueue, RunsLaterJobsInTheNestedLoopOfAnEarlierOne)
{
    ThreadQueue queue(QStringLiteral("nested"));
    std::vector<std::string> events;
    Gate done;
    queue.async([&] {
        QEventLoop loop;
        queue.async([&] {
            events.emplace_back("inner");
            loop.quit();
        });
        loop.exec();
        events.emplace_back("outer");
        done.open();
    });
    done.wait();
    finish(queue);
    EXPECT_THAT(events, ElementsAre("inner", "outer"));
}

TEST(ThreadQueue, IsCurrentInItsOwnJobsAlone)
{
    ThreadQueue queue(QStringLiteral("same"));
    ThreadQueue other(QStringLiteral("same"));
    bool inOwn = false;
    bool inOther = true;
    queue.async([&] {
        queue.assertOnQueue();
        inOwn = queue.isCurrent() && !isMainThread();
    });
    other.async([&] { inOther = queue.isCurrent(); });
    finish(queue);
    finish(other);
    EXPECT_TRUE(inOwn);
    EXPECT_FALSE(inOther);
    EXPECT_FALSE(queue.isCurrent());
}

TEST(ThreadQueueDeathTest, StopsOffTheQueueAndNamesTheLabelAndTheCaller)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const ThreadQueue queue(QStringLiteral("Lonely"));
    EXPECT_EXIT(queue.assertOnQueue(), testing::KilledBySignal(SIGABRT), "TestBody.*thread queue \"Lonely\"");
}

TEST(ThreadQueue, DestroysAJobOnTheQueueBeforeTheNextStarts)
{
    ThreadQueue queue(QStringLiteral("captures"));
    std::vector<std::string> events;
    for (const char* const name : {"1", "2"}) {
        queue.async([&events, name, token = whenDestroyed([&queue, &events, name] {
                                        events.push_back(std::string(queue.isCurrent() ? "gone " : "astray ") + name);
                                    })] { events.push_back(std::string("ran ") + name); });
    }
    finish(queue);
    EXPECT_THAT(events, ElementsAre("ran 1", "gone 1", "ran 2", "gone 2"));
}

TEST(ThreadQueue, RunsWhatIsPendingAfterItIsDestroyedAndThenEndsItsThread)
{
    std::vector<int> ran;
    Gate destroyed;
    Gate ended;
    {
        ThreadQueue queue(QStringLiteral("short-lived"), {.applicationWillEnd = {}, .threadWillEnd = [&] {
                                                              ran.push_back(-1);
                                                              ended.open();
                                                          }});
        queue.async([&destroyed] { destroyed.wait(); });
        for (int i = 0; i < 10; ++i) {
            queue.async([&ran, i] { ran.push_back(i); });
        }
    }
    destroyed.open();
    ended.wait();
    EXPECT_THAT(ran, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, -1));
}

TEST(ThreadQueue, CanBeDestroyedInItsOwnJobAndByItsCaptures)
{
    Gate ended;
    Gate alsoEnded;
    auto queue = std::make_shared<ThreadQueue>(QStringLiteral("own end"),
                                               ThreadQueueEvents{.applicationWillEnd = {}, .threadWillEnd = [&] {
                                                                     ended.open();
                                                                 }});
    ThreadQueue& reached = *queue;
    reached.async([&queue] { queue.reset(); });
    ended.wait();
    EXPECT_EQ(queue, nullptr);

    queue = std::make_shared<ThreadQueue>(QStringLiteral("held"),
                                          ThreadQueueEvents{.applicationWillEnd = {}, .threadWillEnd = [&] {
                                                                alsoEnded.open();
                                                            }});
    Gate let;
    queue->async([&let, queue] { let.wait(); });
    queue.reset();
    let.open();
    alsoEnded.wait();
    EXPECT_TRUE(alsoEnded.isOpen());
}

TEST(ThreadQueue, StartsNoThreadWithoutAJob)
{
    bool didEnd = false;
    {
        const ThreadQueue queue(QStringLiteral("idle"), {.applicationWillEnd = {}, .threadWillEnd = [&didEnd] {
                                                             didEnd = true;
                                                         }});
    }
    EXPECT_FALSE(didEnd);
}

TEST(ThreadQueue, ComesAndGoesByTheHundred)
{
    int ran = 0;
    for (int i = 0; i < 100; ++i) {
        ThreadQueue queue(QStringLiteral("brief"));
        queue.async([&ran] { ++ran; });
        finish(queue);
    }
    EXPECT_EQ(ran, 100);
}

} // namespace
} // namespace kovalin::platform
