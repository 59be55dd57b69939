#include "platform/ui/CollectionInterface.h"

#include "platform/ui/CollectionAccessibility.h"
#include "platform/ui/QuickComponents.h"

#include <QtQuick/QQuickWindow>

#include <algorithm>
#include <limits>
#include <memory>

namespace kovalin::platform {

namespace {

/// Of a rectangle in the view's coordinates.
QRect onScreen(const CollectionView& view, const QRectF& area)
{
    if (!view.window()) {
        return {};
    }
    return view.mapRectToScene(area).translated(view.window()->mapToGlobal(QPointF())).toRect();
}

/// Of an item's frame, in the view's coordinates.
QRectF inView(const CollectionView& view, qsizetype item)
{
    return view.frameOfItem(item).translated(-view.contentOffset());
}

QAccessible::State stateOf(const CollectionView& view)
{
    QAccessible::State state;
    state.focusable = view.activeFocusOnTab();
    state.disabled = !view.isEnabled();
    state.invisible = !view.isVisible() || !view.window();
    return state;
}

} // namespace

// The list

CollectionInterface::CollectionInterface(CollectionView& view)
    : _view(view)
{
}

CollectionInterface::~CollectionInterface()
{
    for (const QAccessible::Id id : std::as_const(_children)) {
        QAccessible::deleteAccessibleInterface(id);
    }
}

QList<QAccessibleInterface*> CollectionInterface::childrenWithOutdatedNames() const
{
    QList<QAccessibleInterface*> outdated;
    for (const QAccessible::Id id : std::as_const(_children)) {
        auto* const item = dynamic_cast<CollectionItemInterface*>(QAccessible::accessibleInterface(id));
        if (item && item->isValid() && item->hasOutdatedName()) {
            outdated.append(item);
        }
    }
    return outdated;
}

bool CollectionInterface::isValid() const
{
    return view() != nullptr;
}

QObject* CollectionInterface::object() const
{
    return view();
}

QWindow* CollectionInterface::window() const
{
    return view() ? view()->window() : nullptr;
}

QAccessibleInterface* CollectionInterface::focusChild() const
{
    return view() && view()->hasActiveFocus() ? child(static_cast<int>(view()->focusedItem())) : nullptr;
}

QAccessibleInterface* CollectionInterface::childAt(int x, int y) const
{
    if (!view() || !view()->window()) {
        return nullptr;
    }
    const QPointF point = view()->mapFromScene(view()->window()->mapFromGlobal(QPointF(x, y)));
    if (!view()->contains(point)) {
        return nullptr;
    }
    const QPointF inContent = point + view()->contentOffset();
    const auto range = view()->collectionViewLayout()->itemsInRect({inContent, QSizeF(1, 1)});
    for (qsizetype item = range.first; item < range.end; ++item) {
        if (view()->frameOfItem(item).contains(inContent)) {
            return child(static_cast<int>(item));
        }
    }
    return nullptr;
}

QAccessibleInterface* CollectionInterface::parent() const
{
    if (!view()) {
        return nullptr;
    }
    for (QQuickItem* item = view()->parentItem(); item; item = item->parentItem()) {
        if (QAccessibleInterface* const found = QAccessible::queryAccessibleInterface(item)) {
            return found;
        }
    }
    return view()->window() ? QAccessible::queryAccessibleInterface(view()->window()) : nullptr;
}

QAccessibleInterface* CollectionInterface::child(int index) const
{
    if (index < 0 || index >= childCount()) {
        return nullptr;
    }
    auto known = _children.constFind(index);
    if (known == _children.cend()) {
        auto item = std::make_unique<CollectionItemInterface>(*view(), index);
        known = _children.insert(index, QAccessible::registerAccessibleInterface(item.release()));
    }
    return QAccessible::accessibleInterface(*known);
}

int CollectionInterface::childCount() const
{
    constexpr qsizetype most = std::numeric_limits<int>::max();
    return view() ? static_cast<int>(std::min(view()->numberOfItems(), most)) : 0;
}

int CollectionInterface::indexOfChild(const QAccessibleInterface* child) const
{
    const auto* const item = dynamic_cast<const CollectionItemInterface*>(child);
    return item && item->isValid() && item->isOf(view()) ? item->item() : -1;
}

QString CollectionInterface::text(QAccessible::Text kind) const
{
    return view() && kind == QAccessible::Name ? QuickComponents::shared().accessibleName(*view()) : QString();
}

void CollectionInterface::setText(QAccessible::Text /*kind*/, const QString& /*text*/) {}

QRect CollectionInterface::rect() const
{
    return view() ? onScreen(*view(), view()->boundingRect()) : QRect();
}

QAccessible::Role CollectionInterface::role() const
{
    return QAccessible::List;
}

QAccessible::State CollectionInterface::state() const
{
    QAccessible::State state;
    if (view()) {
        state = stateOf(*view());
        state.focused = view()->hasActiveFocus();
    } else {
        state.invalid = true;
    }
    return state;
}

// An item

CollectionItemInterface::CollectionItemInterface(CollectionView& view, int item)
    : _view(view)
    , _item(item)
{
}

bool CollectionItemInterface::hasOutdatedName() const
{
    return !_toldName.isEmpty() && view() && CollectionAccessibility::labelOfItem(*view(), _item) != _toldName;
}

bool CollectionItemInterface::isValid() const
{
    return view() && _item < view()->numberOfItems();
}

QObject* CollectionItemInterface::object() const
{
    return nullptr;
}

QWindow* CollectionItemInterface::window() const
{
    return view() ? view()->window() : nullptr;
}

QAccessibleInterface* CollectionItemInterface::childAt(int /*x*/, int /*y*/) const
{
    return nullptr;
}

QAccessibleInterface* CollectionItemInterface::parent() const
{
    return view() ? QAccessible::queryAccessibleInterface(view()) : nullptr;
}

QAccessibleInterface* CollectionItemInterface::child(int /*index*/) const
{
    return nullptr;
}

int CollectionItemInterface::childCount() const
{
    return 0;
}

int CollectionItemInterface::indexOfChild(const QAccessibleInterface* /*child*/) const
{
    return -1;
}

QString CollectionItemInterface::text(QAccessible::Text kind) const
{
    if (kind != QAccessible::Name || !isValid()) {
        return {};
    }
    _toldName = CollectionAccessibility::labelOfItem(*view(), _item);
    return _toldName;
}

void CollectionItemInterface::setText(QAccessible::Text /*kind*/, const QString& /*text*/) {}

QRect CollectionItemInterface::rect() const
{
    return isValid() ? onScreen(*view(), inView(*view(), _item)) : QRect();
}

QAccessible::Role CollectionItemInterface::role() const
{
    return QAccessible::ListItem;
}

QAccessible::State CollectionItemInterface::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        state.invisible = true;
        return state;
    }
    state = stateOf(*view());
    state.selectable = true;
    state.focused = view()->hasActiveFocus() && view()->focusedItem() == _item;
    state.offscreen = !inView(*view(), _item).intersects(view()->boundingRect());
    return state;
}

void* CollectionItemInterface::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList CollectionItemInterface::actionNames() const
{
    return isValid() && view()->isEnabled() ? QStringList{pressAction()} : QStringList();
}

void CollectionItemInterface::doAction(const QString& actionName)
{
    if (!isValid() || !view()->isEnabled() || actionName != pressAction()) {
        return;
    }
    // As a finger would: what is off screen comes there first, and has a cell then. Whoever is told of it may let the view go.
    const auto held = std::static_pointer_cast<CollectionView>(view()->weak_from_this().lock());
    if (!held) {
        return; // its last reference has gone, and it goes in a later turn
    }
    held->scrollToItemAtIndexPath(_item, false);
    held->layoutIfNeeded();
    held->selectItem(_item);
}

QStringList CollectionItemInterface::keyBindingsForAction(const QString& /*actionName*/) const
{
    return {};
}

} // namespace kovalin::platform
