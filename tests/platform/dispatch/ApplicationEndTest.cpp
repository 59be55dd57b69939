#include "platform/dispatch/DelayedJob.h"
#include "platform/dispatch/Gate.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/SerialQueue.h"

#include <QtCore/QCoreApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

// What serial queues do at the end of the application object, and delayed jobs around it.

namespace kovalin::platform {
namespace {

using namespace std::chrono_literals;
using test::finish;
using test::Gate;
using test::whenDestroyed;
using testing::ElementsAre;
using testing::IsEmpty;

int argumentCount = 1;
char programName[] = "platform_dispatch_shutdown_tests";
char* arguments[] = {programName, nullptr};

/// An application object for the length of a scope.
class ScopedApplication final {
private:
    const QCoreApplication _application{argumentCount, arguments};
};

TEST(ApplicationEnd, RunsTheLastJobOfAQueueThatSleeps)
{
    int ends = 0;
    bool wasOnQueue = false;
    std::optional<SerialQueue> queue;
    queue.emplace(QStringLiteral("asleep"), SerialQueueEvents{[&] {
                      ++ends;
                      wasOnQueue = queue->isCurrent();
                  }});
    for (int round = 1; round <= 3; ++round) {
        {
            const ScopedApplication application;
            if (round == 2) {
                finish(*queue);
            }
        }
        EXPECT_EQ(ends, round);
    }
    EXPECT_TRUE(wasOnQueue);
}

TEST(ApplicationEnd, RunsTheLastJobBehindTheRunningOneAndDropsThePendingAndTheLaterOnes)
{
    std::vector<std::string> events;
    Gate started;
    Gate closing;
    std::optional<SerialQueue> queue;
    queue.emplace(QStringLiteral("busy"), SerialQueueEvents{[&] {
                      events.emplace_back("last");
                      queue->async([&] { events.emplace_back("too late"); });
                  }});
    {
        const ScopedApplication application;
        queue->async([&] {
            started.open();
            closing.wait();
            events.emplace_back("running");
        });
        queue->async([&] { events.emplace_back("pending"); });
        // Goes when intake has ended, and running jobs are waited for only after that.
        dispatchMain([token = whenDestroyed([&closing] { closing.open(); })] {});
        started.wait();
    }
    EXPECT_THAT(events, ElementsAre("running", "last"));
}

TEST(ApplicationEnd, TellsNothingOfAQueueThatIsGone)
{
    int ends = 0;
    {
        const ScopedApplication application;
        SerialQueue queue(QStringLiteral("gone"), {[&ends] {
                              ++ends;
                          }});
        finish(queue);
    }
    EXPECT_EQ(ends, 0);
}

TEST(ApplicationEnd, DropsADelayedJobThatIsNotDue)
{
    SerialQueue queue(QStringLiteral("not due"));
    bool didRun = false;
    bool isGone = false;
    std::optional<DelayedJob> job;
    {
        const ScopedApplication application;
        job = queue.asyncAfter(24h, [&didRun, token = whenDestroyed([&isGone] { isGone = true; })] { didRun = true; });
        EXPECT_TRUE(job->isPending());
    }
    EXPECT_TRUE(isGone);
    EXPECT_FALSE(didRun);
    EXPECT_FALSE(job->isPending());
    job->cancel();
}

TEST(ApplicationEnd, DropsADelayedJobMadeWithoutAnApplication)
{
    {
        const ScopedApplication application;
    }
    SerialQueue queue(QStringLiteral("orphan"));
    bool isGone = false;
    const DelayedJob job = queue.asyncAfter(0ms, [token = whenDestroyed([&isGone] { isGone = true; })] {});
    EXPECT_TRUE(isGone);
    EXPECT_FALSE(job.isPending());
}

TEST(ApplicationEnd, RunsDelayedJobsUnderEachLaterApplication)
{
    SerialQueue queue(QStringLiteral("reborn"));
    for (int round = 0; round < 3; ++round) {
        const ScopedApplication application;
        Gate ran;
        const DelayedJob job = queue.asyncAfter(1ms, [&ran] { ran.open(); });
        ran.wait();
        finish(queue);
        EXPECT_FALSE(job.isPending());
    }
}

TEST(ApplicationEnd, EitherRunsOrDropsADelayedJobThatIsDueJustThen)
{
    SerialQueue queue(QStringLiteral("just then"));
    for (int round = 0; round < 30; ++round) {
        int ran = 0;
        std::atomic<int> gone = 0;
        std::vector<DelayedJob> jobs;
        {
            const ScopedApplication application;
            for (int i = 0; i < 20; ++i) {
                jobs.push_back(queue.asyncAfter(std::chrono::microseconds(i * 20),
                                                [&ran, token = whenDestroyed([&gone] { ++gone; })] { ++ran; }));
            }
        }
        EXPECT_EQ(gone, 20);
        EXPECT_LE(ran, 20);
    }
}

} // namespace
} // namespace kovalin::platform
