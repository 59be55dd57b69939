#pragma once

#include <QtCore/QByteArray>
#include <QtGui/QImage>

namespace kovalin::drawing {

/// The picture as a PNG file with at most 256 colours, transparent ones among them: a drawing has few, and the file is a third
/// of what it would be in true colour. The most frequent colours stay exactly as they are. Any thread; the same picture gives
/// the same bytes.
[[nodiscard]] QByteArray encodedAsPng(const QImage& image);

} // namespace kovalin::drawing
