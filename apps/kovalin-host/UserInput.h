#pragma once

#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtQuick/QQuickWindow>

namespace kovalin::host {

// What a user does with a window, as events of it. Main thread.

void clickAt(QQuickWindow& window, const QPointF& point);

/// As from a touch pad, whose steps have no momentum: by so many points down, or up for less than 0.
void scrollAt(QQuickWindow& window, const QPointF& point, int points);

void typeInto(QQuickWindow& window, const QString& text);

/// As "Return" or "Ctrl+A".
void pressKey(QQuickWindow& window, const QString& name);

} // namespace kovalin::host
