#include "kits/login/default/UserDataRequest.h"

#include <utility>

UserDataRequest::UserDataRequest(QByteArray body, QXSDKLoginClient::Success success, QXSDKLoginClient::Failure failure)
    : _body(std::move(body))
    , _success(std::move(success))
    , _failure(std::move(failure))
{
}

UserDataRequest::~UserDataRequest()
{
    fail(errorWithStatusCode(0, QStringLiteral("The query was given up"),
                             QStringLiteral("The login client or the application ended")),
         false);
}

void UserDataRequest::succeed(const QJsonObject& response)
{
    if (std::exchange(_failure, nullptr)) {
        std::exchange(_success, nullptr)(response);
    }
}

void UserDataRequest::fail(const QXSDKError& error, bool isLoggedOut)
{
    if (const auto failure = std::exchange(_failure, nullptr)) {
        _success = nullptr;
        failure(error, isLoggedOut);
    }
}

void UserDataRequest::failLoggedOut(const QString& reason)
{
    fail(logoutErrorWithReason(reason), true);
}
