#include "picker/grid/QXSDKKovalinStickerGridController.h"

#include "picker/grid/KovalinStickerName.h"
#include "picker/grid/QXSDKKovalinFlowLayout.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/ImageView.h"
#include "search/QXSDKKovalinSearchResultType.h"

#include <QtCore/QUrl>

#include <algorithm>
#include <iterator>

using namespace kovalin::platform;

namespace {

using Cell = QXSDKKovalinStickerCollectionViewCell;
using Grid = QXSDKKovalinStickerGridController;

/// Points around the tiles, on each side.
constexpr double contentInset = 4.0;
constexpr double minColumns = 4.0;
/// Points of width that make a further column.
constexpr double columnWidth = 100.0;

QString cellIdentifier()
{
    return QStringLiteral("KovalinStickerCollectionViewCell");
}

Grid::Layout newLayout()
{
    const auto layout = std::make_shared<QXSDKKovalinFlowLayout>();
    layout->setMinimumLineSpacing(0);
    layout->setMinimumInteritemSpacing(0);
    return layout;
}

QXSDKKovalinStickerPickerConfigPtr newConfig()
{
    return std::make_shared<QXSDKKovalinStickerPickerConfig>();
}

Grid::List withoutFriendvalins(const Grid::List& kovalins)
{
    auto filtered = std::make_shared<KovalinStickerList>();
    if (kovalins) {
        const auto isSolovalin = QXSDKKovalinSearchResultTypeToPredicate({QXSDKKovalinSearchResultTypeSolovalin});
        std::ranges::copy_if(*kovalins, std::back_inserter(*filtered),
                             [&](const KovalinStickerPtr& sticker) { return isSolovalin(*sticker); });
    }
    return filtered;
}

/// Absent also for a text that is no address, such as that of a two-person sticker without a friend.
std::optional<QUrl> urlWithString(const std::optional<QString>& text)
{
    const QUrl url = text ? QUrl(*text, QUrl::StrictMode) : QUrl();
    return url.isValid() ? std::optional(url) : std::nullopt;
}

} // namespace

QXSDKKovalinStickerGridControllerDelegate::~QXSDKKovalinStickerGridControllerDelegate() = default;

// Making

Grid::Ptr Grid::create(const Cache& cache)
{
    return create(std::make_shared<const KovalinStickerList>(), newConfig(), cache);
}

Grid::Ptr Grid::create(const List& kovalins, const QXSDKKovalinStickerPickerConfigPtr& config, const Cache& cache)
{
    return create(kovalins, newLayout(), config, cache);
}

Grid::Ptr Grid::create(const List& kovalins, const Layout& layout, const Cache& cache)
{
    return create(kovalins, layout, newConfig(), cache);
}

Grid::Ptr Grid::create(const List& kovalins, const Layout& layout, const QXSDKKovalinStickerPickerConfigPtr& config,
                       const Cache& cache)
{
    const Ptr grid(new QXSDKKovalinStickerGridController(kovalins, layout, config, cache));
    grid->_view->setDataSource(grid);
    grid->_view->setDelegate(grid);
    return grid;
}

QXSDKKovalinStickerGridController::QXSDKKovalinStickerGridController(const List& kovalins, const Layout& layout,
                                                                     const QXSDKKovalinStickerPickerConfigPtr& config,
                                                                     const Cache& cache)
    : _layout(layout)
    , _config(config)
    , _view(makeView<CollectionView>(layout))
    , _viewUpdater(_view, kovalins)
{
    _view->setContentInset({contentInset, contentInset, contentInset, contentInset});
    _view->setDelaysContentTouches(false);
    _view->registerCell(cellIdentifier(), [cache] { return makeView<Cell>(cache); });
}

QXSDKKovalinStickerGridController::~QXSDKKovalinStickerGridController() = default;

// The list and the friend

const std::shared_ptr<CollectionView>& QXSDKKovalinStickerGridController::view() const
{
    return _view;
}

void QXSDKKovalinStickerGridController::setDelegate(
    const std::weak_ptr<QXSDKKovalinStickerGridControllerDelegate>& delegate)
{
    assertOnMainThread();
    _delegate = delegate;
}

Grid::List QXSDKKovalinStickerGridController::kovalins() const
{
    return _viewUpdater.data();
}

void QXSDKKovalinStickerGridController::setKovalins(const List& kovalins)
{
    assertOnMainThread();
    const List shown = _friendAvatarId ? kovalins : withoutFriendvalins(kovalins);
    if (shown == _viewUpdater.data()) {
        return;
    }
    const QMarginsF inset = _view->contentInset();
    _view->setContentOffset({-inset.left(), -inset.top()}, false);
    _viewUpdater.setData(shown);
}

const std::optional<QString>& QXSDKKovalinStickerGridController::friendAvatarId() const
{
    return _friendAvatarId;
}

void QXSDKKovalinStickerGridController::setFriendAvatarId(const std::optional<QString>& friendAvatarId)
{
    assertOnMainThread();
    if (friendAvatarId == _friendAvatarId) {
        return;
    }
    const bool hadFriend = _friendAvatarId.has_value();
    _friendAvatarId = friendAvatarId;
    if (hadFriend && _friendAvatarId) {
        _refreshVisibleFriendvalins();
    } else if (!_friendAvatarId) {
        setKovalins(_viewUpdater.data());
    }
}

void QXSDKKovalinStickerGridController::_refreshVisibleFriendvalins()
{
    const List shown = kovalins();
    QList<qsizetype> items = _view->indexPathsForVisibleItems();
    items.removeIf([&](qsizetype item) { return item >= shown->size() || !shown->at(item)->isFriendvalin(); });
    _view->reloadItemsAtIndexPaths(items);
}

int QXSDKKovalinStickerGridController::topInset() const
{
    return _topInset;
}

void QXSDKKovalinStickerGridController::setTopInset(int points)
{
    assertOnMainThread();
    _topInset = points;
    _view->setContentInset({contentInset, points + contentInset, contentInset, contentInset});
    _view->setScrollIndicatorInsets({0, double(points), 0, 0});
}

// For the view

qsizetype QXSDKKovalinStickerGridController::collectionViewNumberOfItemsInSection(CollectionView& /*collectionView*/)
{
    return _viewUpdater.displayedData()->size();
}

std::shared_ptr<CollectionViewCell>
QXSDKKovalinStickerGridController::collectionViewCellForItemAtIndexPath(CollectionView& collectionView, qsizetype item)
{
    const auto cell = std::static_pointer_cast<Cell>(collectionView.dequeueReusableCell(cellIdentifier(), item));
    const List shown = kovalins();
    // What is displayed may still be a longer list.
    if (item >= shown->size()) {
        return cell;
    }
    cell->setImageURL(urlWithString(shown->at(item)->imageURLWithFriendAvatarId(_friendAvatarId)));
    cell->setDelegate(weak_from_this());
    cell->applyTheme(*_config->theme());
    _failedCells.remove(cell);
    return cell;
}

QString QXSDKKovalinStickerGridController::collectionViewAccessibilityLabelForItemAtIndexPath(
    CollectionView& /*collectionView*/, qsizetype item)
{
    const List shown = kovalins();
    return item < shown->size() ? kovalinStickerName(*shown->at(item)) : QString();
}

QSizeF QXSDKKovalinStickerGridController::collectionViewLayoutSizeForItemAtIndexPath(CollectionView& collectionView,
                                                                                     qsizetype /*item*/)
{
    const QSizeF usable = collectionView.bounds().size() - QSizeF(2 * contentInset, 2 * contentInset);
    if (_layout->scrollDirection() == ScrollDirection::Horizontal) {
        return {usable.height(), usable.height()};
    }
    const auto columns = static_cast<int>(std::max(minColumns, usable.width() / columnWidth));
    return {usable.width() / columns, usable.width() / columns};
}

void QXSDKKovalinStickerGridController::collectionViewDidSelectItemAtIndexPath(CollectionView& collectionView,
                                                                               qsizetype item)
{
    // Null where the item isn't on screen, and then nothing is loading or loaded.
    const auto cell = std::static_pointer_cast<Cell>(collectionView.cellForItemAtIndexPath(item));
    if (cell && cell->isLoading()) {
        return;
    }
    if (cell && cell->isLoaded()) {
        const List shown = kovalins();
        if (const auto delegate = _delegate.lock(); delegate && item < shown->size()) {
            delegate->stickerGridControllerDidSelectSticker(shown->at(item), cell->imageView()->image());
        }
        return;
    }
    _failedCells.forEach([](Cell& failed) {
        if (!failed.isLoaded()) {
            failed.reload();
        }
    });
}

void QXSDKKovalinStickerGridController::scrollViewDidScroll(ScrollView& scrollView)
{
    if (const auto delegate = _delegate.lock()) {
        delegate->stickerGridControllerDidScroll(scrollView);
    }
}

// For the cells

void QXSDKKovalinStickerGridController::stickerCollectionViewCellLoadDidSucceed(
    const std::shared_ptr<QXSDKKovalinStickerCollectionViewCell>& cell)
{
    _failedCells.remove(cell);
    if (_isFirstStickerRendered) {
        return;
    }
    _isFirstStickerRendered = true;
    if (const auto delegate = _delegate.lock()) {
        delegate->stickerGridControllerDidRenderFirstSticker();
    }
}

void QXSDKKovalinStickerGridController::stickerCollectionViewCellLoadDidFail(
    const std::shared_ptr<QXSDKKovalinStickerCollectionViewCell>& cell)
{
    _failedCells.add(cell);
}
