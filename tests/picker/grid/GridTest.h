#pragma once

#include "picker/grid/LoopbackPictures.h"
#include "picker/grid/QXSDKKovalinStickerGridController.h"
#include "platform/ui/ImageView.h"
#include "support/ViewTest.h"

#include <QtTest/QTest>

#include <memory>
#include <utility>
#include <vector>

namespace kovalin::test {

class RecordingGridDelegate final : public QXSDKKovalinStickerGridControllerDelegate {
public:
    void stickerGridControllerDidSelectSticker(const KovalinStickerPtr& sticker, const QImage& image) override
    {
        selected.emplace_back(sticker, image);
    }
    void stickerGridControllerDidScroll(platform::ScrollView& scrollView) override
    {
        scrolled.push_back(scrollView.contentOffset());
    }
    void stickerGridControllerDidRenderFirstSticker() override { ++firstStickers; }

    std::vector<std::pair<KovalinStickerPtr, QImage>> selected;
    std::vector<QPointF> scrolled;
    int firstStickers = 0;
};

/// A grid in a window, four tiles of 78 points in a row, whose pictures come from a server.
class GridTest : protected WithLoopbackPictures, public ViewTest {
protected:
    using Grid = QXSDKKovalinStickerGridController;
    using Cell = QXSDKKovalinStickerCollectionViewCell;

    static constexpr int width = 320;
    static constexpr int height = 242;

    GridTest()
    {
        window().resize(width, height);
        root()->setFrame({0, 0, width, height});
        pictures.script("/red", Qt::red);
        pictures.script("/blue", Qt::blue);
        pictures.hold("/held", Qt::green);
        pictures.server.script("/fails", ScriptedAnswer::withStatus(500, "no picture"));
        pictures.server.script("/fails-too", ScriptedAnswer::withStatus(500, "no picture"));
    }

    [[nodiscard]] KovalinStickerPtr sticker(const char* path) const
    {
        auto made = std::make_shared<KovalinSticker>();
        made->setComicId(QString::fromLatin1(path));
        made->setUrl(pictures.url(path).toString());
        return made;
    }
    /// A two-person sticker, whose picture for the friend "a" lies at `path` + "/a".
    [[nodiscard]] KovalinStickerPtr friendSticker(const char* path) const
    {
        const auto made = sticker(path)->copy();
        made->setUrl(pictures.url(path).toString() + QStringLiteral("/%s"));
        made->setFriendvalin(true);
        return made;
    }
    [[nodiscard]] static Grid::List list(const KovalinStickerList& stickers)
    {
        return std::make_shared<const KovalinStickerList>(stickers);
    }
    /// As many stickers as rows of four take, all with the picture "/red".
    [[nodiscard]] Grid::List rows(int count) const
    {
        KovalinStickerList stickers;
        for (int i = 0; i < 4 * count; ++i) {
            const auto made = sticker("/red")->copy();
            made->setComicId(QString::number(i));
            stickers.append(made);
        }
        return list(stickers);
    }

    /// Makes the grid and shows it.
    void show(const Grid::List& stickers)
    {
        grid = Grid::create(stickers, std::make_shared<QXSDKKovalinStickerPickerConfig>(), pictures.cache);
        showGrid();
    }
    void showGrid()
    {
        grid->setDelegate(delegate);
        grid->view()->setFrame(root()->bounds());
        root()->addSubview(grid->view());
        grab();
    }

    [[nodiscard]] std::shared_ptr<Cell> cell(qsizetype item) const
    {
        return std::static_pointer_cast<Cell>(grid->view()->cellForItemAtIndexPath(item));
    }
    [[nodiscard]] bool becomesLoaded(qsizetype item)
    {
        return waitFor([this, item] { return cell(item) && cell(item)->isLoaded(); });
    }
    [[nodiscard]] static bool hasFailed(const Cell& tile) { return !tile.subviews().at(1)->isHidden(); }
    [[nodiscard]] bool becomesFailed(qsizetype item)
    {
        return waitFor([this, item] { return cell(item) && hasFailed(*cell(item)); });
    }
    [[nodiscard]] QPointF middleOf(qsizetype item) const
    {
        return grid->view()->frameOfItem(item).center() - grid->view()->contentOffset();
    }
    void tapItem(qsizetype item) { tap(middleOf(item)); }
    [[nodiscard]] std::optional<QUrl> urlOf(qsizetype item) const { return cell(item)->imageURL(); }

    std::shared_ptr<RecordingGridDelegate> delegate = std::make_shared<RecordingGridDelegate>();
    Grid::Ptr grid;
};

} // namespace kovalin::test
