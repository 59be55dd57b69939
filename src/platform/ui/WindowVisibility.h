#pragma once

#include <QtCore/QtGlobal>

QT_FORWARD_DECLARE_CLASS(QWindow)

namespace kovalin::platform {

/// Whether a window is shown and not minimised; not for null. By its visibility, since a window that a widget draws says of
/// itself that it isn't visible, always. Main thread only; `QWindow::visibilityChanged` tells of changes.
[[nodiscard]] bool isOnScreen(const QWindow* window);

} // namespace kovalin::platform
