#pragma once

#include "kits/core/QXSDKClientSetup.h"
#include "kits/login/default/OAuthLink.h"
#include "platform/net/UrlRequest.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

#include <chrono>
#include <optional>

// What is asked of the servers, in the words of RFC 6749, 7009 and 7636. Any thread.

/// What one login is made of.
struct LoginSecrets {
    QByteArray verifier;
    QByteArray state;
    QString redirectUri;
};

/// The page on which the user links the account; not valid where the authentication service isn't set up.
[[nodiscard]] QUrl authorizationUrl(const QXSDKClientSetup& setup, const LoginSecrets& secrets,
                                    const QStringList& scopes);

/// The token for `code`.
[[nodiscard]] kovalin::platform::UrlRequest codeRequest(const QXSDKClientSetup& setup, const LoginSecrets& secrets,
                                                        const QString& code, std::chrono::milliseconds timeout);

/// A new access token. Requires: the link has a refresh token.
[[nodiscard]] kovalin::platform::UrlRequest refreshRequest(const QXSDKClientSetup& setup, const OAuthLink& link,
                                                           std::chrono::milliseconds timeout);

/// The end of a link: of its refresh token where there is one, which takes the access token along.
[[nodiscard]] kovalin::platform::UrlRequest revocationRequest(const QXSDKClientSetup& setup, const OAuthLink& link,
                                                              std::chrono::milliseconds timeout);

/// The body of a query.
[[nodiscard]] QByteArray userDataBody(const QString& query, const std::optional<QJsonObject>& variables);

/// A query in the name of the account.
[[nodiscard]] kovalin::platform::UrlRequest userDataRequest(const QXSDKClientSetup& setup, const OAuthLink& link,
                                                            const QByteArray& body, std::chrono::milliseconds timeout);
