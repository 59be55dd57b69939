#include "utils/ReleaseAsserts.h"

#include <gtest/gtest.h>

namespace {

TEST(AssertMessage, NamesTheConditionAfterTheMessage)
{
    EXPECT_EQ(vole::detail::assertMessage("x", "y > 0"), "x: condition y > 0 failed");
}

TEST(AssertMessage, IsTheConditionAloneWithoutAMessage)
{
    EXPECT_EQ(vole::detail::assertMessage("", "y > 0"), "y > 0 failed");
}

} // namespace
