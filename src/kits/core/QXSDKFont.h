#pragma once

#include <QtGui/QFont>

// The kits' fonts: the application's, so that the picker reads like its host. `size` is in points, which are device-independent
// pixels here; one that isn't finite or is below 1 counts as 1. Main thread only.

/// The sizes of texts that have no reason for one of their own, in points.
inline constexpr double systemFontSize = 14;
inline constexpr double smallSystemFontSize = 12;

[[nodiscard]] QFont qxsdkRegularFontOfSize(double size);
[[nodiscard]] QFont qxsdkBoldFontOfSize(double size);
