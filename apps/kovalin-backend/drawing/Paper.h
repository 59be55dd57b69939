#pragma once

#include "kovalin-backend/drawing/Sketch.h"

#include <QtGui/QImage>

namespace kovalin::drawing {

/// How far paper and its edge reach beyond what lies on it.
inline constexpr qreal paperMargin = 9.3; // units of the drawing

/// A picture of `size` by `size` pixels of a drawing that is `extent` units wide and high: the drawing on paper that is cut out
/// around it, with a hair's breadth of another colour at the paper's edge. The rest is transparent. Any thread.
[[nodiscard]] QImage paintedOnPaper(const Sketch& sketch, int size, qreal extent);

} // namespace kovalin::drawing
