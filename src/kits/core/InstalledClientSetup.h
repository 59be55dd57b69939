#pragma once

#include "kits/core/QXSDKClientSetup.h"

#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <memory>

/// The name under which the kits' notification centre tells that the client setup was replaced: on the thread that replaces it,
/// before `QXSDKClientSetup::setShared` returns. What is told of may have been replaced again by then; whoever hears it asks for
/// what is installed.
inline const QString kQXSDKClientSetupDidChangeNotification = QStringLiteral("kQXSDKClientSetupDidChangeNotification");

namespace kovalin::kits {

/// The setup of the process, and what those before it leave behind. A value.
struct InstalledClientSetup {
    QXSDKClientSetup setup = {};
    quint64 optOuts = 0; ///< how often analytics was switched off until now
};

/// Never null. Any thread.
[[nodiscard]] std::shared_ptr<const InstalledClientSetup> installedClientSetup();

/// Replaces the setup, and tells of it. Any thread, but not one that holds a lock which an observer wants.
void installClientSetup(QXSDKClientSetup setup);

} // namespace kovalin::kits
