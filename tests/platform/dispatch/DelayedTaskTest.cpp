#include "platform/dispatch/DelayedTask.h"

#include "platform/dispatch/Gate.h"
#include "platform/dispatch/ThreadCheck.h"
#include "support/WaitFor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace kovalin::platform {
namespace {

using namespace std::chrono_literals;
using test::waitFor;
using test::whenDestroyed;
using testing::ElementsAre;

/// Lets everything run that is due by now, and a little more: a task made now comes after all that were due before.
[[nodiscard]] bool letDueTasksRun()
{
    bool didRun = false;
    const DelayedTask last(2ms, [&didRun] { didRun = true; });
    return waitFor([&didRun] { return didRun; });
}

TEST(DelayedTask, RunsOnceOnTheMainThreadAfterItsDelay)
{
    int runs = 0;
    bool onMain = false;
    const auto start = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point ranAt;
    const DelayedTask task(20ms, [&] {
        ++runs;
        onMain = isMainThread();
        ranAt = std::chrono::steady_clock::now();
    });
    EXPECT_TRUE(task.isPending());
    EXPECT_EQ(runs, 0);
    EXPECT_TRUE(waitFor([&runs] { return runs > 0; }));
    EXPECT_TRUE(letDueTasksRun());
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(onMain);
    // Qt counts in whole milliseconds and may round the last one off.
    EXPECT_GE(ranAt - start, 19ms);
    EXPECT_FALSE(task.isPending());
}

TEST(DelayedTask, RunsFromTheEventLoopWithoutADelayToo)
{
    std::vector<std::string> ran;
    const DelayedTask zero(0ms, [&ran] { ran.emplace_back("zero"); });
    const DelayedTask negative(-5s, [&ran] { ran.emplace_back("negative"); });
    EXPECT_TRUE(ran.empty());
    EXPECT_TRUE(waitFor([&ran] { return ran.size() == 2; }));
    EXPECT_THAT(ran, testing::UnorderedElementsAre("zero", "negative"));
}

TEST(DelayedTask, RunsTwoInTheOrderOfTheirDelaysHoweverClose)
{
    std::vector<std::string> ran;
    std::optional<DelayedTask> later;
    std::optional<DelayedTask> sooner;
    std::chrono::steady_clock::time_point start;
    do { // Again, if this thread was held up for so long that the second one is due later after all.
        start = std::chrono::steady_clock::now();
        later.emplace(204ms, [&ran] { ran.emplace_back("later"); });
        sooner.emplace(201ms, [&ran] { ran.emplace_back("sooner"); });
    } while (std::chrono::steady_clock::now() - start > 2ms);
    EXPECT_TRUE(waitFor([&ran] { return ran.size() == 2; }));
    EXPECT_THAT(ran, ElementsAre("sooner", "later"));
}

TEST(DelayedTask, NeverRunsOnceCancelled)
{
    bool didRun = false;
    DelayedTask task(1ms, [&didRun] { didRun = true; });
    task.cancel();
    EXPECT_FALSE(task.isPending());
    task.cancel();
    EXPECT_TRUE(letDueTasksRun());
    EXPECT_FALSE(didRun);
}

TEST(DelayedTask, NeverRunsOnceDestroyed)
{
    bool didRun = false;
    {
        const DelayedTask task(1ms, [&didRun] { didRun = true; });
    }
    EXPECT_TRUE(letDueTasksRun());
    EXPECT_FALSE(didRun);
}

TEST(DelayedTask, LetsGoOfItsBlockWhenALongDelayIsCancelled)
{
    bool isGone = false;
    DelayedTask task(std::chrono::hours(24 * 365), [token = whenDestroyed([&isGone] { isGone = true; })] {});
    EXPECT_TRUE(task.isPending());
    EXPECT_TRUE(letDueTasksRun());
    EXPECT_TRUE(task.isPending());
    EXPECT_FALSE(isGone);
    task.cancel();
    EXPECT_TRUE(isGone);
}

TEST(DelayedTask, LetsGoOfItsBlockRightAfterItRan)
{
    std::vector<std::string> events;
    const DelayedTask task(0ms, [&events, token = whenDestroyed([&events] { events.emplace_back("gone"); })] {
        events.emplace_back("ran");
    });
    while (events.empty()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    EXPECT_THAT(events, ElementsAre("ran", "gone"));
}

TEST(DelayedTask, CanBeCancelledInItsOwnBlock)
{
    std::optional<DelayedTask> task;
    bool wasPending = true;
    bool didRun = false;
    task.emplace(0ms, [&] {
        wasPending = task->isPending();
        task->cancel();
        didRun = true;
    });
    EXPECT_TRUE(waitFor([&didRun] { return didRun; }));
    EXPECT_FALSE(wasPending);
}

TEST(DelayedTask, CanBeDestroyedInItsOwnBlock)
{
    auto task = std::make_unique<DelayedTask>(0ms, [] {});
    bool didRun = false;
    task = std::make_unique<DelayedTask>(0ms, [&task, &didRun, kept = std::string("still here")] {
        task.reset();
        didRun = kept == "still here";
    });
    EXPECT_TRUE(waitFor([&task] { return task == nullptr; }));
    EXPECT_TRUE(didRun);
}

TEST(DelayedTask, CanBeReplacedInItsOwnBlock)
{
    std::optional<DelayedTask> task;
    int runs = 0;
    std::function<void()> again = [&] {
        if (++runs < 3) {
            task.emplace(0ms, again);
        }
    };
    task.emplace(0ms, again);
    EXPECT_TRUE(waitFor([&runs] { return runs == 3; }));
    EXPECT_FALSE(task->isPending());
}

TEST(DelayedTask, CanBeDestroyedByTheCapturesOfItsCancelledBlock)
{
    auto task = std::make_shared<std::optional<DelayedTask>>();
    const std::weak_ptr<std::optional<DelayedTask>> watched = task;
    task->emplace(1h, [task] {});
    DelayedTask& cancelled = **task;
    task.reset();
    ASSERT_FALSE(watched.expired());
    cancelled.cancel();
    EXPECT_TRUE(watched.expired());
}

TEST(DelayedTaskDeathTest, StopsOffTheMainThread)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::thread([] { const DelayedTask task(0ms, [] {}); }).join(), testing::KilledBySignal(SIGABRT),
                "Not on the main thread");
    EXPECT_EXIT(
        {
            DelayedTask task(1h, [] {});
            std::thread([&task] { task.cancel(); }).join();
        },
        testing::KilledBySignal(SIGABRT), "Not on the main thread");
}

} // namespace
} // namespace kovalin::platform
