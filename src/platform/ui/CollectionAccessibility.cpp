#include "platform/ui/CollectionAccessibility.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/CollectionInterface.h"
#include "platform/ui/CollectionViewState.h"

#include <utility>

namespace kovalin::platform {

namespace {

QAccessibleInterface* makeInterface(const QString& className, QObject* object)
{
    if (className == QLatin1String(CollectionView::staticMetaObject.className())) {
        if (auto* const view = qobject_cast<CollectionView*>(object)) {
            return new CollectionInterface(*view);
        }
    }
    return nullptr;
}

std::function<void(QAccessibleEvent&)>& listener()
{
    static std::function<void(QAccessibleEvent&)> one;
    return one;
}

void tell(QAccessibleEvent&& event)
{
    listener() ? listener()(event) : QAccessible::updateAccessibility(&event);
}

/// Null if nobody listens.
CollectionInterface* interfaceOf(CollectionView& view)
{
    const bool isHeard = QAccessible::isActive() || listener();
    return isHeard ? dynamic_cast<CollectionInterface*>(QAccessible::queryAccessibleInterface(&view)) : nullptr;
}

} // namespace

void installCollectionAccessibility()
{
    assertOnMainThread();
    [[maybe_unused]] static const bool isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
}

void CollectionAccessibility::itemsDidChange(CollectionView& view)
{
    assertOnMainThread();
    if (auto* const list = interfaceOf(view)) {
        tell(QAccessibleEvent(list, QAccessible::ObjectReorder));
        for (QAccessibleInterface* const item : list->childrenWithOutdatedNames()) {
            tell(QAccessibleEvent(item, QAccessible::NameChanged));
        }
    }
}

void CollectionAccessibility::focusedItemDidChange(CollectionView& view)
{
    assertOnMainThread();
    auto* const list = interfaceOf(view);
    if (QAccessibleInterface* const item = list ? list->focusChild() : nullptr) {
        tell(QAccessibleEvent(item, QAccessible::Focus));
    }
}

void CollectionAccessibility::setListener(std::function<void(QAccessibleEvent&)> newListener)
{
    assertOnMainThread();
    listener() = std::move(newListener);
}

QString CollectionAccessibility::labelOfItem(CollectionView& view, qsizetype item)
{
    // The data may have changed since the view counted it.
    const auto dataSource = view._collection->dataSource.lock();
    if (!dataSource || item < 0 || item >= dataSource->collectionViewNumberOfItemsInSection(view)) {
        return {};
    }
    return dataSource->collectionViewAccessibilityLabelForItemAtIndexPath(view, item);
}

} // namespace kovalin::platform
