#pragma once

#include "kovalin-backend/drawing/Palette.h"
#include "kovalin-backend/drawing/Sketch.h"

#include <string_view>

namespace kovalin::drawing {

/// What lies around a figure: a plate behind it or small things scattered about. Drawn around the origin, about 130 units to
/// each side.
struct Motif {
    std::string_view name;
    void (*draw)(Sketch& sketch, const Palette& palette);
};

/// Null when there is none of that name. The motif lives as long as the program; any thread.
[[nodiscard]] const Motif* motifNamed(std::string_view name);

} // namespace kovalin::drawing
