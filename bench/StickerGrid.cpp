#include "StickerGrid.h"

#include "FullPictureStore.h"
#include "support/WaitFor.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace kovalin::bench {

namespace {

using Cell = QXSDKKovalinStickerCollectionViewCell;

const QString kAddress = QStringLiteral("http://127.0.0.1/");

} // namespace

StickerGrid::StickerGrid(QQuickItem& parent, const QSize& points)
    : _logger(QStringLiteral("1"))
{
    _controller = QXSDKKovalinStickerGridController::create(newFullCache(_logger));
    _controller->view()->setParentItem(&parent);
    _controller->view()->setFrame(QRectF(QPointF(), points));
}

StickerGrid::~StickerGrid()
{
    _controller->view()->setParentItem(nullptr);
    _controller.reset();
    test::drainMainQueue();
}

void StickerGrid::prepareStickers(int first, int count)
{
    auto list = std::make_shared<KovalinStickerList>();
    list->reserve(count);
    for (int number = first; number < first + count; ++number) {
        auto sticker = std::make_shared<KovalinSticker>();
        sticker->setComicId(QString::number(number));
        sticker->setUrl(kAddress + QString::number(number));
        list->append(std::move(sticker));
    }
    _prepared = std::move(list);
}

void StickerGrid::showStickers()
{
    _controller->setKovalins(_prepared);
}

QQuickItem& StickerGrid::flickable()
{
    for (QQuickItem* item : _controller->view()->childItems()) {
        if (item->inherits("QQuickFlickable")) {
            return *item;
        }
    }
    fmt::print(stderr, "The grid has nothing that scrolls.\n");
    std::exit(1);
}

QList<std::shared_ptr<Cell>> StickerGrid::cells() const
{
    QList<std::shared_ptr<Cell>> cells;
    for (const auto& view : _controller->view()->contentView()->subviews()) {
        if (const auto cell = std::dynamic_pointer_cast<Cell>(view)) {
            cells.append(cell);
        }
    }
    return cells;
}

bool StickerGrid::isInUse(const Cell& cell) const
{
    return _controller->view()->indexPathForCell(cell) >= 0;
}

int StickerGrid::tilesInUse() const
{
    return static_cast<int>(std::ranges::count_if(cells(), [this](const auto& cell) { return isInUse(*cell); }));
}

int StickerGrid::tiles() const
{
    return static_cast<int>(cells().size());
}

int StickerGrid::tilesWithPicture() const
{
    return static_cast<int>(
        std::ranges::count_if(cells(), [this](const auto& cell) { return isInUse(*cell) && cell->isLoaded(); }));
}

} // namespace kovalin::bench
