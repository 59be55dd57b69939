#include "platform/dispatch/GlobalQueue.h"

#include "platform/dispatch/Gate.h"
#include "platform/dispatch/ThreadCheck.h"

#include <QtCore/QThreadPool>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <latch>
#include <thread>
#include <vector>

namespace kovalin::platform {
namespace {

using test::Gate;
using test::whenDestroyed;

/// Gives the global pool a number of threads of its own, whatever the machine has.
class GlobalPoolThreads final {
public:
    explicit GlobalPoolThreads(int count) { QThreadPool::globalInstance()->setMaxThreadCount(count); }
    ~GlobalPoolThreads() { QThreadPool::globalInstance()->setMaxThreadCount(_before); }
    Q_DISABLE_COPY_MOVE(GlobalPoolThreads)

private:
    const int _before = QThreadPool::globalInstance()->maxThreadCount();
};

TEST(GlobalQueue, RunsEveryJobOnceWhoeverAddsThem)
{
    constexpr std::size_t kThreads = 4;
    constexpr std::size_t kJobs = 500;
    std::vector<std::atomic<int>> runs(kThreads * kJobs);
    std::latch done(kThreads * kJobs);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (std::size_t thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&runs, &done, thread] {
            for (std::size_t i = 0; i < kJobs; ++i) {
                dispatchGlobal([&run = runs[thread * kJobs + i], &done] {
                    ++run;
                    done.count_down();
                });
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    done.wait();
    QThreadPool::globalInstance()->waitForDone();
    for (const std::atomic<int>& count : runs) {
        EXPECT_EQ(count, 1);
    }
}

TEST(GlobalQueue, RunsJobsSideBySide)
{
    const GlobalPoolThreads threads(2);
    Gate oneStarted;
    Gate twoStarted;
    Gate oneDone;
    Gate twoDone;
    dispatchGlobal([&] {
        oneStarted.open();
        twoStarted.wait();
        oneDone.open();
    });
    dispatchGlobal([&] {
        twoStarted.open();
        oneStarted.wait();
        twoDone.open();
    });
    oneDone.wait();
    twoDone.wait();
    EXPECT_TRUE(oneStarted.isOpen());
    EXPECT_TRUE(twoStarted.isOpen());
}

TEST(GlobalQueue, StartsJobsInTheOrderTheyCame)
{
    const GlobalPoolThreads threads(1);
    std::vector<int> ran;
    Gate done;
    for (int i = 0; i < 100; ++i) {
        dispatchGlobal([&ran, i] { ran.push_back(i); });
    }
    dispatchGlobal([&done] { done.open(); });
    done.wait();
    ASSERT_EQ(ran.size(), 100U);
    EXPECT_TRUE(std::is_sorted(ran.begin(), ran.end()));
}

TEST(GlobalQueue, RunsAndDestroysAJobOnOneThreadThatIsNotTheMainThread)
{
    std::thread::id ranOn;
    std::thread::id goneOn;
    Gate gone;
    dispatchGlobal([&ranOn, token = whenDestroyed([&] {
                                goneOn = std::this_thread::get_id();
                                gone.open();
                            })] { ranOn = std::this_thread::get_id(); });
    gone.wait();
    EXPECT_NE(ranOn, std::thread::id());
    EXPECT_NE(ranOn, std::this_thread::get_id());
    EXPECT_EQ(goneOn, ranOn);
}

TEST(GlobalQueue, TakesJobsFromInsideAJobAndFromItsCaptures)
{
    const GlobalPoolThreads threads(1);
    Gate innerRan;
    Gate lastRan;
    dispatchGlobal([&innerRan, token = whenDestroyed([&lastRan] { dispatchGlobal([&lastRan] { lastRan.open(); }); })] {
        dispatchGlobal([&innerRan] { innerRan.open(); });
    });
    innerRan.wait();
    lastRan.wait();
    EXPECT_TRUE(innerRan.isOpen());
    EXPECT_TRUE(lastRan.isOpen());
}

} // namespace
} // namespace kovalin::platform
