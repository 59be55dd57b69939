#include "utils/platform/JvmUtils.h"

#include "utils/ReleaseAsserts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

using namespace vole::utils::platform;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;

namespace {

/// What a stop of the program tells; the platforms write the place in two ways.
auto stopsAt(const std::string& function, int line)
{
    return AllOf(HasSubstr("not supposed to be called for non-android: condition false failed"), HasSubstr(function),
                 ContainsRegex("utils/platform/JvmUtils_stub(:|, line )" + std::to_string(line) + "[:.]"));
}

/// Enables the assertions for the rest of the process: only for one that a death test has started.
void withReleaseAsserts(void* (*get)())
{
    vole::enableReleaseAsserts();
    static_cast<void>(get());
}

void attachAndDetach()
{
    attachThreadIfNeeded("jni-logger");
    attachJni("thread");
    attachJni("");
    detachJni();
    detachJni();
}

/// The death tests run in a fresh process each, so that the assertions stay off in this one.
class JvmUtilsDeathTest : public testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
    void TearDown() override { EXPECT_FALSE(vole::releaseAssertsEnabled()); }
};

} // namespace

TEST(JvmUtils, HasNoVirtualMachine)
{
    EXPECT_EQ(getJvm(), nullptr);
    EXPECT_EQ(getEnv(), nullptr);
    EXPECT_EQ(getEnv(), nullptr) << "a second call, as harmless as the first";
}

TEST(JvmUtils, AttachesAndDetachesNothing)
{
    attachAndDetach();

    EXPECT_EQ(getEnv(), nullptr);
}

TEST_F(JvmUtilsDeathTest, GetJvmStopsTheProgramWithReleaseAsserts)
{
    EXPECT_DEATH(withReleaseAsserts(getJvm), stopsAt("getJvm", 14));
}

TEST_F(JvmUtilsDeathTest, GetEnvStopsTheProgramWithReleaseAsserts)
{
    EXPECT_DEATH(withReleaseAsserts(getEnv), stopsAt("getEnv", 19));
}

TEST_F(JvmUtilsDeathTest, AttachingAndDetachingIsHarmlessWithReleaseAsserts)
{
    EXPECT_EXIT(
        {
            vole::enableReleaseAsserts();
            attachAndDetach();
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}
