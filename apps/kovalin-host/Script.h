#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

namespace kovalin::host {

/// One line of a script. A value.
struct ScriptStep {
    int line = 0; // from 1
    QString command;
    /// As many as the command takes; those that were left out are empty.
    QStringList arguments = {};
};

/// The steps of a script: one a line, but for empty lines and those that begin with "#". Arguments are separated by spaces, and
/// one in double quotes may have some; a text or a rule is all that is left of the line. Throws cli::BadInput with the file's
/// name, the line and what is wrong with it.
[[nodiscard]] std::vector<ScriptStep> readScript(const QByteArray& text, const QString& file);

/// The text of a fault: "FILE:LINE: …".
[[nodiscard]] std::string scriptFault(const QString& file, int line, const QString& what);

} // namespace kovalin::host
