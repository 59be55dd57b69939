#include "utils/ReleaseAsserts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

namespace {

/// Whether all threads hear of the release assertions once one has enabled them.
bool allThreadsSeeThemEnabled()
{
    vole::enableReleaseAsserts();
    bool seen = false;
    std::thread([&seen] { seen = vole::releaseAssertsEnabled(); }).join();
    return seen && vole::releaseAssertsEnabled();
}

TEST(AssertMessage, NamesTheConditionAfterTheMessage)
{
    EXPECT_EQ(vole::detail::assertMessage("x", "y > 0"), "x: condition y > 0 failed");
}

TEST(AssertMessage, IsTheConditionAloneWithoutAMessage)
{
    EXPECT_EQ(vole::detail::assertMessage("", "y > 0"), "y > 0 failed");
}

TEST(AssertMessage, TakesBracesAsText)
{
    EXPECT_EQ(vole::detail::assertMessage("{}", "{1}"), "{}: condition {1} failed");
    EXPECT_EQ(vole::detail::assertMessage("", ""), " failed");
}

TEST(ReleaseAsserts, AreOffAtStart)
{
    EXPECT_FALSE(vole::releaseAssertsEnabled());
}

// In a process of their own, since they can't be switched off again.
TEST(ReleaseAssertsDeathTest, AreOnForAllThreadsOnceEnabled)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_EXIT(std::_Exit(allThreadsSeeThemEnabled() ? 0 : 1), testing::ExitedWithCode(0), "");

    EXPECT_FALSE(vole::releaseAssertsEnabled());
}

} // namespace
