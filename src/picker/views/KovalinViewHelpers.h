#pragma once

#include "platform/ui/View.h"

#include <QtCore/QMarginsF>

#include <memory>

// What all views of the picker share. Main thread only.

/// What of the view the device's rounded edges and bars cover, in points.
[[nodiscard]] QMarginsF obscuredAreaInsets(const kovalin::platform::View& view);

/// Shows that a view is pressed, or no longer: it shrinks, or comes back, over a fifth of a second.
void animateViewForPressedState(kovalin::platform::View& view, bool isPressed);
