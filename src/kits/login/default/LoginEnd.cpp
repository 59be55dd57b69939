#include "kits/login/default/LoginEnd.h"

#include <utility>

LoginEnd::LoginEnd(QXSDKLoginClient::LoginCompletion completion)
    : _completion(std::move(completion))
{
}

LoginEnd::~LoginEnd()
{
    tell(
        errorWithStatusCode(0, QStringLiteral("The account can't be linked"), QStringLiteral("The application ended")));
}

void LoginEnd::tell(const std::optional<QXSDKError>& error)
{
    if (const auto completion = std::exchange(_completion, nullptr)) {
        completion(error);
    }
}
