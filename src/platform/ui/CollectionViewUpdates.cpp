// Changes of a collection view's list, animated.

#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Log.h"
#include "platform/ui/Animation.h"
#include "platform/ui/CollectionAccessibility.h"
#include "platform/ui/CollectionViewState.h"
#include "platform/ui/UiLog.h"

#include <QtCore/QScopeGuard>

#include <algorithm>
#include <utility>

namespace kovalin::platform {

namespace {

/// Of a change that is made outside of any animation.
constexpr AnimationSeconds changeDuration(0.3);

void show(CollectionViewCell& cell, const CollectionViewLayoutAttributes& attributes)
{
    cell.setFrame(attributes.frame);
    cell.setAlpha(attributes.alpha);
    cell.setTransform(attributes.transform);
}

} // namespace

void CollectionView::performBatchUpdates(const std::function<void()>& updates, std::function<void()> completion)
{
    assertOnMainThread();
    const auto self = weak_from_this().lock();
    State& state = *_collection;
    if (completion) {
        state.batchCompletions.push_back(std::move(completion));
    }
    if (state.batch) {
        updates(); // a part of the batch around it
        return;
    }
    layoutNow();
    loadIfNeeded();
    const qsizetype formerCount = state.count;
    state.batch.emplace();
    updates();
    const CollectionViewBatch batch = *std::exchange(state.batch, std::nullopt);
    const auto complete = [completions = std::exchange(state.batchCompletions, {})] {
        for (const auto& each : completions) {
            each();
        }
    };

    CollectionViewMapping mapping;
    QString fault;
    const qsizetype newCount = numberOfItemsNow();
    if (!batch.map(formerCount, newCount, mapping, fault)) {
        KOVALIN_LOG_ERROR(uiLog(),
                          QStringLiteral("A batch of changes of a list %1; all of it is loaded anew").arg(fault));
        reloadData();
        layoutNow();
        dispatchMain(complete);
        return;
    }
    state.count = newCount;
    state.preparedFor.reset();
    animateTo(mapping, complete);
    CollectionAccessibility::itemsDidChange(*this);

    QList<qsizetype> reloaded;
    for (const qsizetype item : batch.reloadedItems()) {
        if (item >= 0 && item < formerCount) {
            reloaded.append(mapping.newItems[static_cast<size_t>(item)]);
        }
    }
    reloadItemsAtIndexPaths(reloaded);
}

void CollectionView::animateTo(const CollectionViewMapping& mapping, const std::function<void()>& completion)
{
    State& state = *_collection;
    const auto restore =
        qScopeGuard([&state, were = std::exchange(state.isPlacingCells, true)] { state.isPlacingCells = were; });
    withoutAnimation([this] { prepareLayout(); });
    if (state.focusedItem >= 0) {
        const qsizetype moved = mapping.newItems[static_cast<size_t>(state.focusedItem)];
        state.focusedItem = moved >= 0 ? moved : std::min(state.focusedItem, state.count - 1);
    }
    // Those that leave are known once the changes are made, and go when these have arrived.
    const auto leaving = std::make_shared<std::vector<CollectionViewCells::Cell>>();
    animateAlong(
        changeDuration,
        [&] {
            moveCells(mapping, *leaving);
            insertCells(mapping);
        },
        [weakSelf = weak_from_this(), leaving, completion] {
            if (const auto self = std::static_pointer_cast<CollectionView>(weakSelf.lock())) {
                for (const auto& cell : *leaving) {
                    self->_collection->cells.endToLeave(cell);
                }
            }
            completion();
        });
    state.cells.forgetFormerItems();
    placeFocusRing();
}

void CollectionView::moveCells(const CollectionViewMapping& mapping,
                               std::vector<std::shared_ptr<CollectionViewCell>>& leaving)
{
    auto& cells = _collection->cells;
    const auto& layout = *_collection->layout;
    const auto range = rangeOfCells();
    const QRectF visible(contentOffset(), bounds().size());
    CollectionViewCells::ByItem staying;
    for (const auto& [former, cell] : CollectionViewCells::ByItem(cells.byItem())) {
        const qsizetype item = mapping.newItems[static_cast<size_t>(former)];
        const QRectF formerFrame = layout.formerLayoutAttributesForItemAtIndexPath(former).frame;
        if (item >= 0 && range.contains(item)) {
            staying.emplace(item, cell);
            cell->setFrame(frameOfItem(item));
        } else if (!formerFrame.intersects(visible) && (item < 0 || !frameOfItem(item).intersects(visible))) {
            cells.free(former);
        } else {
            cells.beginToLeave(cell);
            leaving.push_back(cell);
            show(*cell, item < 0 ? layout.finalLayoutAttributesForDisappearingItemAtIndexPath(former)
                                 : layout.layoutAttributesForItemAtIndexPath(item));
        }
    }
    cells.replaceAll(std::move(staying));
}

void CollectionView::insertCells(const CollectionViewMapping& mapping)
{
    const auto& layout = *_collection->layout;
    const QRectF visible(contentOffset(), bounds().size());
    const auto insert = [&](qsizetype item) {
        const qsizetype former = mapping.formerItems[static_cast<size_t>(item)];
        const auto target = layout.layoutAttributesForItemAtIndexPath(item);
        const auto start = former < 0 ? layout.initialLayoutAttributesForAppearingItemAtIndexPath(item)
                                      : layout.formerLayoutAttributesForItemAtIndexPath(former);
        const bool isSeen = start.frame.intersects(visible) || target.frame.intersects(visible);
        bool isPlaced = false;
        withoutAnimation([&] { isPlaced = placeCell(item, isSeen ? start : target); });
        if (isPlaced && isSeen) {
            show(*_collection->cells.cellOfItem(item), target);
        }
    };
    for (const qsizetype item : indexPathsForVisibleItems()) {
        insert(item);
    }
    const auto range = rangeOfCells();
    for (qsizetype item = range.first; item < range.end; ++item) {
        insert(item);
    }
}

void CollectionView::moveItemAtIndexPath(qsizetype from, qsizetype to)
{
    inBatch([&](CollectionViewBatch& batch) { batch.move(from, to); });
}

void CollectionView::insertItemsAtIndexPaths(const QList<qsizetype>& items)
{
    inBatch([&](CollectionViewBatch& batch) { batch.insert(items); });
}

void CollectionView::deleteItemsAtIndexPaths(const QList<qsizetype>& items)
{
    inBatch([&](CollectionViewBatch& batch) { batch.remove(items); });
}

void CollectionView::inBatch(const std::function<void(CollectionViewBatch&)>& change)
{
    if (_collection->batch) {
        change(*_collection->batch);
        return;
    }
    performBatchUpdates([&] { change(*_collection->batch); });
}

void CollectionView::reloadItemsAtIndexPaths(const QList<qsizetype>& items)
{
    assertOnMainThread();
    State& state = *_collection;
    if (state.batch) {
        state.batch->reload(items);
        return;
    }
    if (state.needsReload || state.isPlacingCells) {
        return; // what is asked for anew is asked for anyway
    }
    const auto self = weak_from_this().lock();
    const auto restore = qScopeGuard([&state] { state.isPlacingCells = false; });
    state.isPlacingCells = true;
    withoutAnimation([&] {
        for (const qsizetype item : items) {
            if (state.cells.cellOfItem(item)) {
                state.cells.free(item);
                placeCell(item, state.layout->layoutAttributesForItemAtIndexPath(item));
            }
        }
    });
    state.cells.forgetFormerItems();
}

} // namespace kovalin::platform
