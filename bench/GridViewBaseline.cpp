#include "GridViewBaseline.h"

#include <QtQml/QQmlComponent>
#include <QtQml/QQmlContext>
#include <QtQuick/QQuickImageProvider>

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace kovalin::bench {

namespace {

const QString kProvider = QStringLiteral("stickers");
const QString kTileName = QStringLiteral("tile");

class StickerProvider final : public QQuickImageProvider {
public:
    StickerProvider()
        : QQuickImageProvider(Image)
    {
    }

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override
    {
        const QImage& picture = stickerPicture(id.toInt());
        *size = picture.size();
        return requestedSize.isEmpty() ? picture
                                       : picture.scaled(requestedSize, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                                             .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
};

constexpr const char* kQml = R"(import QtQuick
GridView {
    id: grid
    required property real inset
    cellHeight: cellWidth
    topMargin: inset; bottomMargin: inset; leftMargin: inset; rightMargin: inset
    clip: true
    reuseItems: true
    cacheBuffer: cellHeight
    delegate: Item {
        required property string display
        property bool isPooled: false
        GridView.onPooled: isPooled = true
        GridView.onReused: isPooled = false
        readonly property bool hasPicture: picture.status === Image.Ready
        objectName: "tile"
        width: grid.cellWidth
        height: grid.cellHeight
        Image {
            id: picture
            anchors.fill: parent
            anchors.margins: grid.inset
            asynchronous: true
            sourceSize: Qt.size(width, height)
            source: parent.display
        }
    }
})";

bool isInUse(const QQuickItem* tile)
{
    return !tile->property("isPooled").toBool();
}

} // namespace

GridViewBaseline::GridViewBaseline(QQuickItem& parent, const QSize& points)
{
    static_cast<void>(stickerPicture(0)); // made before another thread asks
    _engine.addImageProvider(kProvider, new StickerProvider);
    QQmlComponent component(&_engine);
    component.setData(kQml, QUrl());
    const QVariantMap properties{
        {QStringLiteral("inset"), kTileInset},
        {QStringLiteral("cellWidth"), tileSide(points.width())},
        {QStringLiteral("width"), points.width()},
        {QStringLiteral("height"), points.height()},
        {QStringLiteral("model"), QVariant::fromValue(&_addresses)},
    };
    _view.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(properties)));
    if (!_view) {
        fmt::print(stderr, "GridView can't be made: {}\n", component.errorString().toStdString());
        std::exit(1);
    }
    _view->setParentItem(&parent);
}

void GridViewBaseline::prepareStickers(int first, int count)
{
    _prepared.clear();
    for (int sticker = first; sticker < first + count; ++sticker) {
        _prepared.append(QStringLiteral("image://%1/%2").arg(kProvider).arg(sticker));
    }
}

void GridViewBaseline::showStickers()
{
    _addresses.setStringList(_prepared);
}

QQuickItem& GridViewBaseline::flickable()
{
    return *_view;
}

QList<QQuickItem*> GridViewBaseline::tileItems() const
{
    QList<QQuickItem*> tiles = _view->property("contentItem").value<QQuickItem*>()->childItems();
    tiles.removeIf([](const QQuickItem* item) { return item->objectName() != kTileName; });
    return tiles;
}

int GridViewBaseline::tilesInUse() const
{
    return static_cast<int>(std::ranges::count_if(tileItems(), isInUse));
}

int GridViewBaseline::tiles() const
{
    return static_cast<int>(tileItems().size());
}

int GridViewBaseline::tilesWithPicture() const
{
    return static_cast<int>(std::ranges::count_if(
        tileItems(), [](const QQuickItem* tile) { return isInUse(tile) && tile->property("hasPicture").toBool(); }));
}

} // namespace kovalin::bench
