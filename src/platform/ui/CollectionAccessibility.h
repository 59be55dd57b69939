#pragma once

#include <QtCore/QString>
#include <QtCore/QtGlobal>
#include <QtGui/QAccessible>

#include <functional>

namespace kovalin::platform {

class CollectionView;

/// Has assistive tools see each collection view as a list of all its items, whether they have cells or not. Called before
/// the first view is seen; repeated calls do nothing. Main thread only.
void installCollectionAccessibility();

/// What a collection view tells assistive tools. Does nothing while none runs. Main thread only.
class CollectionAccessibility final {
public:
    CollectionAccessibility() = delete;

    /// Other items, or another order. The view knows its new count.
    static void itemsDidChange(CollectionView& view);
    /// The keyboard is at another item, while the view has the focus.
    static void focusedItemDidChange(CollectionView& view);

    /// For tests: is told instead of the platform, whether an assistive tool runs or not. Empty at first, and to end it.
    static void setListener(std::function<void(QAccessibleEvent&)> newListener);

    /// As the data source calls the item; empty without one, and for an item that it no longer has.
    [[nodiscard]] static QString labelOfItem(CollectionView& view, qsizetype item);
};

} // namespace kovalin::platform
