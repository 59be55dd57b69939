#include "platform/dispatch/DispatchState.h"

#include "platform/dispatch/DelayedTask.h"
#include "platform/dispatch/Gate.h"
#include "platform/dispatch/GlobalQueue.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/dispatch/ThreadQueue.h"
#include "support/WaitFor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QThreadPool>
#include <QtGui/QGuiApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <future>
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
using test::waitFor;
using test::whenDestroyed;

int argumentCount = 1;
char programName[] = "platform_dispatch_shutdown_tests";
char* arguments[] = {programName, nullptr};

/// An application object for the length of a scope.
class ScopedApplication final {
private:
    const QCoreApplication _application{argumentCount, arguments};
};

/// To be captured by a job: tells what became of it.
struct Fate {
    bool didRun = false;
    bool isGone = false;

    [[nodiscard]] std::function<void()> job()
    {
        return [this, token = whenDestroyed([this] { isGone = true; })] {
            didRun = true;
        };
    }

    [[nodiscard]] bool wasDropped() const { return isGone && !didRun; }
};

/// Opens `gate` while the application object dies: the queues are closed by then, but running jobs aren't waited for yet.
void openDuringShutdown(Gate& gate)
{
    dispatchMain([token = whenDestroyed([&gate] { gate.open(); })] {});
}

/// Owns a queue and uses it as early and as late as a process can.
class StaticOwner final {
public:
    StaticOwner()
    {
        _queue.async([this] {
            serialSawApplication = QCoreApplication::instance() != nullptr;
            _serialRan.open();
        });
        dispatchGlobal([this] {
            globalSawApplication = QCoreApplication::instance() != nullptr;
            _globalRan.open();
        });
        dispatchMain(earlyMainJob.job());
    }

    ~StaticOwner()
    {
        std::array<Fate, 3> fates;
        _queue.async(fates[0].job());
        dispatchGlobal(fates[1].job());
        dispatchMain(fates[2].job());
        for (const Fate& fate : fates) {
            if (!fate.wasDropped()) {
                std::fputs("A job was kept although the last application object is gone.\n", stderr);
                std::_Exit(EXIT_FAILURE);
            }
        }
    }
    Q_DISABLE_COPY_MOVE(StaticOwner)

    /// Returns once the jobs that the constructor added to the serial and the global queue have run.
    void waitForEarlyJobs()
    {
        _serialRan.wait();
        _globalRan.wait();
    }

    bool serialSawApplication = false;
    bool globalSawApplication = false;
    Fate earlyMainJob;

private:
    Gate _serialRan;
    Gate _globalRan;
    SerialQueue _queue{QStringLiteral("static")};
};

StaticOwner staticOwner;

TEST(DispatchState, StartsJobsFromBeforeTheFirstApplicationOnceThereIsOne)
{
    // `main` has waited for them under the first application object.
    EXPECT_TRUE(staticOwner.serialSawApplication);
    EXPECT_TRUE(staticOwner.globalSawApplication);
}

TEST(DispatchState, DropsMainQueueJobsFromBeforeTheFirstApplication)
{
    EXPECT_TRUE(staticOwner.earlyMainJob.wasDropped());
}

TEST(DispatchState, WaitsForTheRunningSerialJobAndDropsThePendingOnesOnTheQueue)
{
    SerialQueue queue(QStringLiteral("serial"));
    bool didFinish = false;
    bool wasDestroyedOnQueue = false;
    bool wasDestroyedAfterTheRunningJob = false;
    bool didPendingRun = false;
    Gate started;
    Gate closing;
    {
        const ScopedApplication application;
        queue.async([&] {
            started.open();
            closing.wait();
            didFinish = QCoreApplication::instance() != nullptr;
        });
        queue.async([&didPendingRun, token = whenDestroyed([&] {
                                         wasDestroyedOnQueue = queue.isCurrent();
                                         wasDestroyedAfterTheRunningJob = didFinish;
                                     })] { didPendingRun = true; });
        openDuringShutdown(closing);
        started.wait();
    }
    EXPECT_TRUE(didFinish);
    EXPECT_FALSE(didPendingRun);
    EXPECT_TRUE(wasDestroyedOnQueue);
    EXPECT_TRUE(wasDestroyedAfterTheRunningJob);
}

TEST(DispatchState, WaitsForRunningGlobalJobsAndDropsPendingOnes)
{
    Gate started;
    Gate closing;
    bool didFinish = false;
    Fate pending;
    int threads = 0;
    {
        const ScopedApplication application;
        threads = QThreadPool::globalInstance()->maxThreadCount();
        QThreadPool::globalInstance()->setMaxThreadCount(1);
        dispatchGlobal([&] {
            started.open();
            closing.wait();
            didFinish = QCoreApplication::instance() != nullptr;
        });
        dispatchGlobal(pending.job());
        openDuringShutdown(closing);
        started.wait();
    }
    EXPECT_TRUE(didFinish);
    EXPECT_TRUE(pending.wasDropped());

    const ScopedApplication application;
    QThreadPool::globalInstance()->setMaxThreadCount(threads);
}

TEST(DispatchState, DropsPendingMainQueueJobsForGood)
{
    Fate pending;
    {
        const ScopedApplication application;
        dispatchMain(pending.job());
    }
    EXPECT_TRUE(pending.wasDropped());

    const ScopedApplication next;
    bool didRun = false;
    dispatchMain([&didRun] { didRun = true; });
    EXPECT_TRUE(waitFor([&didRun] { return didRun; }));
    EXPECT_TRUE(pending.wasDropped());
}

TEST(DispatchState, DropsWhatARunningJobAddsDuringShutdown)
{
    SerialQueue queue(QStringLiteral("late"));
    SerialQueue other(QStringLiteral("other"));
    Gate started;
    Gate closing;
    std::array<Fate, 4> fates;
    {
        const ScopedApplication application;
        queue.async([&] {
            started.open();
            closing.wait();
            queue.async(fates[0].job());
            other.async(fates[1].job());
            dispatchGlobal(fates[2].job());
            dispatchMain(fates[3].job());
        });
        openDuringShutdown(closing);
        started.wait();
    }
    for (const Fate& fate : fates) {
        EXPECT_TRUE(fate.wasDropped());
    }
}

TEST(DispatchState, DropsWhatTheCapturesOfADroppedJobAdd)
{
    SerialQueue queue(QStringLiteral("chain"));
    std::array<Fate, 3> fates;
    {
        const ScopedApplication application;
        dispatchMain([token = whenDestroyed([&] {
                          queue.async(fates[0].job());
                          dispatchGlobal(fates[1].job());
                          dispatchMain(fates[2].job());
                      })] {});
    }
    for (const Fate& fate : fates) {
        EXPECT_TRUE(fate.wasDropped());
    }
}

TEST(DispatchState, BreaksThePromiseOfADroppedJobInsteadOfLettingItsWaiterHang)
{
    SerialQueue queue(QStringLiteral("waiter"));
    Gate started;
    bool didBreak = false;
    {
        const ScopedApplication application;
        queue.async([&] {
            auto promise = std::make_shared<std::promise<void>>();
            std::future<void> answer = promise->get_future();
            dispatchMain([promise = std::move(promise)] { promise->set_value(); });
            started.open();
            try {
                answer.get();
            } catch (const std::future_error&) {
                didBreak = true;
            }
        });
        started.wait();
    }
    EXPECT_TRUE(didBreak);
}

TEST(DispatchState, DropsWorkOfADestroyedQueueToo)
{
    Gate started;
    Gate closing;
    Fate pending;
    {
        const ScopedApplication application;
        {
            SerialQueue queue(QStringLiteral("destroyed"));
            queue.async([&] {
                started.open();
                closing.wait();
            });
            queue.async(pending.job());
        }
        openDuringShutdown(closing);
        started.wait();
    }
    EXPECT_TRUE(pending.wasDropped());
}

TEST(DispatchState, DropsAtOnceWhileThereIsNoApplicationAnyMore)
{
    SerialQueue queue(QStringLiteral("orphan"));
    {
        const ScopedApplication application;
    }
    std::array<Fate, 3> fates;
    std::thread([&] {
        queue.async(fates[0].job());
        dispatchGlobal(fates[1].job());
        dispatchMain(fates[2].job());
        for (const Fate& fate : fates) {
            EXPECT_TRUE(fate.wasDropped());
        }
    }).join();

    // A later application object doesn't bring them back.
    const ScopedApplication application;
    finish(queue);
    for (const Fate& fate : fates) {
        EXPECT_TRUE(fate.wasDropped());
    }
}

TEST(DispatchState, RunsEveryKindOfJobUnderEachLaterApplication)
{
    SerialQueue queue(QStringLiteral("reborn"));
    for (int round = 0; round < 3; ++round) {
        const ScopedApplication application;
        int count = 0; // Handed from thread to thread with no other synchronisation.
        bool isBack = false;
        std::optional<DelayedTask> task;
        queue.async([&] {
            ++count;
            dispatchGlobal([&] {
                ++count;
                dispatchMain([&] {
                    ++count;
                    task.emplace(1ms, [&] { isBack = true; });
                });
            });
        });
        EXPECT_TRUE(waitFor([&isBack] { return isBack; }));
        EXPECT_EQ(count, 3);
    }
}

TEST(DispatchState, FollowsGuiApplicationsToo)
{
    SerialQueue queue(QStringLiteral("gui"));
    for (int round = 0; round < 2; ++round) {
        Fate pending;
        bool didFinish = false;
        Gate started;
        Gate closing;
        {
            const QGuiApplication application(argumentCount, arguments);
            queue.async([&] {
                started.open();
                closing.wait();
                didFinish = true;
            });
            queue.async(pending.job());
            openDuringShutdown(closing);
            started.wait();
        }
        EXPECT_TRUE(didFinish);
        EXPECT_TRUE(pending.wasDropped());
    }
}

TEST(DispatchState, EndsADelayedTaskWithTheApplication)
{
    std::optional<DelayedTask> task;
    Fate block;
    {
        const ScopedApplication application;
        task.emplace(0ms, block.job());
        EXPECT_TRUE(task->isPending());
    }
    EXPECT_TRUE(block.wasDropped());
    EXPECT_FALSE(task->isPending());
    task->cancel();

    const ScopedApplication next;
    bool didRun = false;
    const DelayedTask later(1ms, [&didRun] { didRun = true; });
    EXPECT_TRUE(waitFor([&didRun] { return didRun; }));
    EXPECT_TRUE(block.wasDropped());
}

TEST(DispatchState, NeverRunsADelayedTaskMadeWithoutAnApplication)
{
    Fate block;
    DelayedTask task(0ms, block.job());
    EXPECT_TRUE(block.wasDropped());
    EXPECT_FALSE(task.isPending());
    task.cancel();
}

TEST(DispatchState, RemembersTheMainThreadBetweenApplications)
{
    {
        const ScopedApplication application;
        EXPECT_TRUE(isMainThread());
    }
    EXPECT_TRUE(isMainThread());
    assertOnMainThread();
    std::thread([] { EXPECT_FALSE(isMainThread()); }).join();
}

TEST(DispatchState, EitherRunsOrDropsEachJobThatComesWhileApplicationsComeAndGo)
{
    constexpr int kRounds = 10;
    constexpr int kThreads = 2;
    std::atomic<int> added = 0;
    std::atomic<int> gone = 0;
    std::atomic<bool> isOver = false;
    const auto job = [&] {
        ++added;
        return [token = whenDestroyed([&gone] { ++gone; })] {
        };
    };
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            SerialQueue kept(QStringLiteral("kept"));
            while (!isOver) {
                SerialQueue brief(QStringLiteral("brief"));
                kept.async(job());
                brief.async(job());
                brief.async(job());
                dispatchGlobal(job());
                dispatchMain(job());
            }
        });
    }
    for (int round = 0; round < kRounds; ++round) {
        const ScopedApplication application;
        const int enough = added + 50;
        EXPECT_TRUE(waitFor([&added, enough] { return added >= enough; }));
    }
    isOver = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(gone, added);
}

TEST(DispatchState, TellsAThreadQueueFirstAndRunsItToTheLast)
{
    std::vector<std::string> events; // the thread's until the application is gone
    Gate told;
    ThreadQueue queue(QStringLiteral("thread"), {.applicationWillEnd =
                                                     [&] {
                                                         events.emplace_back("told");
                                                         told.open();
                                                     },
                                                 .threadWillEnd =
                                                     [&] {
                                                         events.emplace_back("ended");
                                                     }});
    SerialQueue serial(QStringLiteral("asks the thread"));
    Gate started;
    bool isAnswered = false;
    {
        const ScopedApplication application;
        Gate ran;
        queue.async([&] {
            events.emplace_back("job");
            ran.open();
        });
        ran.wait(); // The news overtakes what is pending.
        serial.async([&] {
            started.open();
            told.wait();
            Gate answered;
            queue.async([&] {
                events.emplace_back("asked late");
                answered.open();
            });
            answered.wait();
            isAnswered = true;
            queue.async([&] { events.emplace_back("left behind"); });
        });
        started.wait();
    }
    EXPECT_TRUE(isAnswered);
    EXPECT_THAT(events, testing::ElementsAre("job", "told", "asked late", "left behind", "ended"));

    Fate late;
    queue.async(late.job());
    EXPECT_TRUE(late.wasDropped());
}

TEST(DispatchState, TellsAThreadQueueThatStartsWhileTheApplicationDies)
{
    std::vector<std::string> events;
    ThreadQueue queue(QStringLiteral("late thread"), {.applicationWillEnd = [&] { events.emplace_back("told"); },
                                                      .threadWillEnd =
                                                          [&] {
                                                              events.emplace_back("ended");
                                                          }});
    SerialQueue serial(QStringLiteral("starts it"));
    Gate started;
    Gate closing;
    {
        const ScopedApplication application;
        serial.async([&] {
            started.open();
            closing.wait();
            queue.async([&] { events.emplace_back("job"); });
        });
        openDuringShutdown(closing);
        started.wait();
    }
    EXPECT_THAT(events, testing::ElementsAre("told", "job", "ended"));
}

TEST(DispatchState, GivesAThreadQueueANewThreadUnderEachApplication)
{
    int ends = 0;
    int jobs = 0;
    ThreadQueue queue(QStringLiteral("reborn thread"), {.applicationWillEnd = {}, .threadWillEnd = [&] {
                                                            ++ends;
                                                        }});
    for (int round = 1; round <= 3; ++round) {
        {
            const ScopedApplication application;
            queue.async([&] { ++jobs; });
        }
        EXPECT_EQ(jobs, round);
        EXPECT_EQ(ends, round);
    }
}

TEST(DispatchState, JoinsTheThreadOfAThreadQueueThatIsGone)
{
    bool didEnd = false;
    {
        const ScopedApplication application;
        ThreadQueue queue(QStringLiteral("gone"), {.applicationWillEnd = {}, .threadWillEnd = [&] {
                                                       didEnd = true;
                                                   }});
        queue.async([] {});
    }
    EXPECT_TRUE(didEnd);
}

} // namespace
} // namespace kovalin::platform

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    testing::InitGoogleTest(&argc, argv);
    {
        const kovalin::platform::ScopedApplication first;
        kovalin::platform::staticOwner.waitForEarlyJobs();
    }
    return RUN_ALL_TESTS();
}
