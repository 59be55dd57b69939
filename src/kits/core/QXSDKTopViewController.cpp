#include "kits/core/QXSDKTopViewController.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>

#include <algorithm>

QObject* topViewController()
{
    if (QWindow* const focused = QGuiApplication::focusWindow()) {
        return focused;
    }
    const QWindowList windows = QGuiApplication::topLevelWindows();
    const auto shown = std::ranges::find_if(windows, [](const QWindow* window) { return window->isVisible(); });
    return shown == windows.end() ? nullptr : *shown;
}
