#include "platform/ui/Images.h"

#include <QtGui/QPainter>

#include <cmath>

namespace kovalin::platform {

QSizeF naturalSize(const QImage& image)
{
    return image.isNull() ? QSizeF(0, 0) : image.deviceIndependentSize();
}

QRectF contentRect(const QSizeF& size, const QRectF& bounds, ContentMode mode, double devicePixelRatio)
{
    if (mode == ContentMode::Fill || size.isEmpty()) {
        return bounds;
    }
    QRectF rect(QPointF(), mode == ContentMode::Center ? size : size.scaled(bounds.size(), Qt::KeepAspectRatio));
    rect.moveCenter(bounds.center());
    const auto snapped = [devicePixelRatio](double points) {
        return std::round(points * devicePixelRatio) / devicePixelRatio;
    };
    rect.moveTo(snapped(rect.x()), snapped(rect.y()));
    return rect;
}

QImage preparedImage(const QImage& image, const QSize& pixels, const std::optional<QColor>& tint)
{
    if (image.isNull() || pixels.isEmpty()) {
        return {};
    }
    QImage prepared = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (prepared.size() != pixels) {
        prepared = prepared.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    prepared.setDevicePixelRatio(1);
    if (tint) {
        QPainter painter(&prepared);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(prepared.rect(), *tint);
    }
    return prepared;
}

} // namespace kovalin::platform
