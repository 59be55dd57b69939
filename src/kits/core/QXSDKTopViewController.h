#pragma once

#include <QtCore/QtGlobal>

QT_FORWARD_DECLARE_CLASS(QObject)

/// What is to be presented from: the window that has the focus, else one that is shown; null where there is none.
/// Main thread only; belongs to the host, and is for use at once.
[[nodiscard]] QObject* topViewController();
