#pragma once

#include <QtCore/QAnimationDriver>

#include <chrono>

namespace kovalin::test {

/// The time of all of Qt's animations, which passes only in `step`. Main thread only; one at a time.
class ManualAnimationDriver final : public QAnimationDriver {
public:
    ManualAnimationDriver();
    ~ManualAnimationDriver() override;

    /// Starts what has been asked to start, and lets `time` pass in one tick.
    void step(std::chrono::milliseconds time);

    [[nodiscard]] qint64 elapsed() const override;

private:
    std::chrono::milliseconds _elapsed{0};
};

} // namespace kovalin::test
