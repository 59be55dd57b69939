#include "MeasuredGrid.h"

#include <QtCore/QRandomGenerator>
#include <QtGui/QPainter>

#include <algorithm>
#include <vector>

namespace kovalin::bench {

namespace {

constexpr int kPictures = 300;
constexpr int kPictureSide = 256; // pixels, as the backend draws them

QImage newPicture(quint32 seed)
{
    QRandomGenerator random(seed);
    const auto colour = [&random] {
        return QColor::fromRgb(random.generate() | 0xFF000000U);
    };
    QImage picture(kPictureSide, kPictureSide, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour());
    painter.drawEllipse(48, 100, 160, 150);
    painter.setBrush(colour());
    painter.drawEllipse(68, 20, 120, 120);
    painter.setBrush(Qt::white);
    painter.drawEllipse(92, 60, 26, 26);
    painter.drawEllipse(138, 60, 26, 26);
    painter.setBrush(Qt::black);
    painter.drawEllipse(100, 68, 12, 12);
    painter.drawEllipse(146, 68, 12, 12);
    return picture;
}

} // namespace

MeasuredGrid::~MeasuredGrid() = default;

const QImage& stickerPicture(int sticker)
{
    static const std::vector<QImage> pictures = [] {
        std::vector<QImage> made;
        for (quint32 seed = 0; seed < kPictures; ++seed) {
            made.push_back(newPicture(seed));
        }
        return made;
    }();
    return pictures[static_cast<std::size_t>(sticker % kPictures)];
}

double tileSide(double width)
{
    constexpr int leastColumns = 4;
    constexpr double pointsPerColumn = 100;
    const double usable = width - 2 * kTileInset;
    return usable / std::max(leastColumns, static_cast<int>(usable / pointsPerColumn));
}

} // namespace kovalin::bench
