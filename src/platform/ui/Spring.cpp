#include "platform/ui/Spring.h"

#include <algorithm>
#include <cmath>

namespace kovalin::platform {

namespace {

constexpr double minDamping = 0.01;
constexpr double maxDamping = 100;
constexpr double maxVelocity = 1000;
/// How far from its rest a motion may be when its time is up: 0.1 %, and a little less for what arithmetic rounds.
constexpr double settled = 0.000999;
/// Nearer to 1 than this, both other formulas divide by next to nothing.
constexpr double criticalRange = 1e-4;
/// Halving an interval this often uses up a double's digits.
constexpr int halvings = 60;

double soundDamping(double ratio)
{
    return std::isfinite(ratio) ? std::clamp(ratio, minDamping, maxDamping) : 1;
}

double soundVelocity(double velocity)
{
    return std::isfinite(velocity) ? std::clamp(velocity, -maxVelocity, maxVelocity) : 0;
}

/// x = fastShare · e^(−fast t) + slowShare · e^(−slow t), with x(0) = 1 and x'(0) = −velocity.
struct Creep {
    double fast;
    double slow;
    double fastShare;
    double slowShare;

    Creep(double damping, double velocity, double frequency)
        : fast(frequency * (damping + std::sqrt(damping * damping - 1)))
        // The same as frequency · (damping − √…), without its loss of digits.
        , slow(frequency * frequency / fast)
        , fastShare((velocity - slow) / (fast - slow))
        , slowShare(1 - fastShare)
    {
    }
};

} // namespace

Spring::Spring(double dampingRatio, double initialVelocity)
    : _damping(soundDamping(dampingRatio))
    , _velocity(soundVelocity(initialVelocity))
    , _frequency(settlingFrequency())
{
}

double Spring::progress(double time) const
{
    if (!(time < 1)) {
        return 1;
    }
    return time <= 0 ? 0 : 1 - distance(_frequency, time);
}

double Spring::distance(double frequency, double time) const
{
    if (std::abs(_damping - 1) < criticalRange) {
        return (1 + (frequency - _velocity) * time) * std::exp(-frequency * time);
    }
    if (_damping < 1) {
        const double swing = frequency * std::sqrt(1 - _damping * _damping);
        const double sine = (_damping * frequency - _velocity) / swing;
        return std::exp(-_damping * frequency * time) * (std::cos(swing * time) + sine * std::sin(swing * time));
    }
    const Creep creep(_damping, _velocity, frequency);
    return creep.fastShare * std::exp(-creep.fast * time) + creep.slowShare * std::exp(-creep.slow * time);
}

double Spring::restDistance(double frequency) const
{
    // Bounds that go over into each other where the damping is critical, so that the motion does too.
    const double decay = _damping * frequency;
    const double pull = std::abs(decay - _velocity);
    const double critical = (1 + pull) * std::exp(-decay);
    if (std::abs(_damping - 1) < criticalRange) {
        return critical;
    }
    const double spread = frequency * std::sqrt(std::abs(_damping * _damping - 1));
    if (_damping < 1) {
        return std::min(critical, std::hypot(1, pull / spread) * std::exp(-decay));
    }
    const double fast = decay + spread;
    const double slow = frequency * frequency / fast;
    return ((1 + pull / spread) * std::exp(-slow) + (1 - pull / spread) * std::exp(-fast)) / 2;
}

double Spring::settlingFrequency() const
{
    // From 1 on every one of the bounds falls with growing time, so that what holds at the end holds ever after.
    double high = 1;
    while (restDistance(high) > settled) {
        high *= 2;
    }
    double low = high / 2;
    for (int step = 0; step < halvings; ++step) {
        const double middle = (low + high) / 2;
        (restDistance(middle) > settled ? low : high) = middle;
    }
    return high;
}

} // namespace kovalin::platform
