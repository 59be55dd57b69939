#include "platform/foundation/Random.h"

#include "support/ScriptedRandom.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>

using kovalin::platform::setRandomSource;
using kovalin::test::ScriptedRandom;

namespace {

TEST(Random, GivesDifferentNumbersFromTheSystem)
{
    std::set<quint32> numbers;
    for (int draw = 0; draw < 100; ++draw) {
        numbers.insert(kovalin::platform::arc4random());
    }
    EXPECT_GT(numbers.size(), 90U); // equal ones by chance: once in a million runs of this test
}

TEST(Random, ComesFromTheInstalledSource)
{
    quint32 next = 7;
    const ScriptedRandom random([&next] { return next++; });
    EXPECT_EQ(kovalin::platform::arc4random(), 7U);
    EXPECT_EQ(kovalin::platform::arc4random(), 8U);
}

TEST(Random, ComesFromWhatWasInstalledBeforeOnceTheSourceIsGone)
{
    const ScriptedRandom outer([] { return 1U; });
    {
        const ScriptedRandom inner([] { return 2U; });
        EXPECT_EQ(kovalin::platform::arc4random(), 2U);
    }
    EXPECT_EQ(kovalin::platform::arc4random(), 1U);
    EXPECT_TRUE(setRandomSource({}));
    EXPECT_FALSE(setRandomSource([] { return 1U; })) << "the system's source is told as none";
}

TEST(Random, CanBeReplacedWhileOthersDraw)
{
    const ScriptedRandom random([] { return 1U; });
    std::thread drawing([] {
        for (int draw = 0; draw < 1000; ++draw) {
            EXPECT_LE(kovalin::platform::arc4random() - 1, 1U);
        }
    });
    for (int replacement = 0; replacement < 1000; ++replacement) {
        setRandomSource([replacement] { return static_cast<quint32>(1 + replacement % 2); });
    }
    drawing.join();
    setRandomSource([] { return 1U; });
}

} // namespace
