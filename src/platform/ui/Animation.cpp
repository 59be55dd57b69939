#include "platform/ui/Animation.h"

#include "platform/ui/Animator.h"
#include "platform/ui/Spring.h"

#include <QtCore/QEasingCurve>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kovalin::platform {

namespace {

/// Far longer than any animation makes sense, and far below what a timer can count.
constexpr double maxSeconds = 3600;

std::chrono::milliseconds milliseconds(AnimationSeconds time)
{
    const double seconds = std::isfinite(time.count()) ? std::clamp(time.count(), 0.0, maxSeconds) : 0;
    return std::chrono::round<std::chrono::milliseconds>(AnimationSeconds(seconds));
}

double easeInOut(double time)
{
    static const QEasingCurve curve(QEasingCurve::InOutSine);
    return curve.valueForProgress(time);
}

} // namespace

void animate(AnimationSeconds duration, AnimationSeconds delay, const std::function<void()>& changes,
             std::function<void()> completion)
{
    Animator::shared().animate({milliseconds(delay), milliseconds(duration), easeInOut}, changes,
                               std::move(completion));
}

void animate(AnimationSeconds duration, AnimationSeconds delay, double dampingRatio, double initialVelocity,
             const std::function<void()>& changes, std::function<void()> completion)
{
    const Spring spring(dampingRatio, initialVelocity * duration.count());
    Animator::shared().animate({milliseconds(delay), milliseconds(duration),
                                [spring](double time) {
                                    return spring.progress(time);
                                }},
                               changes, std::move(completion));
}

void animateAlong(AnimationSeconds duration, const std::function<void()>& changes, std::function<void()> completion)
{
    Animator::shared().animateAlong({milliseconds(AnimationSeconds(0)), milliseconds(duration), easeInOut}, changes,
                                    std::move(completion));
}

void transition(const std::shared_ptr<View>& view, AnimationSeconds duration, const std::function<void()>& changes,
                std::function<void()> completion)
{
    const bool dissolves = view && Animator::keepContentForDissolve(*view);
    changes();
    animate(
        duration, AnimationSeconds(0),
        [&] {
            if (dissolves) {
                Animator::shared().dissolve(*view);
            }
        },
        std::move(completion));
}

void withoutAnimation(const std::function<void()>& changes)
{
    Animator::shared().withoutAnimation(changes);
}

void setReducedMotion(bool isReduced)
{
    Animator::shared().setMotionReduced(isReduced);
}

bool isMotionReduced()
{
    return Animator::shared().isMotionReduced();
}

} // namespace kovalin::platform
