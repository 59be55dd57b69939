#pragma once

namespace kovalin::platform {

/// The motion of a damped oscillator from 0, where it is let go, to 1, where it rests: what a spring animation moves by. A
/// plain value; any thread.
///
/// The stiffness is such that the motion has settled when its time is up: from then on it is within 0.1 % of 1.
class Spring final {
public:
    /// `dampingRatio`: below 1 it swings beyond 1 and back, at 1 it comes to rest the fastest way without, above it
    /// creeps. Clamped to 0.01 … 100; what isn't finite counts as 1.
    /// `initialVelocity`: the way from 0 to 1 in one unit of `progress`' time, so that 1 covers it in just the duration if
    /// nothing slowed it down. Clamped to −1000 … 1000; what isn't finite counts as 0.
    explicit Spring(double dampingRatio, double initialVelocity = 0);

    /// Where it is at `time`, 0 … 1 for the whole duration: exactly 0 at 0 and before, exactly 1 at 1 and later, and for a time
    /// that is no number.
    [[nodiscard]] double progress(double time) const;

private:
    /// How far it still is from 1, at `time` with the angular frequency `frequency`.
    [[nodiscard]] double distance(double frequency, double time) const;
    /// No less than that distance at the end of the time and ever after.
    [[nodiscard]] double restDistance(double frequency) const;
    [[nodiscard]] double settlingFrequency() const;

    const double _damping;
    const double _velocity;
    const double _frequency;
};

} // namespace kovalin::platform
