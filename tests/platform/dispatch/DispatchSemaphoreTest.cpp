#include "platform/dispatch/DispatchSemaphore.h"

#include "platform/dispatch/GlobalQueue.h"
#include "support/ManualWaitClock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace kovalin::platform {
namespace {

using namespace std::chrono_literals;
using test::ManualWaitClock;
using testing::ElementsAre;

constexpr auto kForEver = std::chrono::nanoseconds::max();

TEST(DispatchSemaphore, TakesOneSignalEachTime)
{
    DispatchSemaphore semaphore;
    EXPECT_FALSE(semaphore.wait(0ns));
    semaphore.signal();
    semaphore.signal();
    EXPECT_TRUE(semaphore.wait(0ns));
    EXPECT_TRUE(semaphore.wait(1h));
    EXPECT_FALSE(semaphore.wait(-1ns));
}

TEST(DispatchSemaphore, StartsWithTheSignalsThatItIsGiven)
{
    DispatchSemaphore semaphore(2);
    EXPECT_TRUE(semaphore.wait(0ns));
    EXPECT_TRUE(semaphore.wait(0ns));
    EXPECT_FALSE(semaphore.wait(0ns));
}

TEST(DispatchSemaphore, TimesOutOnTheSystemsClock)
{
    DispatchSemaphore semaphore;
    EXPECT_FALSE(semaphore.wait(1ns));
    EXPECT_FALSE(semaphore.wait(1ms));
}

TEST(DispatchSemaphore, TimesOutWhenItsTimeHasPassedAndKeepsALateSignal)
{
    ManualWaitClock clock;
    DispatchSemaphore semaphore;
    bool isInTime = true;
    std::thread waiter([&] { isInTime = semaphore.wait(10'000'000'000ns); });
    clock.waitForWaits(1);
    clock.advance(10s);
    waiter.join();
    EXPECT_FALSE(isInTime);
    EXPECT_THAT(clock.timeouts(), ElementsAre(10s));
    semaphore.signal();
    EXPECT_TRUE(semaphore.wait(0ns));
}

TEST(DispatchSemaphore, WakesOneWaiterForEachSignal)
{
    ManualWaitClock clock;
    DispatchSemaphore semaphore;
    std::atomic<int> taken = 0;
    std::vector<std::thread> waiters;
    for (int i = 0; i < 4; ++i) {
        waiters.emplace_back([&] { taken += semaphore.wait(10s) ? 1 : 0; });
    }
    clock.waitForWaits(4);
    semaphore.signal();
    semaphore.signal();
    semaphore.signal();
    clock.advance(10s);
    for (std::thread& waiter : waiters) {
        waiter.join();
    }
    // Who finds a signal takes it even if its time is up too.
    EXPECT_EQ(taken, 3);
    EXPECT_FALSE(semaphore.wait(0ns));
}

TEST(DispatchSemaphore, ShowsAWaiterWhatTheSignallerWrote)
{
    const auto semaphore = std::make_shared<DispatchSemaphore>();
    int value = 0; // Synchronised by the semaphore alone.
    for (int round = 1; round <= 300; ++round) {
        dispatchGlobal([semaphore, &value] {
            ++value;
            semaphore->signal();
        });
        ASSERT_TRUE(semaphore->wait(kForEver));
        ASSERT_EQ(value, round);
    }
}

TEST(DispatchSemaphore, LosesNoSignalAmongManyThreads)
{
    constexpr int kThreads = 4;
    constexpr int kSignals = 1000;
    DispatchSemaphore semaphore;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&semaphore] {
            for (int signal = 0; signal < kSignals; ++signal) {
                semaphore.signal();
            }
        });
        threads.emplace_back([&semaphore] {
            for (int wait = 0; wait < kSignals; ++wait) {
                EXPECT_TRUE(semaphore.wait(kForEver));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_FALSE(semaphore.wait(0ns));
}

TEST(DispatchSemaphore, CanBeDestroyedAsSoonAsItsWaitIsOver)
{
    for (int round = 0; round < 500; ++round) {
        auto semaphore = std::make_unique<DispatchSemaphore>();
        std::thread signaller([&semaphore = *semaphore] { semaphore.signal(); });
        EXPECT_TRUE(semaphore->wait(kForEver));
        semaphore.reset();
        signaller.join();
    }
}

} // namespace
} // namespace kovalin::platform
