#pragma once

#include "platform/ui/CollectionViewCell.h"
#include "platform/ui/CollectionViewFlowLayout.h"
#include "platform/ui/ScrollView.h"

#include <QtCore/QList>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtCore/QString>

#include <functional>
#include <memory>
#include <vector>

namespace kovalin::platform {

class CollectionView;
class CollectionViewBatch;
struct CollectionViewMapping;

/// What a collection view shows. Main thread only.
class CollectionViewDataSource {
public:
    CollectionViewDataSource() = default;
    virtual ~CollectionViewDataSource();
    Q_DISABLE_COPY_MOVE(CollectionViewDataSource)

    [[nodiscard]] virtual qsizetype collectionViewNumberOfItemsInSection(CollectionView& collectionView) = 0;
    /// A cell that `dequeueReusableCell` gave, showing the item.
    [[nodiscard]] virtual std::shared_ptr<CollectionViewCell>
    collectionViewCellForItemAtIndexPath(CollectionView& collectionView, qsizetype item) = 0;
    /// What assistive tools call the item, which needn't be on screen.
    [[nodiscard]] virtual QString collectionViewAccessibilityLabelForItemAtIndexPath(CollectionView& collectionView,
                                                                                     qsizetype item) = 0;
};

/// Told what happens in a collection view, and asked for sizes. Main thread only.
class CollectionViewDelegate : public ScrollViewDelegate {
public:
    CollectionViewDelegate() = default;
    ~CollectionViewDelegate() override;
    Q_DISABLE_COPY_MOVE(CollectionViewDelegate)

    /// In points, in the view's present bounds.
    [[nodiscard]] virtual QSizeF collectionViewLayoutSizeForItemAtIndexPath(CollectionView& collectionView,
                                                                            qsizetype item) = 0;
    /// An item was tapped, or chosen by the return key or an assistive tool.
    virtual void collectionViewDidSelectItemAtIndexPath(CollectionView& collectionView, qsizetype item) = 0;
};

/// A list of items in a flow layout, which exist as cells only on screen and one line around it. Thread and lifetime as of
/// `View`. An index path is an item's place in the only section, counted from 0.
///
/// Keys: the arrows walk from item to item, with a ring around the present one; return, enter and space select it. Page up, page down,
/// home and end scroll. What isn't used goes on to the superviews.
///
/// Where it scrolls horizontally and its layout is flipped, it begins at the content's right end: what is beyond grows to the left,
/// and it keeps its distance from its beginning when items come and go, or its size changes.
///
/// Assistive tools see a list of all items, on screen or not.
class CollectionView : public ScrollView {
    Q_OBJECT

public:
    /// `layout` must not be null, and belongs to this view alone.
    explicit CollectionView(const std::shared_ptr<CollectionViewFlowLayout>& layout);
    ~CollectionView() override;

    [[nodiscard]] const std::shared_ptr<CollectionViewFlowLayout>& collectionViewLayout() const;
    void setDataSource(const std::weak_ptr<CollectionViewDataSource>& dataSource);
    /// Also of the scroll view.
    void setDelegate(const std::weak_ptr<CollectionViewDelegate>& delegate);

    // Cells

    /// How cells are made that are asked for under the identifier. Replaces what was registered before.
    void registerCell(const QString& reuseIdentifier, std::function<std::shared_ptr<CollectionViewCell>()> newCell);
    /// One that left its item, or a new one; for the data source, when it is asked for the item's cell. Null, with a log line, for an
    /// identifier that nothing is registered under.
    [[nodiscard]] std::shared_ptr<CollectionViewCell> dequeueReusableCell(const QString& reuseIdentifier,
                                                                          qsizetype item);
    /// Null for an item without a cell.
    [[nodiscard]] std::shared_ptr<CollectionViewCell> cellForItemAtIndexPath(qsizetype item) const;
    /// -1 for a view that is no item's cell, as one that is on its way out.
    [[nodiscard]] qsizetype indexPathForCell(const CollectionViewCell& cell) const;
    /// The items that touch the bounds, by the layout and whatever an animation still moves; ascending. Empty before the first layout.
    [[nodiscard]] QList<qsizetype> indexPathsForVisibleItems() const;
    [[nodiscard]] qsizetype numberOfItems() const;
    /// Of the item in the content's coordinates, by the layout; null for none.
    [[nodiscard]] QRectF frameOfItem(qsizetype item) const;

    // Changes

    /// Asks the data source for everything anew, with the next layout.
    void reloadData();

    /// Animates from what was to what the data source will say when `updates` returns. `updates` changes the data and calls the
    /// operations below: places that go count before all changes, places that come after all. Items that neither go nor move
    /// keep their order. In an animation the change is part of it, else it takes a moment of its own.
    ///
    /// A batch that doesn't lead from the former count to the new one, names a place twice or one outside of the list, is reported by a
    /// log line, and the view reloads.
    ///
    /// `completion`, which may be empty, is called once, in a later turn, when everything has arrived.
    void performBatchUpdates(const std::function<void()>& updates, std::function<void()> completion = {});
    /// These may also be called by themselves, as a batch of one.
    void moveItemAtIndexPath(qsizetype from, qsizetype to);
    void insertItemsAtIndexPaths(const QList<qsizetype>& items);
    void deleteItemsAtIndexPaths(const QList<qsizetype>& items);
    /// Asks for the cells of these items anew, in place and without an animation. The ones without a cell, and not in the list, are
    /// passed over.
    void reloadItemsAtIndexPaths(const QList<qsizetype>& items);

    /// Where it rests with its first item on show, by the last layout: (-left inset, -top inset), and at the right end where it begins
    /// there.
    [[nodiscard]] QPointF contentOffsetOfBeginning() const;
    /// Scrolls as little as shows the item whole.
    void scrollToItemAtIndexPath(qsizetype item, bool isAnimated);
    /// As when the item is tapped. Does nothing outside of the list.
    void selectItem(qsizetype item);
    /// The item that the keyboard is at; -1 for none.
    [[nodiscard]] qsizetype focusedItem() const;

    void layoutSubviews() override;

protected:
    void contentOffsetDidChange() override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    friend class CollectionAccessibility;
    friend class CollectionViewCell;
    struct State;

    void cellWasTapped(const CollectionViewCell& cell);

    void layoutNow();
    void loadIfNeeded();
    [[nodiscard]] qsizetype numberOfItemsNow();
    void prepareLayout();
    [[nodiscard]] bool beginsAtRight() const;
    void noteDistanceFromBeginning();
    void keepDistanceFromBeginning(double widening);
    [[nodiscard]] CollectionViewRange rangeOfCells() const;
    void freeCellsOutOfRange();
    void placeMissingCells();
    bool placeCell(qsizetype item, const CollectionViewLayoutAttributes& attributes);

    void inBatch(const std::function<void(CollectionViewBatch&)>& change);
    void animateTo(const CollectionViewMapping& mapping, const std::function<void()>& completion);
    void moveCells(const CollectionViewMapping& mapping, std::vector<std::shared_ptr<CollectionViewCell>>& leaving);
    void insertCells(const CollectionViewMapping& mapping);

    void setUpFocus();
    void placeFocusRing();
    void focusItem(qsizetype item);
    [[nodiscard]] qsizetype firstVisibleItem() const;
    [[nodiscard]] qsizetype itemBesideFocus(int key) const;

    const std::unique_ptr<State> _collection;
};

} // namespace kovalin::platform
