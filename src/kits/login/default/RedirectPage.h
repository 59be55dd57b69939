#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// What the browser shows at the end of a login: that one may go back to the application. The whole answer, head and body.
/// `applicationName` may hold anything and may be empty.
[[nodiscard]] QByteArray redirectPage(const QString& applicationName);

/// A refusal with an empty body, as "404 Not Found".
[[nodiscard]] QByteArray refusal(const QByteArray& status);
