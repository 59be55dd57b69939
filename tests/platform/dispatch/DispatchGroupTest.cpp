#include "platform/dispatch/DispatchGroup.h"

#include "platform/dispatch/GlobalQueue.h"
#include "support/ManualWaitClock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <thread>
#include <vector>

namespace kovalin::platform {
namespace {

using namespace std::chrono_literals;
using test::ManualWaitClock;
using testing::ElementsAre;

TEST(DispatchGroup, IsOverWithoutWaitingIfNobodyEntered)
{
    DispatchGroup group;
    EXPECT_TRUE(group.wait(1h));
    EXPECT_TRUE(group.wait(0ns));
    EXPECT_TRUE(group.wait(-1ns));
}

TEST(DispatchGroup, OnlyLooksWithoutTime)
{
    DispatchGroup group;
    group.enter();
    EXPECT_FALSE(group.wait(0ns));
    EXPECT_FALSE(group.wait(-1h));
    group.leave();
    EXPECT_TRUE(group.wait(0ns));
}

TEST(DispatchGroup, IsOverWhenAsManyLeftAsEntered)
{
    DispatchGroup group;
    group.enter();
    group.enter();
    group.leave();
    EXPECT_FALSE(group.wait(0ns));
    group.leave();
    EXPECT_TRUE(group.wait(0ns));
}

TEST(DispatchGroup, TimesOutOnTheSystemsClock)
{
    DispatchGroup group;
    group.enter();
    EXPECT_FALSE(group.wait(1ns));
    EXPECT_FALSE(group.wait(1ms));
}

TEST(DispatchGroup, EndsAWaitWithoutBoundWhenTheLastLeaves)
{
    const auto group = std::make_shared<DispatchGroup>();
    group->enter();
    dispatchGlobal([group] { group->leave(); });
    EXPECT_TRUE(group->wait(std::chrono::nanoseconds::max()));
}

TEST(DispatchGroup, TimesOutWhenItsTimeHasPassedAndNotBefore)
{
    ManualWaitClock clock;
    DispatchGroup group;
    group.enter();
    bool isInTime = true;
    std::thread waiter([&] { isInTime = group.wait(2'000'000'000ns); });
    clock.waitForWaits(1);
    clock.advance(1'999'999'999ns);
    clock.waitForWaits(1);
    clock.advance(1ns);
    waiter.join();
    EXPECT_FALSE(isInTime);
    EXPECT_THAT(clock.timeouts(), ElementsAre(2s));
}

TEST(DispatchGroup, EndsInTimeWhateverTimeIsLeft)
{
    ManualWaitClock clock;
    DispatchGroup group;
    group.enter();
    bool isInTime = false;
    std::thread waiter([&] { isInTime = group.wait(2s); });
    clock.waitForWaits(1);
    clock.advance(1'999'999'999ns);
    group.leave();
    waiter.join();
    EXPECT_TRUE(isInTime);
}

TEST(DispatchGroup, WakesAllWhoWait)
{
    ManualWaitClock clock;
    DispatchGroup group;
    group.enter();
    std::vector<std::thread> waiters;
    std::vector<int> inTime(4);
    waiters.reserve(inTime.size());
    for (int& each : inTime) {
        waiters.emplace_back([&group, &each] { each = group.wait(10s) ? 1 : 0; });
    }
    clock.waitForWaits(4);
    group.leave();
    for (std::thread& waiter : waiters) {
        waiter.join();
    }
    EXPECT_THAT(inTime, testing::Each(1));
}

TEST(DispatchGroup, ShowsAWaiterWhatTheLeaversWroteAgainAndAgain)
{
    constexpr std::size_t kJobs = 8;
    const auto group = std::make_shared<DispatchGroup>();
    std::vector<int> values(kJobs); // Synchronised by the group alone.
    for (int round = 1; round <= 100; ++round) {
        for (std::size_t i = 0; i < kJobs; ++i) {
            group->enter();
            dispatchGlobal([group, &values, i] {
                ++values[i];
                group->leave();
            });
        }
        ASSERT_TRUE(group->wait(std::chrono::nanoseconds::max()));
        ASSERT_THAT(values, testing::Each(round));
    }
}

TEST(DispatchGroup, CanBeDestroyedAsSoonAsItsWaitIsOver)
{
    for (int round = 0; round < 500; ++round) {
        auto group = std::make_unique<DispatchGroup>();
        group->enter();
        std::thread leaver([&group = *group] { group.leave(); });
        EXPECT_TRUE(group->wait(std::chrono::nanoseconds::max()));
        group.reset();
        leaver.join();
    }
}

TEST(DispatchGroupDeathTest, StopsWhenItIsLeftMoreOftenThanEntered)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    DispatchGroup group;
    group.enter();
    group.leave();
    EXPECT_EXIT(group.leave(), testing::KilledBySignal(SIGABRT), "TestBody.*left more often than entered");
}

} // namespace
} // namespace kovalin::platform
