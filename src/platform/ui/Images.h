#pragma once

#include <QtCore/QRectF>
#include <QtCore/QSize>
#include <QtGui/QColor>
#include <QtGui/QImage>

#include <optional>

namespace kovalin::platform {

/// How a picture lies in the view that shows it.
enum class ContentMode {
    Center,    ///< In its own size, in the middle.
    AspectFit, ///< As large as fits whole, in the middle.
    Fill,      ///< Pulled to the view's size.
};

/// A picture's size in points: its pixels by its own pixel ratio. Any thread.
[[nodiscard]] QSizeF naturalSize(const QImage& image);

/// Where a picture of `size` points lies in `bounds`; one that isn't pulled begins on a whole device pixel. Any thread.
[[nodiscard]] QRectF contentRect(const QSizeF& size, const QRectF& bounds, ContentMode mode, double devicePixelRatio);

/// The picture, smoothly scaled to `pixels`, and with a `tint` in that colour: its own colours don't count then, only
/// how much it covers. Null for a null picture or an empty size. Any thread; takes milliseconds, so not the main one.
[[nodiscard]] QImage preparedImage(const QImage& image, const QSize& pixels, const std::optional<QColor>& tint);

} // namespace kovalin::platform
