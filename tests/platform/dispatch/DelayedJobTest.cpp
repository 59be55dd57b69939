#include "platform/dispatch/DelayedJob.h"

#include "platform/dispatch/DelayClock.h"
#include "platform/dispatch/Gate.h"
#include "platform/dispatch/SerialQueue.h"
#include "support/ManualDelayClock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace kovalin::platform {
namespace {

using namespace std::chrono_literals;
using test::finish;
using test::Gate;
using test::ManualDelayClock;
using test::whenDestroyed;
using testing::ElementsAre;
using testing::IsEmpty;

/// A queue under a clock that stands still.
class DelayedJobTest : public testing::Test {
protected:
    void advance(std::chrono::nanoseconds duration)
    {
        clock.advance(duration);
        finish(queue);
    }
    [[nodiscard]] DelayedJob note(std::chrono::nanoseconds delay, const std::string& what)
    {
        return queue.asyncAfter(delay, [this, what] { ran.push_back(what); });
    }

    ManualDelayClock clock;
    std::vector<std::string> ran; // the queue's
    SerialQueue queue{QStringLiteral("delayed")};
};

TEST_F(DelayedJobTest, RunsOnTheQueueOnceItsDelayHasPassed)
{
    bool wasOnQueue = false;
    const DelayedJob job = queue.asyncAfter(10s, [&] {
        wasOnQueue = queue.isCurrent();
        ran.emplace_back("job");
    });
    advance(9999ms);
    EXPECT_THAT(ran, IsEmpty());
    EXPECT_TRUE(job.isPending());
    advance(1ms);
    EXPECT_THAT(ran, ElementsAre("job"));
    EXPECT_TRUE(wasOnQueue);
    EXPECT_FALSE(job.isPending());
    advance(1h);
    EXPECT_THAT(ran, ElementsAre("job"));
}

TEST_F(DelayedJobTest, RunsInTheOrderOfTheDueTimesAndThenOfTheCalls)
{
    const std::array jobs = {note(3s, "3"), note(1s, "1a"), note(2s, "2"), note(1s, "1b"), note(0s, "0")};
    advance(1h);
    EXPECT_THAT(ran, ElementsAre("0", "1a", "1b", "2", "3"));
}

TEST_F(DelayedJobTest, TakesItsTurnBehindWhatIsThereWhenItIsDue)
{
    Gate gate;
    queue.async([&] {
        gate.wait();
        ran.emplace_back("running");
    });
    queue.async([&] { ran.emplace_back("pending"); });
    const DelayedJob job = note(1s, "due");
    clock.advance(1s);
    queue.async([&] { ran.emplace_back("later"); });
    gate.open();
    finish(queue);
    EXPECT_THAT(ran, ElementsAre("running", "pending", "due", "later"));
}

TEST_F(DelayedJobTest, NeverRunsOnceItIsCancelled)
{
    DelayedJob job = note(1s, "cancelled");
    job.cancel();
    EXPECT_FALSE(job.isPending());
    EXPECT_THAT(clock.pending(), IsEmpty()); // Nothing wakes up for it either.
    advance(1h);
    job.cancel();
    EXPECT_THAT(ran, IsEmpty());
}

TEST_F(DelayedJobTest, NeverRunsOnceItsHolderIsGone)
{
    {
        const DelayedJob job = note(1s, "forgotten");
        ASSERT_THAT(clock.pending(), ElementsAre(1s));
    }
    EXPECT_THAT(clock.pending(), IsEmpty());
    advance(1h);
    EXPECT_THAT(ran, IsEmpty());
}

TEST_F(DelayedJobTest, CanBeCancelledBetweenItsDueTimeAndItsTurn)
{
    Gate gate;
    queue.async([&gate] { gate.wait(); });
    DelayedJob job = note(1s, "late");
    clock.advance(1s);
    EXPECT_TRUE(job.isPending());
    job.cancel();
    gate.open();
    finish(queue);
    EXPECT_THAT(ran, IsEmpty());
}

TEST_F(DelayedJobTest, CanBeReplacedAndMoved)
{
    DelayedJob job = note(1s, "first");
    job = note(2s, "second");
    EXPECT_THAT(clock.pending(), ElementsAre(2s));
    const DelayedJob moved = std::move(job);
    EXPECT_TRUE(moved.isPending());
    advance(2s);
    EXPECT_THAT(ran, ElementsAre("second"));
}

TEST_F(DelayedJobTest, CanReplaceItselfInItsOwnRun)
{
    DelayedJob job;
    std::function<void()> again = [&] {
        ran.push_back(std::to_string(ran.size()));
        EXPECT_FALSE(job.isPending());
        if (ran.size() < 3) {
            job = queue.asyncAfter(1s, again);
        }
    };
    job = queue.asyncAfter(1s, again);
    for (int i = 0; i < 5; ++i) {
        advance(1s);
    }
    EXPECT_THAT(ran, ElementsAre("0", "1", "2"));
}

TEST_F(DelayedJobTest, IsDroppedWhereItsQueueIsGoneByThen)
{
    bool isGone = false;
    std::optional<SerialQueue> brief(std::in_place, QStringLiteral("brief"));
    const DelayedJob job =
        brief->asyncAfter(1s, [this, token = whenDestroyed([&] { isGone = true; })] { ran.emplace_back("astray"); });
    brief.reset();
    EXPECT_FALSE(isGone);
    clock.advance(1s);
    EXPECT_TRUE(isGone);
    EXPECT_FALSE(job.isPending());
    EXPECT_THAT(ran, IsEmpty());
}

TEST_F(DelayedJobTest, GoesOnTheQueueRightAfterItRanOrWhereItIsCancelled)
{
    std::vector<std::string> events;
    const auto token = [&](const char* name) {
        return whenDestroyed([&events, name, this] {
            events.push_back(std::string(name) + (queue.isCurrent() ? " on queue" : " elsewhere"));
        });
    };
    const DelayedJob run = queue.asyncAfter(1s, [&events, gone = token("ran")] { events.emplace_back("run"); });
    DelayedJob cancelled = queue.asyncAfter(1s, [gone = token("cancelled")] {});
    cancelled.cancel();
    advance(1s);
    EXPECT_THAT(events, ElementsAre("cancelled elsewhere", "run", "ran on queue"));
}

TEST_F(DelayedJobTest, TakesANegativeDelayForNone)
{
    const DelayedJob job = note(-1s, "now");
    advance(0s);
    EXPECT_THAT(ran, ElementsAre("now"));
}

TEST_F(DelayedJobTest, KeepsToTheClockThatItBeganWith)
{
    DelayedJob job;
    {
        const ManualDelayClock inner;
        job = note(1s, "lost with its clock");
        EXPECT_THAT(inner.pending(), ElementsAre(1s));
        EXPECT_THAT(clock.pending(), IsEmpty());
    }
    EXPECT_FALSE(job.isPending());
    job = note(1s, "outer");
    advance(1s);
    EXPECT_THAT(ran, ElementsAre("outer"));
}

TEST(DelayedJob, HoldsNothingAtFirst)
{
    DelayedJob job;
    EXPECT_FALSE(job.isPending());
    job.cancel();
}

TEST(DelayedJob, RunsByTheSystemsClockInOrderAndNotTooEarly)
{
    SerialQueue queue(QStringLiteral("real"));
    std::vector<int> ran;
    Gate done;
    const auto start = std::chrono::steady_clock::now();
    std::chrono::steady_clock::duration waited{0};
    const DelayedJob last = queue.asyncAfter(30ms, [&] {
        waited = std::chrono::steady_clock::now() - start;
        ran.push_back(3);
        done.open();
    });
    const DelayedJob first = queue.asyncAfter(1ms, [&] { ran.push_back(1); });
    const DelayedJob second = queue.asyncAfter(2ms, [&] { ran.push_back(2); });
    done.wait();
    finish(queue);
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
    EXPECT_GE(waited, 30ms);
}

TEST(DelayedJob, WakesForAShorterDelayThatComesLater)
{
    SerialQueue queue(QStringLiteral("shorter"));
    Gate ran;
    const DelayedJob far = queue.asyncAfter(24h, [] { ADD_FAILURE() << "not for a day"; });
    const DelayedJob beyond = queue.asyncAfter(std::chrono::nanoseconds::max(), [] { ADD_FAILURE() << "never"; });
    const DelayedJob near = queue.asyncAfter(1ms, [&ran] { ran.open(); });
    ran.wait();
    finish(queue);
    EXPECT_TRUE(far.isPending());
}

TEST(DelayedJob, EitherRunsOrGoesWhileManyThreadsMakeAndCancelThem)
{
    constexpr int kThreads = 4;
    constexpr int kJobs = 300;
    SerialQueue queue(QStringLiteral("busy"));
    std::atomic<int> gone = 0;
    int ran = 0; // the queue's
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&] {
            std::vector<DelayedJob> jobs;
            for (int i = 0; i < kJobs; ++i) {
                jobs.push_back(queue.asyncAfter(std::chrono::microseconds(i % 7 * 100),
                                                [&ran, token = whenDestroyed([&gone] { ++gone; })] { ++ran; }));
                if (i % 3 == 0) {
                    jobs[static_cast<std::size_t>(i / 2)].cancel();
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    finish(queue);
    EXPECT_EQ(gone, kThreads * kJobs);
    EXPECT_LE(ran, kThreads * kJobs);
}

} // namespace
} // namespace kovalin::platform
