#include "platform/foundation/Clock.h"

#include "support/ManualClock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

using namespace kovalin::platform;
using kovalin::test::ManualClock;
using std::chrono::microseconds;
using std::chrono::milliseconds;

class FixedClock final : public Clock {
public:
    explicit FixedClock(microseconds time)
        : _time(time)
    {
    }
    [[nodiscard]] microseconds timeSinceEpoch() const override { return _time; }

private:
    microseconds _time;
};

TEST(Clock, IsTheSystemsByDefault)
{
    const auto systemMillis = [] {
        return std::chrono::floor<milliseconds>(std::chrono::system_clock::now().time_since_epoch()).count();
    };
    const qint64 before = systemMillis();
    const qint64 millis = currentTimeMillis();
    const double seconds = currentTimeSeconds();
    const qint64 after = systemMillis();
    EXPECT_LE(before, millis);
    EXPECT_LE(millis, after);
    EXPECT_LE(double(before) / 1000, seconds);
    EXPECT_LE(seconds, double(after + 1) / 1000);
}

TEST(Clock, DerivesMillisecondsAndSecondsFromOneTime)
{
    const FixedClock clock(microseconds(1'234'567'890));
    EXPECT_EQ(clock.currentTimeMillis(), 1'234'567);
    EXPECT_DOUBLE_EQ(clock.currentTimeSeconds(), 1234.56789);
}

TEST(Clock, RoundsMillisecondsDownAlsoBefore1970)
{
    EXPECT_EQ(FixedClock(microseconds(1999)).currentTimeMillis(), 1);
    EXPECT_EQ(FixedClock(microseconds(-1)).currentTimeMillis(), -1);
}

TEST(Clock, CanBeReplacedAndBroughtBack)
{
    const auto first = std::make_shared<FixedClock>(microseconds(1'000'000));
    const auto second = std::make_shared<FixedClock>(microseconds(2'500'000));
    EXPECT_EQ(setClock(first), nullptr);
    EXPECT_EQ(currentTimeMillis(), 1000);
    EXPECT_EQ(setClock(second), first);
    EXPECT_EQ(currentTimeMillis(), 2500);
    EXPECT_EQ(currentTimeSeconds(), 2.5);
    EXPECT_EQ(setClock(nullptr), second);
    EXPECT_NE(currentTimeMillis(), 2500);
}

TEST(Clock, LetsGoOfAReplacedClock)
{
    auto clock = std::make_shared<FixedClock>(microseconds(0));
    const std::weak_ptr<FixedClock> watch = clock;
    setClock(std::move(clock));
    EXPECT_FALSE(watch.expired());
    setClock(nullptr);
    EXPECT_TRUE(watch.expired());
}

TEST(Clock, MayBeReplacedWhileOtherThreadsRead)
{
    const ManualClock restoring;
    const auto first = std::make_shared<FixedClock>(milliseconds(1));
    const auto second = std::make_shared<FixedClock>(milliseconds(2));
    setClock(first);
    std::atomic<bool> isDone = false;
    std::atomic<int> wrong = 0;
    std::atomic<int> started = 0;
    std::vector<std::thread> readers;
    for (int index = 0; index < 3; ++index) {
        readers.emplace_back([&] {
            ++started;
            while (!isDone) {
                const qint64 millis = currentTimeMillis();
                wrong += millis != 1 && millis != 2 ? 1 : 0;
            }
        });
    }
    while (started < 3) {
        std::this_thread::yield();
    }
    for (int turn = 0; turn < 2000; ++turn) {
        setClock(turn % 2 == 0 ? second : first);
    }
    isDone = true;
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(wrong, 0);
}

TEST(ManualClock, StandsStillUntilItIsMoved)
{
    ManualClock clock(milliseconds(5000));
    EXPECT_EQ(currentTimeMillis(), 5000);
    EXPECT_EQ(currentTimeSeconds(), 5.0);
    clock.advance(milliseconds(1500));
    EXPECT_EQ(currentTimeMillis(), 6500);
    EXPECT_EQ(currentTimeSeconds(), 6.5);
    clock.set(milliseconds(100));
    EXPECT_EQ(currentTimeMillis(), 100);
}

TEST(ManualClock, BringsBackThePreviousClockAtItsEnd)
{
    const ManualClock outer(milliseconds(1));
    {
        const ManualClock inner(milliseconds(2));
        EXPECT_EQ(currentTimeMillis(), 2);
    }
    EXPECT_EQ(currentTimeMillis(), 1);
}

TEST(ManualClock, MovesForAllThreads)
{
    ManualClock clock(milliseconds(0));
    std::thread mover([&] { clock.advance(milliseconds(30)); });
    mover.join();
    EXPECT_EQ(currentTimeMillis(), 30);
}

} // namespace
