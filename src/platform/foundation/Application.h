#pragma once

#include "platform/foundation/NotificationCenter.h"

#include <QtCore/QString>

namespace kovalin::platform {

enum class ApplicationState {
    Active = 0,     ///< In front, with the user's input.
    Inactive = 1,   ///< Visible, without the user's input.
    Background = 2, ///< Not visible; may be suspended at any time.
};

/// The names under which the default notification centre tells of the application, on the main thread.
inline const QString UIApplicationDidBecomeActiveNotification =
    QStringLiteral("UIApplicationDidBecomeActiveNotification");
inline const QString UIApplicationWillResignActiveNotification =
    QStringLiteral("UIApplicationWillResignActiveNotification");

/// Whether the host is in front, as the system tells it, or as the host itself does.
///
/// Follows `QGuiApplication::applicationStateChanged` of each application object, which counts as active until it tells otherwise,
/// and goes to the background when it is about to quit. Without windows nothing else is told.
class Application final {
public:
    /// Any thread.
    [[nodiscard]] static ApplicationState state();

    /// Main thread. Takes over the state and tells of it: "will resign active" when it leaves `Active`, "did become active"
    /// when it comes to it; nothing when it is the same. For hosts that know more than the system tells; what the system
    /// tells next holds again.
    static void setState(ApplicationState state);
};

} // namespace kovalin::platform
