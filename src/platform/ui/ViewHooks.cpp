// The hooks of Qt Quick: what it asks and tells of an item, in its own order, and what of it a view is told.

#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Log.h"
#include "platform/ui/Animator.h"
#include "platform/ui/TreeChange.h"
#include "platform/ui/UiLog.h"
#include "platform/ui/View.h"
#include "platform/ui/ViewNode.h"
#include "platform/ui/ViewState.h"
#include "platform/ui/WindowVisibility.h"

#include <QtQuick/QQuickWindow>

#include <cmath>

namespace kovalin::platform {

namespace {

/// No limit for a size that fits, and still one that text layouts can count with.
constexpr double unlimitedPoints = 1e6;

} // namespace

// Layout

void View::setNeedsLayout()
{
    assertOnMainThread();
    if (_state->isInLayout) {
        KOVALIN_LOG_ERROR(uiLog(), QStringLiteral("A layout of %1 asks for itself again, which is ignored")
                                       .arg(QString::fromLatin1(metaObject()->className())));
        return;
    }
    _state->needsLayout = true;
    polish();
}

void View::setNeedsLayoutOfTree()
{
    setNeedsLayout();
    for (const auto& subview : _state->subviews) {
        subview->setNeedsLayoutOfTree();
    }
}

void View::layoutIfNeeded()
{
    assertOnMainThread();
    const auto self = weak_from_this().lock();
    if (_state->needsLayout) {
        runLayout();
    }
    for (const auto& subview : subviews()) {
        subview->layoutIfNeeded();
    }
}

void View::runLayout()
{
    if (_state->isInLayout) {
        return;
    }
    _state->needsLayout = false;
    _state->hasHadSize = _state->hasHadSize || !_state->frame.isEmpty();
    if (!_state->hasHadSize) {
        return;
    }
    const auto self = weak_from_this().lock();
    _state->isInLayout = true;
    layoutSubviews();
    _state->isInLayout = false;
}

void View::layoutSubviews() {}

QSizeF View::sizeThatFits(const QSizeF& size) const
{
    return _state->frame.size().boundedTo(size);
}

void View::sizeToFit()
{
    const QSizeF size = sizeThatFits({unlimitedPoints, unlimitedPoints});
    setFrame({_state->frame.topLeft(), QSizeF(std::ceil(size.width()), std::ceil(size.height()))});
}

void View::updatePolish()
{
    // A hidden view keeps what it owes until it is shown.
    if (_state->needsLayout && isVisible()) {
        runLayout();
    }
}

// What changes

void View::itemChange(ItemChange change, const ItemChangeData& data)
{
    // The tree is half built in here: only notes are taken, and nothing is told.
    switch (change) {
    case ItemSceneChange:
        if (!data.window) {
            Animator::shared().jumpToTargets(*this);
        }
        TreeChange::note(weak_from_this());
        break;
    case ItemVisibleHasChanged:
        if (!data.boolValue) {
            Animator::shared().jumpToTargets(*this);
        } else if (_state->needsLayout) {
            polish();
        }
        TreeChange::note(weak_from_this());
        break;
    case ItemDevicePixelRatioHasChanged:
        update();
        TreeChange::note(weak_from_this());
        break;
    case ItemParentHasChanged:
        TreeChange::note(weak_from_this());
        break;
    default:
        break;
    }
    QQuickItem::itemChange(change, data);
}

void View::tellTreeChanges()
{
    if (std::exchange(_state->toldWindow, window()) != window()) {
        didMoveToWindow();
    }
    if (std::exchange(_state->toldParent, parentItem()) != parentItem()) {
        didMoveToSuperview();
    }
    if (std::exchange(_state->toldVisible, isVisible()) != isVisible()) {
        visibilityDidChange();
    }
    // A view comes to its first ratio with its first window, and keeps it without one.
    if (window()) {
        const double ratio = devicePixelRatio();
        const double told = std::exchange(_state->toldDevicePixelRatio, ratio);
        if (told != 0 && told != ratio) {
            devicePixelRatioDidChange();
        }
    }
}

void View::didMoveToSuperview() {}

void View::didMoveToWindow() {}

void View::visibilityDidChange() {}

void View::devicePixelRatioDidChange() {}

void View::presentedSizeDidChange(const QSizeF& /*size*/) {}

void View::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    const bool isResized = newGeometry.size() != oldGeometry.size();
    if (isResized) {
        if (_state->presentedTransform) {
            _state->presentedTransform->centerDidMove();
        }
        update();
        presentedSizeDidChange(newGeometry.size());
    }
    if (_state->isPresentingFrame) {
        return;
    }
    // From outside: a host, an anchor, a window.
    Animator::shared().drop(*this, AnimatedProperty::Frame);
    _state->frame = newGeometry;
    if (isResized && !_state->isInLayout) {
        setNeedsLayout();
    }
}

// What is on screen

bool View::canBeSeen() const
{
    return isVisible() && isOnScreen(window());
}

PropertyValue View::presented(AnimatedProperty property) const
{
    switch (property) {
    case AnimatedProperty::Frame:
        return valueOf(QRectF(position(), size()));
    case AnimatedProperty::Alpha:
        return valueOf(opacity());
    case AnimatedProperty::Transform:
        return valueOf(_state->presentedTransform ? _state->presentedTransform->value() : ViewTransform());
    case AnimatedProperty::BackgroundColor:
        return valueOf(_state->presentedBackgroundColor);
    case AnimatedProperty::Dissolve:
        return valueOf(_state->presentedDissolve);
    }
    return {};
}

void View::present(AnimatedProperty property, const PropertyValue& value)
{
    switch (property) {
    case AnimatedProperty::Frame:
        presentFrame(frameOf(value));
        break;
    case AnimatedProperty::Alpha:
        setOpacity(std::clamp(value[0], 0.0, 1.0));
        break;
    case AnimatedProperty::Transform:
        presentTransform(transformOf(value));
        break;
    case AnimatedProperty::BackgroundColor:
        presentBackgroundColor(colorOf(value));
        break;
    case AnimatedProperty::Dissolve:
        _state->presentedDissolve = std::clamp(value[0], 0.0, 1.0);
        presentDissolve(_state->presentedDissolve);
        break;
    }
}

void View::presentFrame(const QRectF& frame)
{
    const bool before = std::exchange(_state->isPresentingFrame, true);
    setPosition(frame.topLeft());
    setSize(frame.size());
    _state->isPresentingFrame = before;
}

void View::presentTransform(const ViewTransform& transform)
{
    if (!_state->presentedTransform) {
        _state->presentedTransform = new PresentedTransform(this);
    }
    _state->presentedTransform->setValue(transform);
}

void View::presentBackgroundColor(const QColor& color)
{
    _state->presentedBackgroundColor = color;
    updateHasContents();
    update();
}

// Drawing

QSGNode* View::updateContentNode(QSGNode* old)
{
    return old;
}

void View::setDrawsContent(bool draws)
{
    _state->drawsContent = draws;
    updateHasContents();
    update();
}

bool View::keepContentForDissolve()
{
    return false;
}

void View::presentDissolve(double /*progress*/) {}

void View::updateHasContents()
{
    // Never taken back: Qt Quick would go on drawing what there was.
    const auto& style = _state->layerStyle;
    if (_state->drawsContent || _state->presentedBackgroundColor.alpha() > 0 ||
        (style.borderWidth > 0 && style.borderColor.isValid() && style.borderColor.alpha() > 0) ||
        (style.shadow.color.isValid() && style.shadow.color.alpha() > 0)) {
        setFlag(ItemHasContents);
    }
}

QSGNode* View::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/)
{
    auto* const node = old ? static_cast<ViewNode*>(old) : new ViewNode;
    node->update(*window(), size(), _state->presentedBackgroundColor, _state->layerStyle);
    if (_state->drawsContent) {
        node->setContent(updateContentNode(node->content()));
    }
    return node;
}

} // namespace kovalin::platform
