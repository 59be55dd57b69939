#include "platform/dispatch/CleanStop.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>

namespace kovalin::platform {
namespace {

TEST(CleanStopDeathTest, AbortsWithOneLineOfFunctionLineNumberAndReason)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto where = SourceLocation::current();
    EXPECT_EXIT(cleanStop("the reason", where), testing::KilledBySignal(SIGABRT),
                "TestBody.*\\[Line " + std::to_string(where.line()) + "\\] \\[ERROR\\] the reason\n");
}

} // namespace
} // namespace kovalin::platform
