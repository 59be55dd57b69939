#pragma once

#include <QtCore/QString>

namespace kovalin::platform {

/// The folder for data that the system may drop when space is short, without a slash at its end. What the host set, or else the
/// application's own folder of that kind. Any thread.
[[nodiscard]] QString cachesDirectory();

/// Sets the folder; an empty text brings back the application's own. To be called before anything is stored: whoever has a path
/// keeps it. Any thread.
void setCachesDirectory(const QString& path);

} // namespace kovalin::platform
