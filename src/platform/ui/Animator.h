#pragma once

#include "platform/ui/AnimatedProperty.h"

#include <QtCore/QVariantAnimation>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace kovalin::platform {

class View;

/// Progress of a value, 0 … 1, at a time, 0 … 1.
using AnimationCurve = std::function<double(double)>;

struct AnimationTiming {
    std::chrono::milliseconds delay;
    std::chrono::milliseconds duration;
    AnimationCurve curve;
};

/// The values that one call of `animate` moves. Main thread only.
class AnimationRun final : public QVariantAnimation {
public:
    AnimationRun(AnimationTiming timing, std::function<void()> completion);

    void add(View& view, AnimatedProperty property, const PropertyValue& target);
    [[nodiscard]] bool isEmpty() const { return _moves.empty(); }

    void drop(const View& view, AnimatedProperty property);
    void dropAll(const View& view);
    void jumpToTargets(View& view);

    [[nodiscard]] const AnimationTiming& timing() const { return _timing; }

    /// Lets all values that are left arrive, and has the completion called. Once; later calls do nothing.
    void finish();

protected:
    void updateCurrentValue(const QVariant& value) override;
    void updateState(State newState, State oldState) override;

private:
    struct Move {
        std::weak_ptr<View> view;
        const View* identity; ///< Only compared.
        AnimatedProperty property;
        PropertyValue from;
        PropertyValue to;
    };

    [[nodiscard]] bool has(const Move& move) const;

    const AnimationTiming _timing;
    std::function<void()> _completion;
    std::vector<Move> _moves;
};

/// All animations. Main thread only; never destroyed.
class Animator final {
public:
    static Animator& shared();

    /// Moves a view's value: at once, or in the animation whose changes are being made.
    void change(View& view, AnimatedProperty property, const PropertyValue& target);

    /// Stops moving; what is on screen stays where it is.
    void drop(const View& view, AnimatedProperty property);
    /// As `drop`, of all that moves; for a view at its end.
    void forget(const View& view);
    /// Everything of the view arrives now.
    void jumpToTargets(View& view);

    void animate(AnimationTiming timing, const std::function<void()>& changes, std::function<void()> completion);
    /// As the changes that are being made are; with `timing` where none are.
    void animateAlong(AnimationTiming timing, const std::function<void()>& changes, std::function<void()> completion);
    void withoutAnimation(const std::function<void()>& changes);
    /// Starts a dissolve of the view's content that is set by now.
    void dissolve(View& view);
    [[nodiscard]] static bool keepContentForDissolve(View& view);
    /// Ends runs out of values, which is early, and lets go of those that have ended.
    void endEmptyRuns();

    [[nodiscard]] bool isMotionReduced() const { return _isMotionReduced; }
    void setMotionReduced(bool isReduced) { _isMotionReduced = isReduced; }

private:
    using Runs = std::vector<std::shared_ptr<AnimationRun>>;

    Animator() = default;

    void record(const std::shared_ptr<AnimationRun>& run, const std::function<void()>& changes);

    Runs _runs;
    /// Null also where changes are made that are to jump.
    std::shared_ptr<AnimationRun> _recording;
    bool _areChangesMade = false;
    bool _isMotionReduced = false;
};

} // namespace kovalin::platform
