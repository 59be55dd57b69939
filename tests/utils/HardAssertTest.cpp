#include "utils/HardAssert.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::AllOf;
using testing::HasSubstr;

TEST(HardAssert, EvaluatesItsConditionOnce)
{
    int evaluations = 0;

    KOVALIN_HARD_ASSERT(++evaluations == 1);

    EXPECT_EQ(evaluations, 1);
}

TEST(HardAssert, IsAnExpression)
{
    const int value = (KOVALIN_HARD_ASSERT(true), 7);

    EXPECT_EQ(value, 7);
}

// In every build type, whether NDEBUG is defined or not.
TEST(HardAssertDeathTest, StopsTheProgramWithItsConditionAndItsPlace)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const int size = 3;

    EXPECT_DEATH(KOVALIN_HARD_ASSERT(size < 3), AllOf(HasSubstr("size < 3"), HasSubstr("HardAssertTest.cpp")));
}

TEST(HardAssertDeathTest, AFailureNamesWhatItIsGiven)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_DEATH(vole::detail::failAssertion("the sky is green", "weather", 4711, "look"),
                 AllOf(HasSubstr("the sky is green"), HasSubstr("weather"), HasSubstr("4711"), HasSubstr("look")));
}
