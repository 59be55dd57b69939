#include "platform/dispatch/ThreadCheck.h"

#include "platform/dispatch/SerialQueue.h"

#include <gtest/gtest.h>

#include <csignal>
#include <thread>

namespace kovalin::platform {
namespace {

void touchAView()
{
    assertOnMainThread();
}

TEST(ThreadCheck, KnowsTheMainThread)
{
    EXPECT_TRUE(isMainThread());
    assertOnMainThread();
}

TEST(ThreadCheck, TellsOtherThreadsFromTheMainThread)
{
    bool onThread = true;
    std::thread([&onThread] { onThread = isMainThread(); }).join();
    EXPECT_FALSE(onThread);
}

TEST(ThreadCheckDeathTest, StopsOffTheMainThreadAndNamesTheCaller)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::thread(touchAView).join(), testing::KilledBySignal(SIGABRT), "touchAView.*Not on the main thread");
}

} // namespace
} // namespace kovalin::platform
