#pragma once

#include "kovalin-backend/drawing/Sketch.h"

#include <QtCore/QSizeF>
#include <QtCore/QString>

#include <cstdint>
#include <string_view>

namespace kovalin::drawing {

/// How the letters of a caption stand.
enum class Lettering : std::uint8_t { Straight, Arch, Wave, Slant, Stagger };

struct LetteringStyle {
    std::string_view name;
    Lettering lettering;
};

/// Null when there is none of that name. What is found lives as long as the program; any thread.
[[nodiscard]] const LetteringStyle* letteringNamed(std::string_view name);

/// The caption in capitals drawn by hand, on one line or several, as large as fits into the room and no larger than `tallest`.
/// Whatever is drawn lies around the origin and within the room. Characters that the hand has no strokes for are taken from
/// the application's default font; blanks of any kind separate words. An empty caption gives an empty drawing.
///
/// Any thread; the default font takes a QGuiApplication.
[[nodiscard]] Sketch drawCaption(const QString& caption, Lettering lettering, const QColor& colour, QSizeF room,
                                 qreal tallest);

} // namespace kovalin::drawing
