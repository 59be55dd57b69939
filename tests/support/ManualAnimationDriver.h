#pragma once

#include <QtCore/QAnimationDriver>

#include <chrono>

namespace kovalin::test {

/// The time of all of Qt's animations, which passes only in `step`. Main thread only; one at a time.
///
/// Off screen alone. On a display a test whose fixture has one is skipped; a test that makes one in its body fails there.
class ManualAnimationDriver final : public QAnimationDriver {
public:
    ManualAnimationDriver();
    ~ManualAnimationDriver() override;

    /// Starts what has been asked to start, and lets `time` pass in one tick.
    void step(std::chrono::milliseconds time);

    [[nodiscard]] qint64 elapsed() const override;

private:
    const bool _isPossible;
    std::chrono::milliseconds _elapsed{0};
};

} // namespace kovalin::test
