#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSize>
#include <QtGui/QColor>
#include <QtGui/QImage>

namespace kovalin::test {

/// A picture of many colours that packs badly, another one for each `seed`: at 100 × 100 its PNG has some 30 KB.
[[nodiscard]] QImage noise(quint32 seed, QSize size = QSize(20, 20));

/// A picture of one colour.
[[nodiscard]] QImage plain(QColor colour, QSize size = QSize(16, 16));

/// The picture as a file. Throws if Qt can't write the format, one of "png", "jpeg".
[[nodiscard]] QByteArray encoded(const QImage& image, const char* format = "png");

/// An animated GIF of one frame for each colour.
[[nodiscard]] QByteArray gif(const QList<QColor>& frames, QSize size = QSize(16, 16));

/// A lossless and a lossy WebP of one pixel.
[[nodiscard]] QByteArray losslessWebP();
[[nodiscard]] QByteArray lossyWebP();

/// An SVG of 16 × 16 points, filled with `colour`.
[[nodiscard]] QByteArray svg(const char* colour);

/// An SVG of 16 × 16 points with `content` in it.
[[nodiscard]] QByteArray svgWith(const QByteArray& content);

} // namespace kovalin::test
