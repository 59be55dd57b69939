#pragma once

#include "platform/ui/ViewTransform.h"

#include <QtCore/QRectF>
#include <QtCore/QSizeF>

#include <functional>
#include <memory>

namespace kovalin::platform {

enum class ScrollDirection {
    Vertical = 0,
    Horizontal = 1,
};

/// How an item of a collection view looks.
struct CollectionViewLayoutAttributes {
    /// In the content's coordinates.
    QRectF frame;
    double alpha = 1;
    ViewTransform transform;

    friend bool operator==(const CollectionViewLayoutAttributes&, const CollectionViewLayoutAttributes&) = default;
};

/// The items [first, end).
struct CollectionViewRange {
    qsizetype first = 0;
    qsizetype end = 0;

    [[nodiscard]] bool contains(qsizetype item) const { return item >= first && item < end; }
    [[nodiscard]] bool isEmpty() const { return first >= end; }

    friend bool operator==(const CollectionViewRange&, const CollectionViewRange&) = default;
};

/// Places the items of a collection view in lines, one after the other: rows from top to bottom where it scrolls vertically, columns from
/// left to right where it scrolls horizontally. A line takes as many items as fit with the least spacing.
///
/// In a full row the spacing grows until the row ends with its last item; the last row keeps the spacing of the one before. A column's
/// items stand in its middle. Items of different breadth in a line stand on its middle. Main thread only.
class CollectionViewFlowLayout {
public:
    CollectionViewFlowLayout();
    virtual ~CollectionViewFlowLayout();
    Q_DISABLE_COPY_MOVE(CollectionViewFlowLayout)

    // Chosen before the layout is given to a view.

    /// Vertical at first.
    [[nodiscard]] ScrollDirection scrollDirection() const;
    void setScrollDirection(ScrollDirection direction);
    /// Points between lines; 10 at first.
    [[nodiscard]] double minimumLineSpacing() const;
    void setMinimumLineSpacing(double spacing);
    /// Points between the items of a line; 10 at first.
    [[nodiscard]] double minimumInteritemSpacing() const;
    void setMinimumInteritemSpacing(double spacing);

    // For subclasses to say otherwise.

    /// What an item that comes starts from; where and as it will be, by default. `item` counts after the change.
    [[nodiscard]] virtual CollectionViewLayoutAttributes
    initialLayoutAttributesForAppearingItemAtIndexPath(qsizetype item) const;
    /// What an item that goes ends at; where and as it was, by default. `item` counts before the change: the last `prepare`.
    [[nodiscard]] virtual CollectionViewLayoutAttributes
    finalLayoutAttributesForDisappearingItemAtIndexPath(qsizetype item) const;
    /// Whether items run from right to left where the user interface does. False by default.
    [[nodiscard]] virtual bool flipsHorizontallyInOppositeLayoutDirection() const;

    // For the collection view.

    /// Places `count` items of these sizes. `available` is the view's size without its insets. A size that isn't finite or is
    /// negative counts as 0.
    void prepare(qsizetype count, const std::function<QSizeF(qsizetype item)>& sizeOfItem, const QSizeF& available,
                 bool isRightToLeft);
    [[nodiscard]] qsizetype numberOfItems() const;
    [[nodiscard]] QSizeF contentSize() const;
    /// Empty attributes for an item outside of the list.
    [[nodiscard]] CollectionViewLayoutAttributes layoutAttributesForItemAtIndexPath(qsizetype item) const;
    /// As it was placed by the preparation before the last one; where both began at the content's right end, as far from that end.
    [[nodiscard]] CollectionViewLayoutAttributes formerLayoutAttributesForItemAtIndexPath(qsizetype item) const;
    /// The items of all lines that `area` touches, and of `extraLines` more at either end.
    [[nodiscard]] CollectionViewRange itemsInRect(const QRectF& area, qsizetype extraLines = 0) const;
    /// The item one line before (-1) or after (1) that lies nearest to this one; the same item if there is none.
    [[nodiscard]] qsizetype itemInNeighbouringLine(qsizetype item, int direction) const;
    [[nodiscard]] bool isFlipped() const;

private:
    struct State;

    const std::unique_ptr<State> _flow;
};

} // namespace kovalin::platform
