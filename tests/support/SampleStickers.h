#pragma once

#include <QtGui/QImage>

namespace kovalin::test {

/// A sticker as a backend draws them, 256 × 256 pixels on a transparent ground: a figure in a colour of its `number`.
[[nodiscard]] QImage sampleSticker(int number);

} // namespace kovalin::test
