#pragma once

#include <QtCore/QSize>
#include <QtGui/QImage>
#include <QtQuick/QQuickItem>

namespace kovalin::bench {

/// Pictures of stickers, the same for all that show them: any number of stickers share some hundreds.
[[nodiscard]] const QImage& stickerPicture(int sticker);

/// A grid of stickers, however it is made, in an item. Main thread only.
class MeasuredGrid {
public:
    MeasuredGrid() = default;
    virtual ~MeasuredGrid();
    Q_DISABLE_COPY_MOVE(MeasuredGrid)

    /// Has a list of `count` stickers at hand, from the one with the number `first` on.
    virtual void prepareStickers(int first, int count) = 0;
    /// Shows that list, from the top.
    virtual void showStickers() = 0;
    /// What scrolls: an item that is one of Qt Quick's Flickable.
    [[nodiscard]] virtual QQuickItem& flickable() = 0;
    /// The tiles that there are and that show a sticker, on screen or beside it.
    [[nodiscard]] virtual int tilesInUse() const = 0;
    /// All tiles that there are, with those that wait to be used again.
    [[nodiscard]] virtual int tiles() const = 0;
    /// Those in use that have their picture.
    [[nodiscard]] virtual int tilesWithPicture() const = 0;
};

/// The side of a tile for a width, in points: four in a row and one more for each full 100 points, with 4 points at the
/// edges.
[[nodiscard]] double tileSide(double width);
constexpr double kTileInset = 4; // from a tile's edges to its picture, and from the window's to the tiles

} // namespace kovalin::bench
