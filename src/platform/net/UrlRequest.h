#pragma once

#include "platform/net/UrlError.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QUrl>

#include <chrono>
#include <optional>
#include <utility>

namespace kovalin::platform {

/// What to ask of a server. A value.
struct UrlRequest {
    enum class Method { Get, Post };

    static constexpr std::chrono::milliseconds kIdleTimeout = std::chrono::seconds(60);
    /// A quarter of a gibibyte: far above any model or picture, far below what a phone has.
    static constexpr qsizetype kMaxAnswerBytes = qsizetype(256) * 1024 * 1024;

    /// http or https, with a host.
    QUrl url;

    Method method = Method::Get;

    /// In the order in which they go out. A POST without "Content-Type" says "application/x-www-form-urlencoded".
    QList<std::pair<QByteArray, QByteArray>> headers = {};

    /// Goes out with a POST, byte for byte; a GET has none.
    QByteArray body = {};

    /// The task fails when for so long no byte has gone or come. Counted from the task's start, so waiting for one of
    /// the connections to a host (there are six) counts too. At least a millisecond, at most 24 days.
    std::chrono::milliseconds idleTimeout = kIdleTimeout;

    /// A longer body of the answer is a failure. Counted after decompression.
    qsizetype maxAnswerBytes = kMaxAnswerBytes;
};

/// Why `request` can't go out at all; absent if it can. Any thread.
[[nodiscard]] std::optional<UrlError> defectOf(const UrlRequest& request);

} // namespace kovalin::platform
