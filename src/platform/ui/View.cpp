#include "platform/ui/View.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Color.h"
#include "platform/foundation/Log.h"
#include "platform/ui/Animator.h"
#include "platform/ui/QuickComponents.h"
#include "platform/ui/TreeChange.h"
#include "platform/ui/UiLog.h"
#include "platform/ui/ViewState.h"

#include <QtQuick/QQuickWindow>

#include <algorithm>
#include <cmath>

namespace kovalin::platform {

namespace {

double finite(double number)
{
    return std::isfinite(number) ? number : 0;
}

QRectF sound(const QRectF& frame)
{
    return {finite(frame.x()), finite(frame.y()), std::max(finite(frame.width()), 0.0),
            std::max(finite(frame.height()), 0.0)};
}

} // namespace

void ViewDeleter::operator()(View* view) const
{
    if (isMainThread()) {
        Animator::shared().forget(*view);
        view->setParentItem(nullptr);
    }
    view->deleteLater();
}

View::View()
    : _state(std::make_unique<State>())
{
    assertOnMainThread();
}

View::~View()
{
    Animator::shared().forget(*this);
    // Subviews that somebody else holds live on without a superview; the others go here.
    for (const auto& subview : std::exchange(_state->subviews, {})) {
        subview->_state->superview = nullptr;
        subview->setParentItem(nullptr);
    }
}

// The tree

void View::addSubview(const std::shared_ptr<View>& view)
{
    insertSubview(view, _state->subviews.size() + 1);
}

void View::insertSubview(const std::shared_ptr<View>& view, qsizetype index)
{
    assertOnMainThread();
    if (!view || view.get() == this || view->isAncestorOf(this)) {
        KOVALIN_LOG_ERROR(uiLog(), QStringLiteral("A view can't be a subview of itself, nor can null be one"));
        return;
    }
    const std::shared_ptr<View> held = view; // `view` may be a reference into the list that it leaves
    const TreeChange change;
    held->leaveSuperview();

    const auto place = std::clamp<qsizetype>(index, 0, _state->subviews.size());
    _state->subviews.insert(place, held);
    held->_state->superview = this;
    held->setParentItem(this);
    // Also where it was a child already, or where items of this view's own lie among the subviews.
    if (place + 1 < _state->subviews.size()) {
        held->stackBefore(_state->subviews.at(place + 1).get());
    } else if (place > 0) {
        held->stackAfter(_state->subviews.at(place - 1).get());
    }
    if (!_state->isInLayout) {
        setNeedsLayout();
    }
}

void View::removeFromSuperview()
{
    assertOnMainThread();
    const auto self = weak_from_this().lock();
    const TreeChange change;
    leaveSuperview();
    setParentItem(nullptr);
}

void View::leaveSuperview()
{
    if (View* const superview = std::exchange(_state->superview, nullptr)) {
        superview->_state->subviews.removeIf([this](const auto& subview) { return subview.get() == this; });
        if (!superview->_state->isInLayout) {
            superview->setNeedsLayout();
        }
    }
}

QList<std::shared_ptr<View>> View::subviews() const
{
    assertOnMainThread();
    return _state->subviews;
}

std::shared_ptr<View> View::superview() const
{
    assertOnMainThread();
    return _state->superview ? _state->superview->weak_from_this().lock() : nullptr;
}

// Model values

QRectF View::frame() const
{
    return _state->frame;
}

void View::setFrame(const QRectF& frame)
{
    assertOnMainThread();
    const QRectF target = sound(frame);
    if (target == _state->frame) {
        return;
    }
    const bool isResized = target.size() != _state->frame.size();
    _state->frame = target;
    Animator::shared().change(*this, AnimatedProperty::Frame, valueOf(target));
    if (isResized) {
        setNeedsLayout();
    }
}

QRectF View::bounds() const
{
    return {QPointF(), _state->frame.size()};
}

QPointF View::center() const
{
    return _state->frame.center();
}

void View::setCenter(const QPointF& center)
{
    QRectF moved = _state->frame;
    moved.moveCenter(center);
    setFrame(moved);
}

double View::alpha() const
{
    return _state->alpha;
}

void View::setAlpha(double alpha)
{
    assertOnMainThread();
    const double target = std::clamp(finite(alpha), 0.0, 1.0);
    if (target != _state->alpha) {
        _state->alpha = target;
        Animator::shared().change(*this, AnimatedProperty::Alpha, valueOf(target));
    }
}

ViewTransform View::transform() const
{
    return _state->transform;
}

void View::setTransform(const ViewTransform& transform)
{
    assertOnMainThread();
    if (transform != _state->transform) {
        _state->transform = transform;
        Animator::shared().change(*this, AnimatedProperty::Transform, valueOf(transform));
    }
}

QColor View::backgroundColor() const
{
    return _state->backgroundColor;
}

void View::setBackgroundColor(const QColor& color)
{
    assertOnMainThread();
    if (!colorsEqual(color, _state->backgroundColor)) {
        _state->backgroundColor = color;
        Animator::shared().change(*this, AnimatedProperty::BackgroundColor, valueOf(color));
    }
}

// What doesn't animate

bool View::isHidden() const
{
    return _state->isHidden;
}

void View::setHidden(bool hidden)
{
    assertOnMainThread();
    if (hidden != _state->isHidden) {
        const TreeChange change;
        _state->isHidden = hidden;
        setVisible(!hidden);
    }
}

LayerStyle View::layerStyle() const
{
    return _state->layerStyle;
}

void View::setLayerStyle(const LayerStyle& style)
{
    assertOnMainThread();
    if (style != _state->layerStyle) {
        _state->layerStyle = style;
        updateHasContents();
        update();
    }
}

void View::setCornerRadius(double points)
{
    LayerStyle style = _state->layerStyle;
    style.cornerRadius = points;
    setLayerStyle(style);
}

void View::setBorder(double width, const QColor& color)
{
    LayerStyle style = _state->layerStyle;
    style.borderWidth = width;
    style.borderColor = color;
    setLayerStyle(style);
}

void View::setShadow(const LayerShadow& shadow)
{
    LayerStyle style = _state->layerStyle;
    style.shadow = shadow;
    setLayerStyle(style);
}

void View::setZPosition(double z)
{
    assertOnMainThread();
    setZ(z);
}

void View::setClipsToBounds(bool clips)
{
    assertOnMainThread();
    setClip(clips);
}

// Surroundings

QMarginsF View::safeAreaInsets() const
{
    // Of this view's rectangle, seen from the view that the host told of, what reaches into that view's insets.
    QRectF area = bounds();
    for (const View* view = this; view; view = view->_state->superview) {
        if (const auto& insets = view->_state->safeAreaInsets) {
            const QRectF safe = view->bounds().marginsRemoved(*insets);
            return {std::max(safe.left() - area.left(), 0.0), std::max(safe.top() - area.top(), 0.0),
                    std::max(area.right() - safe.right(), 0.0), std::max(area.bottom() - safe.bottom(), 0.0)};
        }
        area.translate(view->_state->frame.topLeft());
    }
    return {};
}

void View::setSafeAreaInsets(const QMarginsF& insets)
{
    assertOnMainThread();
    if (_state->safeAreaInsets != insets) {
        _state->safeAreaInsets = insets;
        setNeedsLayoutOfTree();
    }
}

double View::devicePixelRatio() const
{
    return window() ? window()->effectiveDevicePixelRatio() : 1;
}

// Accessibility

void View::setAccessibilityIdentifier(const QString& identifier)
{
    assertOnMainThread();
    setObjectName(identifier);
}

void View::setAccessibilityRole(QAccessible::Role role)
{
    QuickComponents::shared().setAccessibleRole(*this, role);
}

void View::setAccessibilityLabel(const QString& label)
{
    QuickComponents::shared().setAccessibleName(*this, label);
}

} // namespace kovalin::platform
