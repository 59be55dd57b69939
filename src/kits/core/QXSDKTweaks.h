#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QtGlobal>

#include <functional>

QT_FORWARD_DECLARE_CLASS(QObject)

/// Adds a gesture to a picker's view that opens the settings of a host's own developers.
using QXSDKTweaksGesture = std::function<void(QObject& pickerView)>;

/// Has it called for each picker whose view is loaded from here on, once; empty for none, as at first. The view is a
/// `QQuickItem`, which belongs to its picker. Main thread only.
QXSDKKOVALINKIT_EXPORT void setTweaksGesture(QXSDKTweaksGesture gesture);

/// Called by a picker once its view is loaded. Main thread only.
void addTweaksGesture(QObject& pickerView);
