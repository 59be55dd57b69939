#include "platform/ui/CollectionView.h"

#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Log.h"
#include "platform/ui/Animation.h"
#include "platform/ui/CollectionAccessibility.h"
#include "platform/ui/CollectionViewState.h"
#include "platform/ui/UiLog.h"

#include <QtCore/QScopeGuard>
#include <QtGui/QGuiApplication>

#include <algorithm>
#include <utility>

namespace kovalin::platform {

namespace {

/// Cells exist this many lines beyond either edge, so that one that scrolls in is ready.
constexpr qsizetype linesAround = 1;

} // namespace

CollectionViewDataSource::~CollectionViewDataSource() = default;

CollectionViewDelegate::~CollectionViewDelegate() = default;

CollectionView::CollectionView(const std::shared_ptr<CollectionViewFlowLayout>& layout)
    : _collection(std::make_unique<State>(layout))
{
    setUpFocus();
    installCollectionAccessibility();
    setAccessibilityRole(QAccessible::List);
    connect(qGuiApp, &QGuiApplication::layoutDirectionChanged, this, [this] { setNeedsLayout(); });
}

CollectionView::~CollectionView() = default;

const std::shared_ptr<CollectionViewFlowLayout>& CollectionView::collectionViewLayout() const
{
    return _collection->layout;
}

void CollectionView::setDataSource(const std::weak_ptr<CollectionViewDataSource>& dataSource)
{
    assertOnMainThread();
    _collection->dataSource = dataSource;
    reloadData();
}

void CollectionView::setDelegate(const std::weak_ptr<CollectionViewDelegate>& delegate)
{
    _collection->delegate = delegate;
    setScrollDelegate(delegate);
    reloadData();
}

// Cells

void CollectionView::registerCell(const QString& reuseIdentifier,
                                  std::function<std::shared_ptr<CollectionViewCell>()> newCell)
{
    assertOnMainThread();
    _collection->cells.registerCell(reuseIdentifier, std::move(newCell));
}

std::shared_ptr<CollectionViewCell> CollectionView::dequeueReusableCell(const QString& reuseIdentifier, qsizetype item)
{
    assertOnMainThread();
    const auto self = std::static_pointer_cast<CollectionView>(shared_from_this());
    auto cell = _collection->cells.take(reuseIdentifier, item, self);
    if (!cell) {
        KOVALIN_LOG_ERROR(uiLog(), QStringLiteral("No cell is registered under \"%1\"").arg(reuseIdentifier));
    }
    return cell;
}

std::shared_ptr<CollectionViewCell> CollectionView::cellForItemAtIndexPath(qsizetype item) const
{
    assertOnMainThread();
    return _collection->cells.cellOfItem(item);
}

qsizetype CollectionView::indexPathForCell(const CollectionViewCell& cell) const
{
    assertOnMainThread();
    return _collection->cells.itemOfCell(cell);
}

QList<qsizetype> CollectionView::indexPathsForVisibleItems() const
{
    assertOnMainThread();
    QList<qsizetype> items;
    const auto range = _collection->layout->itemsInRect({contentOffset(), bounds().size()});
    for (qsizetype item = range.first; item < range.end; ++item) {
        items.append(item);
    }
    return items;
}

qsizetype CollectionView::numberOfItems() const
{
    assertOnMainThread();
    return _collection->count;
}

QRectF CollectionView::frameOfItem(qsizetype item) const
{
    assertOnMainThread();
    return _collection->layout->layoutAttributesForItemAtIndexPath(item).frame;
}

// Layout

void CollectionView::reloadData()
{
    assertOnMainThread();
    _collection->needsReload = true;
    if (!_collection->isPlacingCells) {
        setNeedsLayout();
    }
}

void CollectionView::layoutSubviews()
{
    const auto self = weak_from_this().lock();
    State& state = *_collection;
    // What the scroll view corrects is placed by this pass.
    const bool wasPlacingCells = std::exchange(state.isPlacingCells, true);
    ScrollView::layoutSubviews();
    state.isPlacingCells = wasPlacingCells;
    if (wasPlacingCells) {
        return;
    }
    const bool reloads = state.needsReload;
    // In an animation a layout animates what stays, and nothing else.
    {
        const auto restore =
            qScopeGuard([&, were = std::exchange(state.isPlacingCells, true)] { state.isPlacingCells = were; });
        loadIfNeeded();
        prepareLayout();
        for (const auto& [item, cell] : state.cells.byItem()) {
            cell->setFrame(frameOfItem(item));
        }
        withoutAnimation([&] {
            freeCellsOutOfRange();
            placeMissingCells();
        });
        state.cells.forgetFormerItems();
        placeFocusRing();
    }
    if (reloads) {
        CollectionAccessibility::itemsDidChange(*this);
    }
    if (state.needsReload) {
        // Wanted by who was asked for a cell. A layout can't ask for another one.
        dispatchMain([weakSelf = weak_from_this()] {
            if (const auto held = weakSelf.lock()) {
                held->setNeedsLayout();
            }
        });
    }
}

void CollectionView::layoutNow()
{
    if (!_collection->isPlacingCells) {
        withoutAnimation([this] { layoutIfNeeded(); });
    }
}

void CollectionView::contentOffsetDidChange()
{
    if (!_collection->isPlacingCells) {
        noteDistanceFromBeginning();
        setNeedsLayout();
    }
}

void CollectionView::loadIfNeeded()
{
    State& state = *_collection;
    if (!state.needsReload) {
        return;
    }
    state.needsReload = false;
    state.preparedFor.reset();
    state.count = numberOfItemsNow();
    state.focusedItem = std::min(state.focusedItem, state.count - 1);
    withoutAnimation([&] { state.cells.freeAll(); });
}

qsizetype CollectionView::numberOfItemsNow()
{
    const auto dataSource = _collection->dataSource.lock();
    return dataSource ? std::max<qsizetype>(dataSource->collectionViewNumberOfItemsInSection(*this), 0) : 0;
}

void CollectionView::prepareLayout()
{
    State& state = *_collection;
    const bool isRightToLeft = QGuiApplication::layoutDirection() == Qt::RightToLeft;
    const State::Space space{bounds().size(), contentInset(), isRightToLeft};
    if (state.preparedFor == space) {
        return;
    }
    state.preparedFor = space;
    const auto delegate = state.delegate.lock();
    const QSizeF available = bounds().marginsRemoved(space.inset).size();
    const bool beganAtRight = beginsAtRight();
    state.layout->prepare(
        state.count,
        [&](qsizetype item) {
            return delegate ? delegate->collectionViewLayoutSizeForItemAtIndexPath(*this, item) : QSizeF();
        },
        available, isRightToLeft);
    setContentSize(state.layout->contentSize());
    const double width = std::max(contentSize().width(), available.width());
    const double widening = width - std::exchange(state.contentWidth, width);
    if (beganAtRight || beginsAtRight()) {
        keepDistanceFromBeginning(beganAtRight && beginsAtRight() ? widening : 0);
    }
}

bool CollectionView::beginsAtRight() const
{
    const auto& layout = *_collection->layout;
    return layout.isFlipped() && layout.scrollDirection() == ScrollDirection::Horizontal;
}

QPointF CollectionView::contentOffsetOfBeginning() const
{
    assertOnMainThread();
    const QMarginsF inset = contentInset();
    const double right = _collection->contentWidth + inset.right() - bounds().width();
    return {beginsAtRight() ? std::max(right, -inset.left()) : -inset.left(), -inset.top()};
}

void CollectionView::noteDistanceFromBeginning()
{
    const double ahead = contentOffset().x() - contentOffsetOfBeginning().x();
    _collection->distanceFromBeginning = beginsAtRight() ? -ahead : ahead;
}

void CollectionView::keepDistanceFromBeginning(double widening)
{
    if (widening != 0) {
        // All of it stays where it is on screen, and so does what an animation is about to move from there.
        withoutAnimation([&] {
            for (const auto& view : contentView()->subviews()) {
                view->setFrame(view->frame().translated(widening, 0));
            }
        });
    }
    const double distance = _collection->distanceFromBeginning;
    const double x = contentOffsetOfBeginning().x() + (beginsAtRight() ? -distance : distance);
    if (x != contentOffset().x()) {
        setContentOffset({x, contentOffset().y()}, false);
    }
    noteDistanceFromBeginning();
}

CollectionViewRange CollectionView::rangeOfCells() const
{
    if (bounds().isEmpty()) {
        return {};
    }
    return _collection->layout->itemsInRect({contentOffset(), bounds().size()}, linesAround);
}

void CollectionView::freeCellsOutOfRange()
{
    auto& cells = _collection->cells;
    const auto range = rangeOfCells();
    std::vector<qsizetype> outside;
    for (const auto& [item, cell] : cells.byItem()) {
        if (!range.contains(item)) {
            outside.push_back(item);
        }
    }
    for (const qsizetype item : outside) {
        cells.free(item);
    }
}

void CollectionView::placeMissingCells()
{
    // What is on screen comes first, since its pictures are to be asked for first.
    for (const qsizetype item : indexPathsForVisibleItems()) {
        placeCell(item, _collection->layout->layoutAttributesForItemAtIndexPath(item));
    }
    const auto range = rangeOfCells();
    for (qsizetype item = range.first; item < range.end; ++item) {
        placeCell(item, _collection->layout->layoutAttributesForItemAtIndexPath(item));
    }
}

bool CollectionView::placeCell(qsizetype item, const CollectionViewLayoutAttributes& attributes)
{
    State& state = *_collection;
    const auto dataSource = state.dataSource.lock();
    if (state.cells.cellOfItem(item) || !dataSource || bounds().isEmpty()) {
        return false;
    }
    const auto cell = dataSource->collectionViewCellForItemAtIndexPath(*this, item);
    if (!cell) {
        KOVALIN_LOG_ERROR(uiLog(), QStringLiteral("No cell came for item %1").arg(item));
        return false;
    }
    if (cell->superview() != contentView()) {
        contentView()->addSubview(cell);
    }
    state.cells.setCellOfItem(item, cell);
    cell->setFrame(attributes.frame);
    cell->setAlpha(attributes.alpha);
    cell->setTransform(attributes.transform);
    cell->setHidden(false);
    return true;
}

void CollectionView::scrollToItemAtIndexPath(qsizetype item, bool isAnimated)
{
    assertOnMainThread();
    layoutNow();
    const QRectF frame = frameOfItem(item);
    if (item < 0 || item >= _collection->count || bounds().isEmpty()) {
        return;
    }
    // The item, and of the insets as much as has room beside it.
    const QRectF wanted = frame.marginsAdded(contentInset());
    const auto along = [](double offset, double length, double start, double end) {
        return start < offset ? start : std::max(offset, end - length);
    };
    const QPointF offset = contentOffset();
    setContentOffset({along(offset.x(), bounds().width(), wanted.left(), wanted.right()),
                      along(offset.y(), bounds().height(), wanted.top(), wanted.bottom())},
                     isAnimated);
}

// Selection

void CollectionView::cellWasTapped(const CollectionViewCell& cell)
{
    selectItem(indexPathForCell(cell));
}

void CollectionView::selectItem(qsizetype item)
{
    assertOnMainThread();
    if (item < 0 || item >= _collection->count) {
        return;
    }
    const auto self = weak_from_this().lock();
    if (const auto delegate = _collection->delegate.lock()) {
        delegate->collectionViewDidSelectItemAtIndexPath(*this, item);
    }
}

} // namespace kovalin::platform
