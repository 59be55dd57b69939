#include "platform/ui/WindowVisibility.h"

#include <QtGui/QWindow>

namespace kovalin::platform {

bool isOnScreen(const QWindow* window)
{
    return window && window->visibility() != QWindow::Hidden && window->visibility() != QWindow::Minimized;
}

} // namespace kovalin::platform
