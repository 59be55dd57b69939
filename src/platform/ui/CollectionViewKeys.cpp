// A collection view's keyboard: the present item, its ring, and what keys do.

#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/Animation.h"
#include "platform/ui/CollectionAccessibility.h"
#include "platform/ui/CollectionViewState.h"
#include "platform/ui/Keys.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>

namespace kovalin::platform {

namespace {

constexpr double focusRingWidth = 2;
constexpr double focusRingRadius = 8;
/// Above the cells.
constexpr double zOfFocusRing = 1;

} // namespace

void CollectionView::setUpFocus()
{
    auto& ring = *_collection->focusRing;
    ring.setBorder(focusRingWidth, QGuiApplication::palette().color(QPalette::Highlight));
    ring.setCornerRadius(focusRingRadius);
    ring.setZPosition(zOfFocusRing);
    ring.setHidden(true);
    contentView()->addSubview(_collection->focusRing);
    setActiveFocusOnTab(true);
}

qsizetype CollectionView::focusedItem() const
{
    assertOnMainThread();
    return _collection->focusedItem;
}

void CollectionView::placeFocusRing()
{
    State& state = *_collection;
    const bool isShown = state.isFocusShown && hasActiveFocus() && state.focusedItem >= 0;
    if (isShown) {
        withoutAnimation([&] { state.focusRing->setFrame(frameOfItem(state.focusedItem)); });
    }
    state.focusRing->setHidden(!isShown);
}

void CollectionView::focusItem(qsizetype item)
{
    State& state = *_collection;
    state.focusedItem = item;
    state.isFocusShown = true;
    scrollToItemAtIndexPath(item, false);
    placeFocusRing();
    CollectionAccessibility::focusedItemDidChange(*this);
}

qsizetype CollectionView::firstVisibleItem() const
{
    const auto visible = indexPathsForVisibleItems();
    return visible.isEmpty() ? -1 : visible.first();
}

qsizetype CollectionView::itemBesideFocus(int key) const
{
    const State& state = *_collection;
    const qsizetype item = state.focusedItem;
    const bool isHorizontal = state.layout->scrollDirection() == ScrollDirection::Horizontal;
    const bool isAcross = key == Qt::Key_Left || key == Qt::Key_Right;
    const bool isForwards = (key == Qt::Key_Right) != (isAcross && state.layout->isFlipped()) || key == Qt::Key_Down;
    const int step = isForwards ? 1 : -1;
    if (isAcross == isHorizontal) {
        return state.layout->itemInNeighbouringLine(item, step);
    }
    const qsizetype neighbour = item + step;
    if (neighbour < 0 || neighbour >= state.count) {
        return item;
    }
    // Up and down stay in the column; left and right go on in the next row.
    const QRectF here = frameOfItem(item);
    const QRectF there = frameOfItem(neighbour);
    const bool isInLine = there.left() < here.right() && here.left() < there.right();
    return isHorizontal && !isInLine ? item : neighbour;
}

void CollectionView::keyPressEvent(QKeyEvent* event)
{
    State& state = *_collection;
    const int key = event->key();
    const bool isPlain = (event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) == Qt::NoModifier;
    if (isPlain && isArrowKey(key)) {
        layoutNow();
        const qsizetype item = state.focusedItem < 0 ? firstVisibleItem() : itemBesideFocus(key);
        if (item >= 0 && (item != state.focusedItem || !state.isFocusShown)) {
            focusItem(item);
            event->accept();
            return;
        }
    } else if (isPlain && isPressKey(key) && state.isFocusShown && state.focusedItem >= 0) {
        event->accept();
        if (!event->isAutoRepeat()) {
            selectItem(state.focusedItem);
        }
        return;
    }
    ScrollView::keyPressEvent(event);
}

void CollectionView::focusInEvent(QFocusEvent* event)
{
    ScrollView::focusInEvent(event);
    _collection->isFocusShown = isKeyboardReason(event->reason());
    if (_collection->isFocusShown) {
        layoutNow();
        const qsizetype item = _collection->focusedItem < 0 ? firstVisibleItem() : _collection->focusedItem;
        if (item >= 0) {
            focusItem(item);
        }
    }
}

void CollectionView::focusOutEvent(QFocusEvent* event)
{
    ScrollView::focusOutEvent(event);
    placeFocusRing();
}

} // namespace kovalin::platform
