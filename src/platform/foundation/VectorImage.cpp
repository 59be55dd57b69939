#include "platform/foundation/VectorImage.h"

#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <algorithm>
#include <cmath>

namespace kovalin::platform {

namespace {

constexpr double kMaxPixels = 16'000'000; // as for decoded pictures

/// How many pixels lie along `points`, at least one; 0 if that is no length.
double pixelsAlong(qreal points, qreal pixelRatio)
{
    const double pixels = points * pixelRatio;
    return points > 0 && pixelRatio > 0 && std::isfinite(pixels) ? std::max(1.0, std::round(pixels)) : 0;
}

/// Empty for what can't be drawn.
QSize pixelSize(const QSizeF& size, qreal pixelRatio)
{
    const double width = pixelsAlong(size.width(), pixelRatio);
    const double height = pixelsAlong(size.height(), pixelRatio);
    if (width * height > kMaxPixels) {
        return {};
    }
    return {static_cast<int>(width), static_cast<int>(height)};
}

} // namespace

VectorImage VectorImage::fromSvg(const QByteArray& svg)
{
    const QSvgRenderer renderer(svg);
    VectorImage picture;
    if (renderer.isValid() && !renderer.defaultSize().isEmpty()) {
        picture._svg = svg;
        picture._size = renderer.defaultSize();
    }
    return picture;
}

VectorImage VectorImage::asTemplate() const
{
    VectorImage picture = *this;
    picture._isTemplate = !isNull();
    return picture;
}

QImage VectorImage::image(const QSizeF& size, qreal pixelRatio, const QColor& tint) const
{
    const QSize pixels = pixelSize(size, pixelRatio);
    if (isNull() || pixels.isEmpty()) {
        return {};
    }
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return {};
    }
    image.fill(Qt::transparent);
    QPainter painter(&image);
    // A renderer of its own for each drawing: one has a state, and several threads may draw. Reading a document of
    // some KB takes a tenth of a millisecond.
    QSvgRenderer renderer(_svg);
    renderer.render(&painter, QRectF(QPointF(), QSizeF(pixels)));
    if (_isTemplate) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), tint);
    }
    painter.end();
    image.setDevicePixelRatio(pixelRatio);
    return image;
}

} // namespace kovalin::platform
