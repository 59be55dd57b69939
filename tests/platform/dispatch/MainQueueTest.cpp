#include "platform/dispatch/MainQueue.h"

#include "platform/dispatch/Gate.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/dispatch/ThreadCheck.h"
#include "support/WaitFor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

namespace kovalin::platform {
namespace {

using test::waitFor;
using test::whenDestroyed;
using testing::ElementsAre;

TEST(MainQueue, PostsFromTheMainThreadAndDoesNotRunInline)
{
    bool didRun = false;
    dispatchMain([&didRun] { didRun = true; });
    EXPECT_FALSE(didRun);
    EXPECT_TRUE(waitFor([&didRun] { return didRun; }));
}

TEST(MainQueue, RunsJobsInTheOrderTheyCame)
{
    std::vector<int> ran;
    for (int i = 0; i < 5; ++i) {
        dispatchMain([&ran, i] { ran.push_back(i); });
    }
    EXPECT_TRUE(waitFor([&ran] { return ran.size() == 5; }));
    EXPECT_THAT(ran, ElementsAre(0, 1, 2, 3, 4));
}

TEST(MainQueue, RunsJobsOfOtherThreadsOnTheMainThreadInTheirOrder)
{
    constexpr std::size_t kThreads = 4;
    constexpr std::size_t kJobs = 500;
    std::vector<std::vector<std::size_t>> ran(kThreads);
    std::size_t count = 0;
    bool onMain = true;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (std::size_t thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            for (std::size_t i = 0; i < kJobs; ++i) {
                dispatchMain([&, thread, i] {
                    onMain = onMain && isMainThread();
                    ran[thread].push_back(i);
                    ++count;
                });
            }
        });
    }
    EXPECT_TRUE(waitFor([&count] { return count == kThreads * kJobs; }));
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(onMain);
    for (const std::vector<std::size_t>& ofThread : ran) {
        ASSERT_EQ(ofThread.size(), kJobs);
        EXPECT_TRUE(std::is_sorted(ofThread.begin(), ofThread.end()));
    }
}

TEST(MainQueue, ShowsAJobTheWritesOfItsPoster)
{
    SerialQueue queue(QStringLiteral("there and back"));
    int value = 0; // Handed to and fro with no other synchronisation.
    bool isBack = false;
    for (int i = 1; i <= 100; ++i) {
        isBack = false;
        ++value;
        queue.async([&] {
            ++value;
            dispatchMain([&isBack] { isBack = true; });
        });
        ASSERT_TRUE(waitFor([&isBack] { return isBack; }));
        ASSERT_EQ(value, 2 * i);
    }
}

TEST(MainQueue, RunsAJobPostedByAJobInALaterTurn)
{
    std::vector<std::string> ran;
    dispatchMain([&ran] {
        dispatchMain([&ran] { ran.emplace_back("inner"); });
        ran.emplace_back("first");
    });
    dispatchMain([&ran] { ran.emplace_back("second"); });
    QCoreApplication::sendPostedEvents(); // One turn: what was posted before it.
    EXPECT_THAT(ran, ElementsAre("first", "second"));
    EXPECT_TRUE(waitFor([&ran] { return ran.size() == 3; }));
    EXPECT_THAT(ran, ElementsAre("first", "second", "inner"));
}

TEST(MainQueue, RunsLaterJobsInANestedEventLoop)
{
    std::vector<std::string> ran;
    dispatchMain([&ran] {
        QEventLoop nested;
        ran.emplace_back("outer begins");
        dispatchMain([&nested] { nested.quit(); });
        nested.exec();
        ran.emplace_back("outer ends");
    });
    dispatchMain([&ran] { ran.emplace_back("later"); });
    EXPECT_TRUE(waitFor([&ran] { return ran.size() == 3; }));
    EXPECT_THAT(ran, ElementsAre("outer begins", "later", "outer ends"));
}

TEST(MainQueue, DestroysAJobOnTheMainThreadBeforeTheNextRuns)
{
    std::vector<std::string> events;
    std::thread([&events] {
        dispatchMain([&events, token = whenDestroyed([&events] {
                                   events.emplace_back(isMainThread() ? "gone" : "gone astray");
                               })] { events.emplace_back("ran"); });
        dispatchMain([&events] { events.emplace_back("next"); });
    }).join();
    EXPECT_TRUE(waitFor([&events] { return events.size() == 3; }));
    EXPECT_THAT(events, ElementsAre("ran", "gone", "next"));
}

} // namespace
} // namespace kovalin::platform
