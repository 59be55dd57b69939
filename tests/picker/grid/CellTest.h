#pragma once

#include "picker/grid/LoopbackPictures.h"
#include "picker/grid/QXSDKKovalinStickerCollectionViewCell.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/ImageView.h"
#include "support/ViewTest.h"

#include <memory>
#include <string>
#include <vector>

namespace kovalin::test {

class RecordingCellDelegate final : public QXSDKKovalinStickerCollectionViewCellDelegate {
public:
    void
    stickerCollectionViewCellLoadDidSucceed(const std::shared_ptr<QXSDKKovalinStickerCollectionViewCell>& cell) override
    {
        EXPECT_TRUE(platform::isMainThread());
        EXPECT_TRUE(cell->isLoaded());
        told.emplace_back("succeeded");
    }
    void
    stickerCollectionViewCellLoadDidFail(const std::shared_ptr<QXSDKKovalinStickerCollectionViewCell>& cell) override
    {
        EXPECT_TRUE(platform::isMainThread());
        EXPECT_FALSE(cell->isLoaded());
        told.emplace_back("failed");
    }

    std::vector<std::string> told;
};

/// A cell of 78 points in a window, which loads its pictures from a server.
class CellTest : protected WithLoopbackPictures, public ViewTest {
protected:
    using Cell = QXSDKKovalinStickerCollectionViewCell;

    CellTest()
    {
        // As large as the tile's picture, so that nothing has to be scaled.
        const QSize pixels = (QSizeF(70, 70) * ratio()).toSize();
        pictures.script("/red", Qt::red, pixels);
        pictures.script("/blue", Qt::blue, pixels);
        pictures.hold("/held", Qt::green);
        pictures.server.script("/fails", ScriptedAnswer::withStatus(500, "no picture"));
        cell = newCell();
        root()->addSubview(cell);
        grab();
    }

    std::shared_ptr<Cell> newCell()
    {
        auto made = platform::makeView<Cell>(pictures.cache);
        made->setFrame({10, 20, 78, 78});
        made->setDelegate(delegate);
        return made;
    }
    void load(const char* path)
    {
        cell->setImageURL(pictures.url(path));
        ASSERT_TRUE(waitFor([this] { return !cell->isLoading(); }));
    }
    [[nodiscard]] const platform::ImageView& retryIcon() const
    {
        return static_cast<platform::ImageView&>(*cell->subviews().at(1));
    }
    [[nodiscard]] QImage shown() const { return cell->imageView()->image(); }
    [[nodiscard]] bool showsLoadingPicture() const
    {
        return !shown().isNull() && shown().cacheKey() == newestLoadingPicture().cacheKey();
    }
    /// All tiles of a size and colour show the same one.
    [[nodiscard]] QImage newestLoadingPicture() const
    {
        const auto other = platform::makeView<Cell>(pictures.cache);
        other->setFrame(cell->frame());
        root()->addSubview(other);
        other->imageView()->setTintColor(cell->imageView()->tintColor());
        other->layoutIfNeeded();
        QImage picture = other->imageView()->image();
        other->removeFromSuperview();
        return picture;
    }
    [[nodiscard]] QPointF middle() const { return cell->frame().center(); }
    /// Inside of a picture that fills the tile, and outside of the loading picture's lines.
    [[nodiscard]] QPointF corner() const { return cell->frame().topLeft() + QPointF(7, 7); }
    /// Whether there is anything but white in the tile.
    [[nodiscard]] bool hasLoadingPicture(const QImage& picture) const
    {
        for (double x = 0; x < cell->frame().width(); ++x) {
            if (colorAt(picture, ratio(), QPointF(cell->frame().x() + x, middle().y())) != QColor(Qt::white)) {
                return true;
            }
        }
        return false;
    }

    std::shared_ptr<RecordingCellDelegate> delegate = std::make_shared<RecordingCellDelegate>();
    std::shared_ptr<Cell> cell;
};

} // namespace kovalin::test
