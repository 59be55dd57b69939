#pragma once

#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include <optional>

namespace kovalin::host {

/// What the program is asked for on its command line. A value.
struct HostOptions {
    QString scriptFile = {};    ///< empty: a person uses the window
    QString outFolder = {};     ///< where a script leaves its files
    QString contentFolder = {}; ///< what the embedded server serves, and whom one can write to
    QString cachesFolder = {};  ///< the library's; exists

    /// Whether the account link is kept in the caches folder, for another start with the same folder.
    bool keepsLogin = false;

    /// Absent: a server of its own.
    std::optional<QUrl> backend = std::nullopt;

    bool isDark = false;
    bool isMirrored = false;
    int pickers = 1;
    int icons = 1;
    QSize size{412, 760}; ///< of the window, in points

    [[nodiscard]] bool isScripted() const { return !scriptFile.isEmpty(); }
};

} // namespace kovalin::host
