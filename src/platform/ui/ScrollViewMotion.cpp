// How a scroll view moves: by Flickable, by an animation of its own and by calls, and whom it tells.

#include "platform/ui/ScrollViewState.h"
#include "platform/ui/TreeChange.h"
#include "platform/ui/WindowVisibility.h"

#include <QtQuick/QQuickWindow>

#include <chrono>
#include <utility>

namespace kovalin::platform {

namespace {

// As Qt Quick's Flickable numbers them.
constexpr int horizontalFlick = 1;
constexpr int verticalFlick = 2;

constexpr std::chrono::milliseconds scrollDuration(300);

} // namespace

ScrollView::State::State(ScrollView& owner)
    : view(owner)
{
}

void ScrollView::State::setUpFlickable()
{
    flickable = QuickComponents::shared().create(QuickType::Flickable, view);
    view.addSubview(content);
    indicators.addTo(view);
    if (!flickable.item()) {
        return;
    }
    const TreeChange change;
    content->setParentItem(flickable.get(QuickProperty::ContentItem).value<QQuickItem*>());
    flickable.set(QuickProperty::ContentWidth, 0);
    flickable.set(QuickProperty::ContentHeight, 0);
    flickable.set(QuickProperty::Interactive, false);
    flickable.observe(QuickProperty::ContentX, [this] { tellIfMoved(); });
    flickable.observe(QuickProperty::ContentY, [this] { tellIfMoved(); });
    flickable.observe(QuickProperty::Moving, [this] {
        // The wheel, or a finger.
        if (isMovedByQuick()) {
            animation.stop();
        }
        motionMayHaveChanged();
    });
    flickable.observe(QuickProperty::Dragging, [this] { motionMayHaveChanged(); });
}

void ScrollView::State::setUpAnimation()
{
    animation.setDuration(static_cast<int>(scrollDuration.count()));
    animation.setEasingCurve(QEasingCurve::InOutSine);
    animation.setStartValue(0.0);
    animation.setEndValue(1.0);
    QObject::connect(&animation, &QVariantAnimation::valueChanged, &view, [this](const QVariant& progress) {
        if (isAnimating()) {
            moveTo(geometry().clamped(animationStart + (animationEnd - animationStart) * progress.toDouble()));
        }
    });
    QObject::connect(&animation, &QVariantAnimation::stateChanged, &view, [this] { motionMayHaveChanged(); });
}

QPointF ScrollView::State::offset() const
{
    if (!flickable.item()) {
        return geometry().start();
    }
    return {flickable.get(QuickProperty::ContentX).toDouble(), flickable.get(QuickProperty::ContentY).toDouble()};
}

bool ScrollView::State::isMovedByQuick() const
{
    return flickable.get(QuickProperty::Moving).toBool() || flickable.get(QuickProperty::Dragging).toBool();
}

bool ScrollView::State::canBeSeen() const
{
    return view.isVisible() && isOnScreen(view.window());
}

void ScrollView::State::moveTo(const QPointF& target)
{
    isBeingMoved = true;
    flickable.set(QuickProperty::ContentX, target.x());
    flickable.set(QuickProperty::ContentY, target.y());
    isBeingMoved = false;
    tellIfMoved();
}

void ScrollView::State::animateTo(const QPointF& target)
{
    if (isMovedByQuick()) {
        flickable.call(QuickMethod::CancelFlick);
    }
    animation.stop();
    animationStart = offset();
    animationEnd = target;
    animation.start();
}

void ScrollView::State::endMotion()
{
    animation.stop();
    if (isMovedByQuick()) {
        flickable.call(QuickMethod::CancelFlick);
    }
}

void ScrollView::State::settle()
{
    const QPointF target = geometry().clamped(offset());
    if (target != offset()) {
        moveTo(target);
    }
}

void ScrollView::State::tellIfMoved()
{
    const QPointF now = offset();
    if (isBeingMoved || now == toldOffset) {
        return;
    }
    toldOffset = now;
    // Whoever is told may let the last reference go.
    const auto self = view.weak_from_this().lock();
    if (!self) {
        return;
    }
    indicators.place(geometry(), now);
    view.contentOffsetDidChange();
    if (const auto told = delegate.lock()) {
        told->scrollViewDidScroll(view);
    }
}

void ScrollView::State::motionMayHaveChanged()
{
    if (std::exchange(toldMoving, isMoving()) == isMoving()) {
        return;
    }
    if (toldMoving) {
        indicators.show();
        return;
    }
    indicators.fade();
    // Content or insets may have changed while it bounced.
    settle();
}

void ScrollView::State::geometryMayHaveChanged()
{
    const ScrollGeometry now = geometry();
    const ScrollGeometry before = std::exchange(knownGeometry, now);
    const bool horizontal = now.scrollsHorizontally();
    const bool vertical = now.scrollsVertically();
    if (horizontal || vertical) {
        flickable.set(QuickProperty::FlickableDirection,
                      (horizontal ? horizontalFlick : 0) | (vertical ? verticalFlick : 0));
    }
    flickable.set(QuickProperty::Interactive, horizontal || vertical);

    const QPointF present = offset();
    const bool isBouncing = isMovedByQuick() && before.clamped(present) != present;
    if (!isBouncing && now.clamped(present) != present) {
        endMotion();
        settle();
    }
    indicators.place(now, offset());
    tellIfMoved();
}

} // namespace kovalin::platform
