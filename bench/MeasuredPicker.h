#pragma once

#include "Measure.h"

#include <QtCore/QString>

namespace kovalin::bench {

/// Leaves in a caches directory what a host leaves that has shown the picker before: an archive of `stickers` stickers, and
/// the pictures of all of them. Needs a QGuiApplication. The archive is for one start.
void leaveCaches(const QString& folder, int stickers);

struct PickerFigures {
    Nanoseconds creation = 0;  ///< Of a controller with its view, on the main thread.
    Nanoseconds coldStart = 0; ///< To the first sticker drawn, as the library measures it.
    Nanoseconds warmStart = 0; ///< The same of pickers that are opened later, in the median.
    double openHeap = 0;       ///< Of an open picker, in bytes.
    double openPages = 0;      ///< Memory of an open picker without what processes share, in bytes.
    double grownHeap = 0;      ///< What many screens add to the heap, in bytes.
    double wakeUps = 0;        ///< Of all threads in a second, while the picker is hidden.
};

/// What a picker costs a host over such a caches directory whose first picker it is in this process. Needs a
/// QGuiApplication; takes half a minute, or some seconds if it is quick.
[[nodiscard]] PickerFigures measurePicker(const QString& folder, int stickers, bool isQuick);

} // namespace kovalin::bench
