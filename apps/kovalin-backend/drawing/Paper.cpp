#include "kovalin-backend/drawing/Paper.h"

#include <QtGui/QPainter>

#include <algorithm>

namespace kovalin::drawing {

namespace {

constexpr qreal edgeWidth = 1.3; // units of the drawing

/// Lets the edge's colour show where paper ends: as much of it as of what is missing `width` pixels away.
void colourEdge(QImage& paper, int width)
{
    const QImage before = paper.copy();
    const int last = paper.width() - 1;
    const QColor edge = colours::edge;
    for (int y = 0; y <= last; ++y) {
        const auto lineAt = [&](int row) {
            return reinterpret_cast<const QRgb*>(before.constScanLine(std::clamp(row, 0, last)));
        };
        const QRgb* const line = lineAt(y);
        const QRgb* const above = lineAt(y - width);
        const QRgb* const below = lineAt(y + width);
        auto* const result = reinterpret_cast<QRgb*>(paper.scanLine(y));
        for (int x = 0; x <= last; ++x) {
            const int whole = qAlpha(line[x]);
            if (whole == 0) {
                continue;
            }
            const int beside = std::min(qAlpha(line[std::max(x - width, 0)]), qAlpha(line[std::min(x + width, last)]));
            const int inner = std::min({whole, beside, qAlpha(above[x]), qAlpha(below[x])});
            const auto part = [&](int ofEdge) {
                return inner + ofEdge * (whole - inner) / 255;
            };
            result[x] = qRgba(part(edge.red()), part(edge.green()), part(edge.blue()), whole);
        }
    }
}

} // namespace

QImage paintedOnPaper(const Sketch& sketch, int size, qreal extent)
{
    const qreal scale = size / extent;
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const auto paint = [&](const auto& what) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(scale, scale);
        what(painter);
    };
    paint([&](QPainter& painter) { sketch.paintPaper(painter, paperMargin, colours::paper); });
    colourEdge(image, std::max(1, qRound(edgeWidth * scale)));
    paint([&](QPainter& painter) { sketch.paint(painter); });
    return image;
}

} // namespace kovalin::drawing
