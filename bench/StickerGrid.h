#pragma once

#include "MeasuredGrid.h"
#include "picker/grid/QXSDKKovalinStickerGridController.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <memory>

namespace kovalin::bench {

/// The picker's grid, over an image cache that has all pictures in memory.
class StickerGrid final : public MeasuredGrid {
public:
    /// In the top left corner of `parent`.
    StickerGrid(QQuickItem& parent, const QSize& points);
    ~StickerGrid() override;

    void prepareStickers(int first, int count) override;
    void showStickers() override;
    QQuickItem& flickable() override;
    [[nodiscard]] int tilesInUse() const override;
    [[nodiscard]] int tiles() const override;
    [[nodiscard]] int tilesWithPicture() const override;

private:
    [[nodiscard]] QList<std::shared_ptr<QXSDKKovalinStickerCollectionViewCell>> cells() const;
    [[nodiscard]] bool isInUse(const QXSDKKovalinStickerCollectionViewCell& cell) const;

    QXSDKKovalinOperationalMetricsLogger _logger;
    std::shared_ptr<QXSDKKovalinStickerGridController> _controller;
    QXSDKKovalinStickerGridController::List _prepared;
};

} // namespace kovalin::bench
