#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QRectF>
#include <QtCore/QString>
#include <QtQuick/QQuickItem>

#include <optional>

namespace kovalin::host {

// The items of a window, as a script names and sees them: the library's views and the host's own. What a view is made of besides
// subviews doesn't count. Main thread.

/// Trees of items; one that lies in another is left out of that.
using ItemRoots = QList<QQuickItem*>;

/// What a script means: "ID", "ID:N", "ID=TEXT" or "ID:N=TEXT". A value.
struct ItemTarget {
    /// An accessibility identifier or a class's name without its namespaces.
    QString id;
    /// Of those that are on screen, in reading order, from 0.
    int index = 0;
    /// Its own, or those of what lies in it with a space between.
    std::optional<QString> text = std::nullopt;

    [[nodiscard]] static ItemTarget fromText(const QString& text);
};

/// What of the item is on screen, in the coordinates of its window; empty where nothing is. What lies above it doesn't count.
[[nodiscard]] QRectF visibleArea(const QQuickItem& item);

/// Null for none. Those of an earlier root come first.
[[nodiscard]] QQuickItem* findItem(const ItemRoots& roots, const ItemTarget& target);

/// {"class", "id", "frame": [x, y, width, height], "visible", "alpha", "text"?, "children": […]}; of views the model values.
/// A tile has its "url", and whether it is "loaded"; an icon the "url" of the sticker that it previews, or null.
[[nodiscard]] QJsonObject treeOf(const QQuickItem& root, const ItemRoots& roots);

/// Whether nothing that is shown moves, and all pictures are there or can't be had.
[[nodiscard]] bool isAtRest(const ItemRoots& roots);

} // namespace kovalin::host
