#pragma once

#include <QtCore/QChar>

#include <string_view>

namespace kovalin::drawing {

/// A letter as one draws it with a marker: the lines of its strokes' middles, 100 units high, from the left edge 0.
struct LetterShape {
    char16_t letter;
    std::string_view strokes; // path data
    qreal width;
};

/// Null for a character that isn't among them. Capitals, digits and common signs. Any thread.
[[nodiscard]] const LetterShape* letterShapeOf(QChar letter);

} // namespace kovalin::drawing
