#include "platform/ui/ScrollView.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/Animation.h"
#include "platform/ui/ScrollViewState.h"

#include <QtCore/QScopeGuard>
#include <QtGui/QKeyEvent>

#include <chrono>
#include <cmath>
#include <optional>
#include <utility>

namespace kovalin::platform {

namespace {

/// How long a finger rests before a press in the content counts as one; long enough to tell a flick from it.
constexpr std::chrono::milliseconds touchDelay(150);
/// What a page key leaves on show, in parts of a page, so that the eye finds the place again.
constexpr double pageOverlap = 0.1;

} // namespace

ScrollViewDelegate::~ScrollViewDelegate() = default;

void ScrollViewDelegate::scrollViewDidScroll(ScrollView& /*scrollView*/) {}

ScrollView::ScrollView()
    : _scroll(std::make_unique<State>(*this))
{
    setClipsToBounds(true);
    setFiltersChildMouseEvents(true);
    _scroll->setUpFlickable();
    _scroll->setUpAnimation();
}

ScrollView::~ScrollView()
{
    _scroll->animation.disconnect(this);
}

const std::shared_ptr<View>& ScrollView::contentView() const
{
    return _scroll->content;
}

void ScrollView::setScrollDelegate(const std::weak_ptr<ScrollViewDelegate>& delegate)
{
    assertOnMainThread();
    _scroll->delegate = delegate;
}

QPointF ScrollView::contentOffset() const
{
    return _scroll->offset();
}

void ScrollView::setContentOffset(const QPointF& offset, bool isAnimated)
{
    assertOnMainThread();
    const auto self = weak_from_this().lock();
    const QPointF target = _scroll->geometry().clamped(offset);
    if (isAnimated && target != _scroll->offset() && _scroll->canBeSeen() && !isMotionReduced()) {
        _scroll->animateTo(target);
        return;
    }
    _scroll->endMotion();
    _scroll->moveTo(target);
}

QSizeF ScrollView::contentSize() const
{
    return _scroll->contentSize;
}

void ScrollView::setContentSize(const QSizeF& size)
{
    assertOnMainThread();
    const QSizeF sound =
        QSizeF(std::isfinite(size.width()) ? size.width() : 0, std::isfinite(size.height()) ? size.height() : 0)
            .expandedTo({0, 0});
    if (sound == _scroll->contentSize) {
        return;
    }
    const auto self = weak_from_this().lock();
    _scroll->contentSize = sound;
    _scroll->content->setFrame({_scroll->content->frame().topLeft(), sound});
    _scroll->flickable.set(QuickProperty::ContentWidth, sound.width());
    _scroll->flickable.set(QuickProperty::ContentHeight, sound.height());
    _scroll->geometryMayHaveChanged();
}

QMarginsF ScrollView::contentInset() const
{
    return _scroll->inset;
}

void ScrollView::setContentInset(const QMarginsF& inset)
{
    assertOnMainThread();
    if (inset == _scroll->inset) {
        return;
    }
    const auto self = weak_from_this().lock();
    const QPointF start = _scroll->geometry().start();
    const QPointF now = _scroll->offset();
    const bool isMoving = _scroll->isMoving();
    _scroll->inset = inset;
    auto& flickable = _scroll->flickable;
    flickable.set(QuickProperty::LeftMargin, inset.left());
    flickable.set(QuickProperty::TopMargin, inset.top());
    flickable.set(QuickProperty::RightMargin, inset.right());
    flickable.set(QuickProperty::BottomMargin, inset.bottom());
    if (!flickable.item()) {
        _scroll->content->setFrame({QPointF(inset.left(), inset.top()), _scroll->contentSize});
    }
    const QPointF newStart = _scroll->geometry().start();
    const auto follow = [&](const QPointF& place) {
        return QPointF(place.x() == start.x() ? newStart.x() : place.x(),
                       place.y() == start.y() ? newStart.y() : place.y());
    };
    _scroll->animationEnd = follow(_scroll->animationEnd);
    if (!isMoving) {
        _scroll->moveTo(_scroll->geometry().clamped(follow(now)));
    }
    _scroll->geometryMayHaveChanged();
    setNeedsLayout();
}

QMarginsF ScrollView::scrollIndicatorInsets() const
{
    return _scroll->indicators.insets();
}

void ScrollView::setScrollIndicatorInsets(const QMarginsF& insets)
{
    assertOnMainThread();
    _scroll->indicators.setInsets(insets);
    _scroll->indicators.place(_scroll->geometry(), _scroll->offset());
}

void ScrollView::setShowsVerticalScrollIndicator(bool shows)
{
    assertOnMainThread();
    _scroll->indicators.setShowsVertical(shows);
    _scroll->indicators.place(_scroll->geometry(), _scroll->offset());
}

void ScrollView::setShowsHorizontalScrollIndicator(bool shows)
{
    assertOnMainThread();
    _scroll->indicators.setShowsHorizontal(shows);
    _scroll->indicators.place(_scroll->geometry(), _scroll->offset());
}

bool ScrollView::delaysContentTouches() const
{
    return _scroll->delaysContentTouches;
}

void ScrollView::setDelaysContentTouches(bool delays)
{
    assertOnMainThread();
    _scroll->delaysContentTouches = delays;
    _scroll->flickable.set(QuickProperty::PressDelay, delays ? static_cast<int>(touchDelay.count()) : 0);
}

bool ScrollView::isMoving() const
{
    return _scroll->isMoving();
}

void ScrollView::layoutSubviews()
{
    _scroll->geometryMayHaveChanged();
}

void ScrollView::contentOffsetDidChange() {}

void ScrollView::didMoveToWindow()
{
    if (!window()) {
        _scroll->endMotion();
        _scroll->settle();
    }
}

void ScrollView::visibilityDidChange()
{
    if (!isVisible()) {
        _scroll->endMotion();
        _scroll->settle();
    }
}

void ScrollView::presentedSizeDidChange(const QSizeF& size)
{
    if (QQuickItem* const item = _scroll->flickable.item()) {
        // Flickable corrects the offset at once; whom that concerns is told by the layout.
        const auto restore =
            qScopeGuard([this, was = std::exchange(_scroll->isBeingMoved, true)] { _scroll->isBeingMoved = was; });
        item->setSize(size);
    }
}

bool ScrollView::childMouseEventFilter(QQuickItem* item, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::TouchBegin) {
        _scroll->animation.stop();
    }
    return View::childMouseEventFilter(item, event);
}

void ScrollView::keyPressEvent(QKeyEvent* event)
{
    const ScrollGeometry geometry = _scroll->geometry();
    const bool isVertical = geometry.scrollsVertically();
    const QPointF from = _scroll->isAnimating() ? _scroll->animationEnd : _scroll->offset();
    const QSizeF seen = bounds().marginsRemoved(_scroll->inset).size().expandedTo({0, 0});
    const QPointF page = isVertical ? QPointF(0, seen.height()) : QPointF(seen.width(), 0);

    std::optional<QPointF> target;
    switch (event->key()) {
    case Qt::Key_PageUp:
        target = from - page * (1 - pageOverlap);
        break;
    case Qt::Key_PageDown:
        target = from + page * (1 - pageOverlap);
        break;
    case Qt::Key_Home:
        target = isVertical ? QPointF(from.x(), geometry.start().y()) : geometry.start();
        break;
    case Qt::Key_End:
        target = isVertical ? QPointF(from.x(), geometry.end().y()) : geometry.end();
        break;
    default:
        break;
    }
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (target && isPlain && (isVertical || geometry.scrollsHorizontally())) {
        event->accept();
        setContentOffset(*target, true);
    } else {
        View::keyPressEvent(event);
    }
}

} // namespace kovalin::platform
