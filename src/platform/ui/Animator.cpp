#include "platform/ui/Animator.h"

#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/View.h"

#include <QtCore/QScopeGuard>

#include <algorithm>
#include <utility>

namespace kovalin::platform {

namespace {

PropertyValue between(const PropertyValue& from, const PropertyValue& to, double progress)
{
    PropertyValue value;
    for (size_t index = 0; index < value.size(); ++index) {
        value[index] = from[index] + (to[index] - from[index]) * progress;
    }
    return value;
}

void complete(std::function<void()> completion)
{
    if (completion) {
        dispatchMain(std::move(completion));
    }
}

} // namespace

// One animation

AnimationRun::AnimationRun(AnimationTiming timing, std::function<void()> completion)
    : _timing(std::move(timing))
    , _completion(std::move(completion))
{
    // The value itself isn't looked at; the time is.
    setStartValue(0.0);
    setEndValue(1.0);
    setDuration(static_cast<int>((_timing.delay + _timing.duration).count()));
}

void AnimationRun::add(View& view, AnimatedProperty property, const PropertyValue& target)
{
    _moves.push_back({view.weak_from_this(), &view, property, view.presented(property), target});
}

void AnimationRun::drop(const View& view, AnimatedProperty property)
{
    std::erase_if(_moves, [&](const Move& move) { return move.identity == &view && move.property == property; });
}

void AnimationRun::dropAll(const View& view)
{
    std::erase_if(_moves, [&](const Move& move) { return move.identity == &view; });
}

void AnimationRun::jumpToTargets(View& view)
{
    const auto moves = _moves;
    dropAll(view);
    for (const Move& move : moves) {
        if (move.identity == &view) {
            view.present(move.property, move.to);
        }
    }
}

bool AnimationRun::has(const Move& move) const
{
    return std::any_of(_moves.begin(), _moves.end(), [&](const Move& other) {
        return other.identity == move.identity && other.property == move.property;
    });
}

void AnimationRun::updateCurrentValue(const QVariant& /*value*/)
{
    const std::chrono::milliseconds time(currentTime());
    if (state() != Running || time < _timing.delay) {
        return;
    }
    const auto elapsed = static_cast<double>((time - _timing.delay).count());
    const auto duration = static_cast<double>(_timing.duration.count());
    const double progress = elapsed >= duration ? 1 : _timing.curve(elapsed / duration);

    // Over a copy: what moves may make others move, or end.
    const auto moves = _moves;
    for (const Move& move : moves) {
        const auto view = move.view.lock();
        if (!view || !has(move)) {
            continue;
        }
        if (view->canBeSeen()) {
            view->present(move.property, progress == 1 ? move.to : between(move.from, move.to, progress));
        } else {
            drop(*view, move.property);
            view->present(move.property, move.to);
        }
    }
    if (_moves.empty()) {
        stop();
    }
}

void AnimationRun::updateState(State newState, State oldState)
{
    QVariantAnimation::updateState(newState, oldState);
    if (newState == Stopped) {
        finish();
        Animator::shared().endEmptyRuns();
    }
}

void AnimationRun::finish()
{
    for (const Move& move : std::exchange(_moves, {})) {
        if (const auto view = move.view.lock()) {
            view->present(move.property, move.to);
        }
    }
    complete(std::exchange(_completion, {}));
}

// All animations

Animator& Animator::shared()
{
    static auto* const shared = new Animator;
    return *shared;
}

void Animator::change(View& view, AnimatedProperty property, const PropertyValue& target)
{
    drop(view, property);
    if (_recording && view.canBeSeen() && view.presented(property) != target) {
        _recording->add(view, property, target);
    } else {
        view.present(property, target);
    }
}

void Animator::drop(const View& view, AnimatedProperty property)
{
    if (_runs.empty() && !_recording) {
        return;
    }
    for (const auto& run : Runs(_runs)) {
        run->drop(view, property);
    }
    if (_recording) {
        _recording->drop(view, property);
    }
    endEmptyRuns();
}

void Animator::forget(const View& view)
{
    for (const auto& run : Runs(_runs)) {
        run->dropAll(view);
    }
    if (_recording) {
        _recording->dropAll(view);
    }
    endEmptyRuns();
}

void Animator::jumpToTargets(View& view)
{
    for (const auto& run : Runs(_runs)) {
        run->jumpToTargets(view);
    }
    if (_recording) {
        _recording->jumpToTargets(view);
    }
    endEmptyRuns();
}

void Animator::endEmptyRuns()
{
    for (const auto& run : Runs(_runs)) {
        if (run->isEmpty()) {
            run->stop();
        }
    }
    std::erase_if(_runs, [](const auto& run) { return run->state() == QAbstractAnimation::Stopped; });
}

void Animator::record(const std::shared_ptr<AnimationRun>& run, const std::function<void()>& changes)
{
    const auto restore =
        qScopeGuard([this, outer = std::exchange(_recording, run), were = std::exchange(_areChangesMade, true)] {
            _recording = outer;
            _areChangesMade = were;
        });
    changes();
}

void Animator::animate(AnimationTiming timing, const std::function<void()>& changes, std::function<void()> completion)
{
    assertOnMainThread();
    if (_isMotionReduced || timing.duration.count() <= 0) {
        record(nullptr, changes);
        complete(std::move(completion));
        return;
    }
    // It may end in its own tick.
    const std::shared_ptr<AnimationRun> run(new AnimationRun(std::move(timing), std::move(completion)),
                                            [](AnimationRun* ended) { ended->deleteLater(); });
    record(run, changes);
    if (run->isEmpty()) {
        run->finish();
        return;
    }
    endEmptyRuns();
    _runs.push_back(run);
    run->start();
}

void Animator::animateAlong(AnimationTiming timing, const std::function<void()>& changes,
                            std::function<void()> completion)
{
    assertOnMainThread();
    if (_areChangesMade && !_recording) {
        changes();
        complete(std::move(completion));
        return;
    }
    animate(_recording ? _recording->timing() : std::move(timing), changes, std::move(completion));
}

void Animator::withoutAnimation(const std::function<void()>& changes)
{
    assertOnMainThread();
    record(nullptr, changes);
}

bool Animator::keepContentForDissolve(View& view)
{
    return view.keepContentForDissolve();
}

void Animator::dissolve(View& view)
{
    drop(view, AnimatedProperty::Dissolve);
    view.present(AnimatedProperty::Dissolve, valueOf(0.0));
    change(view, AnimatedProperty::Dissolve, valueOf(1.0));
}

} // namespace kovalin::platform
