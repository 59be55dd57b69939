#pragma once

#include "QXSDKKovalinKit/Export.h"

/// Whether views move as little as they can, for users who want that of their device: what was animated jumps then, and wheels
/// stand still. False at first; Qt doesn't know of the device's setting, so a host that does passes it on. For the process, from the
/// next animation on. Main thread only.
QXSDKKOVALINKIT_EXPORT void QXSDKKovalinSetReducedMotion(bool isReduced);
[[nodiscard]] QXSDKKOVALINKIT_EXPORT bool QXSDKKovalinIsMotionReduced();
