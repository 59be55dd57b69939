#pragma once

/// Whether the user interface reads from right to left, as the application object says. Main thread only.
[[nodiscard]] bool isRTL();
