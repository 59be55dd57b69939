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

/// The error for a user who is not logged in. Its number is that of an HTTP answer to a request without credentials.
[[nodiscard]] inline QXSDKError logoutErrorWithReason(const QString& reason)
{
    return {401, QStringLiteral("The user is not logged in"), reason};
}
