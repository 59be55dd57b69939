#pragma once

#include "platform/ui/View.h"

#include <chrono>
#include <functional>
#include <memory>

// Animations of views. Main thread only.
//
// - Each `frame`, `alpha`, `transform` or `backgroundColor` that `changes` sets has its new value at once; on screen it moves
//   there over `duration`, from what is on screen now. A `layoutSubviews` that `changes` calls animates the layout.
// - A value's newest change wins: one in another animation goes on from what is on screen, one outside of any jumps to its
//   value, and the older animation lets the value go.
// - What can't be seen jumps: a view that is hidden, in no window or in a hidden one, or comes to be so on the way.
// - With reduced motion, and for a duration of 0 or less, all is as outside of an animation.
// - `changes` is called once, before the call returns. Animations in it count for themselves.
// - `completion`, which may be empty, is called exactly once, on the main thread, in a later turn of its queue: when all
//   values have arrived, jumped or gone over to another animation, or their views have gone. Only the application's
//   end drops it.

namespace kovalin::platform {

using AnimationSeconds = std::chrono::duration<double>;

/// Starting and ending slowly, `delay` from now.
void animate(AnimationSeconds duration, AnimationSeconds delay, const std::function<void()>& changes,
             std::function<void()> completion = {});

/// As a `Spring` moves. `initialVelocity` is in whole ways from start to target per second.
void animate(AnimationSeconds duration, AnimationSeconds delay, double dampingRatio, double initialVelocity,
             const std::function<void()>& changes, std::function<void()> completion = {});

/// Goes with the animation in whose changes it is called, with its timing; outside of any as `animate(duration, …)`, and where
/// changes are to jump they do.
void animateAlong(AnimationSeconds duration, const std::function<void()>& changes,
                  std::function<void()> completion = {});

/// `changes` sets new content of `view`, which what is on show dissolves into. A view that has no such content, as all but
/// image views, or is null, just changes.
void transition(const std::shared_ptr<View>& view, AnimationSeconds duration, const std::function<void()>& changes,
                std::function<void()> completion = {});

/// What `changes` sets jumps, also in an animation.
void withoutAnimation(const std::function<void()>& changes);

/// Off at first. For hosts, as the platform doesn't tell what the user wants. Holds for animations that start from now on.
void setReducedMotion(bool isReduced);
[[nodiscard]] bool isMotionReduced();

} // namespace kovalin::platform
