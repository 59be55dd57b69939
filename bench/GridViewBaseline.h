#pragma once

#include "MeasuredGrid.h"

#include <QtCore/QStringListModel>
#include <QtQml/QQmlEngine>

#include <memory>

namespace kovalin::bench {

/// Qt Quick's own GridView with an Image as delegate: delegates are used again, one row is kept ready beside the
/// screen, and pictures are scaled to the tile by the thread that loads them. Ends the program where Qt Quick's modules
/// are missing.
class GridViewBaseline final : public MeasuredGrid {
public:
    /// In the top left corner of `parent`.
    GridViewBaseline(QQuickItem& parent, const QSize& points);

    void prepareStickers(int first, int count) override;
    void showStickers() override;
    QQuickItem& flickable() override;
    [[nodiscard]] int tilesInUse() const override;
    [[nodiscard]] int tiles() const override;
    [[nodiscard]] int tilesWithPicture() const override;

private:
    [[nodiscard]] QList<QQuickItem*> tileItems() const;

    QStringList _prepared;
    QStringListModel _addresses;
    QQmlEngine _engine;
    std::unique_ptr<QQuickItem> _view;
};

} // namespace kovalin::bench
