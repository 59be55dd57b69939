#pragma once

#include "kits/login/QXSDKLoginClient.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>

#include <utility>

/// One query on its way to its answer. It calls one of its callbacks, exactly once: at the latest at its end, with a failure.
/// Whoever works on it holds it, so it ends wherever that work is dropped.
///
/// One thread at a time.
class UserDataRequest final {
public:
    UserDataRequest(QByteArray body, QXSDKLoginClient::Success success, QXSDKLoginClient::Failure failure);
    ~UserDataRequest();
    Q_DISABLE_COPY_MOVE(UserDataRequest)

    [[nodiscard]] const QByteArray& body() const { return _body; }

    /// True for the first call: a refused access token is replaced once.
    [[nodiscard]] bool takeRetry() { return !std::exchange(_isRetried, true); }

    // The end; what is called after the first end does nothing.

    void succeed(const QJsonObject& response);
    void fail(const QXSDKError& error, bool isLoggedOut);

    /// For want of an account.
    void failLoggedOut(const QString& reason);

private:
    const QByteArray _body;
    QXSDKLoginClient::Success _success;
    QXSDKLoginClient::Failure _failure; // null once ended
    bool _isRetried = false;
};
