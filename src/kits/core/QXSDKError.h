#pragma once

#include <QtCore/QString>

/// What went wrong. A plain value.
struct QXSDKError {
    /// The number of the failure, an HTTP status where it was an answer of a server.
    int statusCode = 0;
    /// For people: what happened.
    QString description;
    /// For people: why.
    QString reason;

    /// The same number as `statusCode`.
    [[nodiscard]] int code() const { return statusCode; }

    friend bool operator==(const QXSDKError&, const QXSDKError&) = default;
};

[[nodiscard]] inline QXSDKError errorWithStatusCode(int statusCode, const QString& description, const QString& reason)
{
    return {statusCode, description, reason};
}
