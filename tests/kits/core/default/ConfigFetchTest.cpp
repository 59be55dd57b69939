#include "kits/core/default/ConfigFetch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace kovalin::kits {
namespace {

using testing::ElementsAre;

TEST(ConfigFetch, TellsEverybodyOnceInTheirOrder)
{
    std::vector<std::string> told;
    ConfigFetch fetch;
    for (const char* const name : {"a", "b"}) {
        ConfigFetch::Completion completion = [&told, name](bool success) {
            told.push_back(std::string(name) + (success ? " good" : " bad"));
        };
        EXPECT_TRUE(fetch.join(completion));
    }
    fetch.finish(true);
    fetch.finish(false);
    EXPECT_THAT(told, ElementsAre("a good", "b good"));
}

TEST(ConfigFetch, LeavesACompletionThatComesTooLate)
{
    ConfigFetch fetch;
    fetch.finish(true);
    int calls = 0;
    ConfigFetch::Completion completion = [&calls](bool) {
        ++calls;
    };
    EXPECT_FALSE(fetch.join(completion));
    ASSERT_TRUE(completion);
    EXPECT_EQ(calls, 0);
}

TEST(ConfigFetch, TellsOfAFailureWhereItGoesWithoutAnOutcome)
{
    std::vector<bool> told;
    {
        ConfigFetch fetch;
        ConfigFetch::Completion completion = [&told](bool success) {
            told.push_back(success);
        };
        EXPECT_TRUE(fetch.join(completion));
    }
    EXPECT_THAT(told, ElementsAre(false));
}

TEST(ConfigFetch, CallsEachCompletionOnceWhileManyJoinAndOneFinishes)
{
    constexpr int kThreads = 4;
    for (int round = 0; round < 50; ++round) {
        ConfigFetch fetch;
        std::atomic<int> called = 0;
        std::atomic<int> late = 0;
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([&] {
                ConfigFetch::Completion completion = [&called](bool) {
                    ++called;
                };
                late += fetch.join(completion) ? 0 : 1;
            });
        }
        fetch.finish(true);
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(called + late, kThreads);
    }
}

} // namespace
} // namespace kovalin::kits
