#include "platform/ui/Spring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

using kovalin::platform::Spring;

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

class SpringRegimes : public testing::TestWithParam<std::pair<double, double>> {};

TEST_P(SpringRegimes, beginsAndEndsExactlyAndSettlesInTime)
{
    const auto [damping, velocity] = GetParam();
    const Spring spring(damping, velocity);
    EXPECT_EQ(spring.progress(0), 0);
    EXPECT_EQ(spring.progress(-1), 0);
    EXPECT_EQ(spring.progress(1), 1);
    EXPECT_EQ(spring.progress(2), 1);
    EXPECT_EQ(spring.progress(nan), 1);
    EXPECT_NEAR(spring.progress(std::nextafter(1.0, 0.0)), 1, 0.001);
    EXPECT_TRUE(std::isfinite(spring.progress(1e-9)));
}

TEST_P(SpringRegimes, beginsWithItsVelocity)
{
    const auto [damping, velocity] = GetParam();
    constexpr double moment = 1e-9;
    // Of the velocities that are taken as they are.
    if (std::abs(velocity) <= 1000) {
        EXPECT_NEAR(Spring(damping, velocity).progress(moment) / moment, velocity, 0.01 + std::abs(velocity) * 0.001);
    }
}

TEST_P(SpringRegimes, isContinuous)
{
    const auto [damping, velocity] = GetParam();
    const Spring spring(damping, velocity);
    constexpr int steps = 100000;
    double largest = 0;
    for (int step = 1; step <= steps; ++step) {
        largest = std::max(largest,
                           std::abs(spring.progress(double(step) / steps) - spring.progress(double(step - 1) / steps)));
    }
    EXPECT_LT(largest, 0.02);
}

INSTANTIATE_TEST_SUITE_P(Dampings, SpringRegimes,
                         testing::Values(std::pair(0.7, 0.0), std::pair(0.7, 5.0), std::pair(0.7, -5.0),
                                         std::pair(0.01, 0.0), std::pair(0.2, 20.0), std::pair(0.99995, 0.0),
                                         std::pair(1.0, 0.0), std::pair(1.0, 10.0), std::pair(1.0, -3.0),
                                         std::pair(1.00005, 0.0), std::pair(1.5, 0.0), std::pair(1.5, 8.0),
                                         std::pair(100.0, 0.0), std::pair(100.0, -2.0)));

TEST(Spring, swingsBeyondItsTargetOnlyIfUnderdamped)
{
    const auto highest = [](const Spring& spring) {
        double value = 0;
        for (int step = 0; step < 1000; ++step) {
            value = std::max(value, spring.progress(step / 1000.0));
        }
        return value;
    };
    EXPECT_GT(highest(Spring(0.7)), 1.03);
    EXPECT_LE(highest(Spring(1)), 1);
    EXPECT_LE(highest(Spring(2)), 1);
    EXPECT_GT(highest(Spring(0.3)), highest(Spring(0.7)));
}

TEST(Spring, theFormulasMeetAtTheCriticalDamping)
{
    for (int step = 1; step < 100; ++step) {
        const double time = step / 100.0;
        EXPECT_NEAR(Spring(0.9998).progress(time), Spring(1).progress(time), 0.002);
        EXPECT_NEAR(Spring(1.0002).progress(time), Spring(1).progress(time), 0.002);
    }
}

TEST(Spring, agreesWithTheOscillatorsEquation)
{
    // x'' + 2ζω x' + ω² x = 0: the ratio of −x'' − … tells one ω for all times.
    const Spring spring(0.7, 2);
    const double step = 1e-4;
    double frequency = 0;
    for (double time = 0.1; time < 0.5; time += 0.05) {
        const double before = 1 - spring.progress(time - step);
        const double now = 1 - spring.progress(time);
        const double after = 1 - spring.progress(time + step);
        const double speed = (after - before) / (2 * step);
        const double acceleration = (after - 2 * now + before) / (step * step);
        // now·ω² + 1.4·speed·ω + acceleration = 0
        const double root = std::sqrt(1.4 * speed * 1.4 * speed - 4 * now * acceleration);
        const double first = (-1.4 * speed + root) / (2 * now);
        const double second = (-1.4 * speed - root) / (2 * now);
        if (frequency == 0) {
            frequency = std::max(first, second);
        }
        EXPECT_LT(std::min(std::abs(first - frequency), std::abs(second - frequency)), 0.01 * frequency) << time;
    }
}

TEST(Spring, oddNumbersMakeUsableSprings)
{
    for (const double odd : {nan, infinity, -infinity}) {
        EXPECT_EQ(Spring(odd).progress(0.5), Spring(1).progress(0.5));
        EXPECT_EQ(Spring(0.7, odd).progress(0.5), Spring(0.7).progress(0.5));
    }
    EXPECT_EQ(Spring(-3).progress(0.5), Spring(0.01).progress(0.5));
    EXPECT_EQ(Spring(1e9).progress(0.5), Spring(100).progress(0.5));
    EXPECT_TRUE(std::isfinite(Spring(0.7, 1e300).progress(0.5)));
    EXPECT_TRUE(std::isfinite(Spring(100, -1e300).progress(0.5)));
}

} // namespace
