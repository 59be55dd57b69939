#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QString>

#include <utility>

namespace kovalin::backend {

/// What the server says to a request. A value.
struct Answer {
    int status = 200;

    /// Beside "Content-Length", which is added where the status has a body.
    QList<std::pair<QByteArray, QByteArray>> headers = {};

    QByteArray body = {};

    /// Status line and headers, with the empty line behind them.
    [[nodiscard]] QByteArray head() const;

    /// A status without a body.
    [[nodiscard]] static Answer empty(int status);
    /// One line of plain text, without its end.
    [[nodiscard]] static Answer text(int status, const QString& line);
    /// The name of the status as text, or nothing where it has no body.
    [[nodiscard]] static Answer plain(int status);
    [[nodiscard]] static Answer json(const QJsonObject& object);
    [[nodiscard]] static Answer json(QByteArray document);
    [[nodiscard]] static Answer bytes(QByteArray bytes);
    [[nodiscard]] static Answer png(QByteArray picture);
};

} // namespace kovalin::backend
