#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QUrl>

#include <optional>
#include <utility>

namespace kovalin::platform {

/// The head of a server's answer. A value.
struct UrlResponse {
    int statusCode = 0;

    /// In the order in which they came; headers that came more than once are one, their values joined by ", " (those of
    /// "Set-Cookie" by a line break).
    QList<std::pair<QByteArray, QByteArray>> headers = {};

    /// Where the answer came from: after redirects not what was asked for.
    QUrl url;

    /// The value of the header `name`, whatever the case of either; absent if there is none.
    [[nodiscard]] std::optional<QByteArray> header(const QByteArray& name) const;
};

} // namespace kovalin::platform
