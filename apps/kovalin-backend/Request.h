#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>
#include <utility>

namespace kovalin::backend {

/// A request as it arrived. A value.
struct Request {
    /// In capitals; "UNKNOWN" for a method that HTTP doesn't have.
    QByteArray method;

    /// What stands before and behind "?", percent-encoded.
    QByteArray path;
    QByteArray query = {};

    /// In the order in which they came.
    QList<std::pair<QByteArray, QByteArray>> headers = {};

    QByteArray body = {};

    /// Path and query as one.
    [[nodiscard]] QByteArray target() const;

    /// The value of the header `name`, whatever the case of either; absent if there is none.
    [[nodiscard]] std::optional<QByteArray> header(const QByteArray& name) const;

    /// The decoded value of `name` in the query, the first one; absent if there is none.
    [[nodiscard]] std::optional<QString> queryValue(const QString& name) const;

    /// The decoded pieces of the path between its slashes: "/a/b%2Fc" has "a" and "b/c".
    [[nodiscard]] QList<QString> pathParts() const;
};

} // namespace kovalin::backend
