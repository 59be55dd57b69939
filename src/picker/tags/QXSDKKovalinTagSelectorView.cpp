#include "picker/tags/QXSDKKovalinTagSelectorView.h"

#include "kits/core/QXSDKFont.h"
#include "picker/config/KovalinString.h"
#include "picker/grid/QXSDKKovalinFlowLayout.h"
#include "picker/tags/QXSDKKovalinTagViewCell.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/Label.h"

using namespace kovalin::platform;

namespace {

using Cell = QXSDKKovalinTagViewCell;
using Strip = QXSDKKovalinTagSelectorView;

// Points.
constexpr double interitemSpacing = 5;
constexpr QMarginsF contentInset(10, 0, 10, 0);
constexpr double fontSize = 14;
constexpr double borderHeight = 0.5;

QString cellIdentifier()
{
    return QStringLiteral("QXSDKKovalinTagViewCell");
}

std::shared_ptr<QXSDKKovalinFlowLayout> newLayout()
{
    auto layout = std::make_shared<QXSDKKovalinFlowLayout>();
    layout->setScrollDirection(ScrollDirection::Horizontal);
    layout->setMinimumInteritemSpacing(interitemSpacing);
    return layout;
}

} // namespace

QXSDKKovalinTagSelectorViewDelegate::~QXSDKKovalinTagSelectorViewDelegate() = default;

struct QXSDKKovalinTagSelectorView::State {
    explicit State(const QXSDKKovalinStickerPickerConfigPtr& itsConfig)
        : config(itsConfig)
    {
    }

    const std::shared_ptr<CollectionView> collectionView = makeView<CollectionView>(newLayout());
    const std::shared_ptr<View> bottomBorder = makeView<View>();
    const std::shared_ptr<Label> noResultsLabel = makeView<Label>();
    QXSDKCollectionViewUpdater<QXSDKTagTile> viewUpdater{collectionView};
    const QXSDKKovalinStickerPickerConfigPtr config;
    std::weak_ptr<QXSDKKovalinTagSelectorViewDelegate> delegate;
};

std::shared_ptr<QXSDKKovalinTagSelectorView>
QXSDKKovalinTagSelectorView::create(const QRectF& frame, const QXSDKKovalinStickerPickerConfigPtr& config)
{
    const std::shared_ptr<QXSDKKovalinTagSelectorView> strip(
        new QXSDKKovalinTagSelectorView(frame, config ? config : std::make_shared<QXSDKKovalinStickerPickerConfig>()),
        ViewDeleter());
    strip->_strip->collectionView->setDataSource(strip);
    strip->_strip->collectionView->setDelegate(strip);
    return strip;
}

QXSDKKovalinTagSelectorView::QXSDKKovalinTagSelectorView(const QRectF& frame,
                                                         const QXSDKKovalinStickerPickerConfigPtr& config)
    : _strip(std::make_unique<State>(config))
{
    const QXSDKKovalinStickerPickerTheme& theme = *config->theme();
    setFrame(frame);
    setBackgroundColor(theme.backgroundColor());

    Label& noResults = *_strip->noResultsLabel;
    noResults.setText(kovalinStringWithKey(QStringLiteral("no_results")));
    noResults.setFont(qxsdkRegularFontOfSize(fontSize));
    noResults.setTextColor(theme.subtextColor());
    noResults.setTextAlignment(TextAlignment::Center);
    noResults.setHidden(true);
    addSubview(_strip->noResultsLabel);

    CollectionView& pills = *_strip->collectionView;
    pills.setShowsHorizontalScrollIndicator(false);
    pills.setContentInset(contentInset);
    pills.registerCell(cellIdentifier(), [] { return makeView<Cell>(); });
    addSubview(_strip->collectionView);

    _strip->bottomBorder->setBackgroundColor(theme.borderColor());
    addSubview(_strip->bottomBorder);
}

QXSDKKovalinTagSelectorView::~QXSDKKovalinTagSelectorView() = default;

void QXSDKKovalinTagSelectorView::setDelegate(const std::weak_ptr<QXSDKKovalinTagSelectorViewDelegate>& delegate)
{
    assertOnMainThread();
    _strip->delegate = delegate;
}

Strip::List QXSDKKovalinTagSelectorView::tagTiles() const
{
    return _strip->viewUpdater.data();
}

void QXSDKKovalinTagSelectorView::setTagTiles(const List& tagTiles)
{
    assertOnMainThread();
    CollectionView& pills = *_strip->collectionView;
    pills.setContentOffset(pills.contentOffsetOfBeginning(), false);
    _strip->noResultsLabel->setHidden(tagTiles && !tagTiles->isEmpty());
    _strip->viewUpdater.setData(tagTiles);
}

void QXSDKKovalinTagSelectorView::layoutSubviews()
{
    _strip->collectionView->setFrame(bounds());
    _strip->noResultsLabel->setFrame(bounds());
    _strip->bottomBorder->setFrame({0, bounds().bottom() - borderHeight, bounds().width(), borderHeight});
}

// For the collection view

qsizetype QXSDKKovalinTagSelectorView::collectionViewNumberOfItemsInSection(CollectionView& /*collectionView*/)
{
    return _strip->viewUpdater.displayedData()->size();
}

std::shared_ptr<CollectionViewCell>
QXSDKKovalinTagSelectorView::collectionViewCellForItemAtIndexPath(CollectionView& collectionView, qsizetype item)
{
    const auto cell = std::static_pointer_cast<Cell>(collectionView.dequeueReusableCell(cellIdentifier(), item));
    const List tiles = tagTiles();
    // What is displayed may still be a longer list.
    if (item < tiles->size()) {
        cell->setText(tiles->at(item)->text());
        cell->setColor(tiles->at(item)->color());
        cell->applyTheme(*_strip->config->theme());
    }
    return cell;
}

QString
QXSDKKovalinTagSelectorView::collectionViewAccessibilityLabelForItemAtIndexPath(CollectionView& /*collectionView*/,
                                                                                qsizetype item)
{
    const List tiles = tagTiles();
    return item < tiles->size() ? tiles->at(item)->text() : QString();
}

QSizeF QXSDKKovalinTagSelectorView::collectionViewLayoutSizeForItemAtIndexPath(CollectionView& /*collectionView*/,
                                                                               qsizetype item)
{
    const List tiles = tagTiles();
    return item < tiles->size() ? Cell::sizeForText(tiles->at(item)->text()) : QSizeF();
}

void QXSDKKovalinTagSelectorView::collectionViewDidSelectItemAtIndexPath(CollectionView& /*collectionView*/,
                                                                         qsizetype item)
{
    const auto self = weak_from_this().lock();
    const List tiles = tagTiles();
    if (const auto delegate = _strip->delegate.lock(); delegate && item < tiles->size()) {
        delegate->kovalinTagSelectorViewDidSelectTag(tiles->at(item));
    }
}
