#include "kits/login/default/OAuthRequests.h"

#include "kits/login/default/Pkce.h"

#include <QtCore/QJsonDocument>

#include <initializer_list>
#include <utility>

using kovalin::platform::UrlRequest;

namespace {

// A token's answer has some kilobytes.
constexpr qsizetype kMaxTokenAnswerBytes = qsizetype(1024) * 1024;

// The packs of ten thousand stickers have some megabytes.
constexpr qsizetype kMaxUserDataBytes = qsizetype(32) * 1024 * 1024;

using Fields = std::initializer_list<std::pair<const char*, QString>>;

/// Everything but letters, digits, "-", ".", "_" and "~" is percent-encoded, which each reader of a form or a query understands.
QByteArray encoded(Fields fields)
{
    QByteArray form;
    for (const auto& [name, value] : fields) {
        if (!form.isEmpty()) {
            form += '&';
        }
        form += name;
        form += '=';
        form += QUrl::toPercentEncoding(value);
    }
    return form;
}

UrlRequest formRequest(const QString& address, Fields fields, std::chrono::milliseconds timeout)
{
    return {
        .url = QUrl(address, QUrl::StrictMode),
        .method = UrlRequest::Method::Post,
        .headers = {{QByteArrayLiteral("Accept"), QByteArrayLiteral("application/json")}},
        .body = encoded(fields),
        .idleTimeout = timeout,
        .maxAnswerBytes = kMaxTokenAnswerBytes,
    };
}

QString tokenAddress(const QXSDKClientSetup& setup)
{
    return setup.authenticationBaseUrl + QStringLiteral("/oauth2/token");
}

} // namespace

QUrl authorizationUrl(const QXSDKClientSetup& setup, const LoginSecrets& secrets, const QStringList& scopes)
{
    QUrl url(setup.authenticationBaseUrl + QStringLiteral("/oauth2/authorize"), QUrl::StrictMode);
    const bool isWeb = url.scheme() == QStringLiteral("https") || url.scheme() == QStringLiteral("http");
    if (!isWeb || url.host().isEmpty()) {
        return {};
    }
    url.setQuery(QString::fromLatin1(encoded({
        {"response_type", QStringLiteral("code")},
        {"client_id", setup.clientId},
        {"redirect_uri", secrets.redirectUri},
        {"scope", scopes.join(u' ')},
        {"state", QString::fromLatin1(secrets.state)},
        {"code_challenge", QString::fromLatin1(challengeOf(secrets.verifier))},
        {"code_challenge_method", QStringLiteral("S256")},
    })));
    return url;
}

UrlRequest codeRequest(const QXSDKClientSetup& setup, const LoginSecrets& secrets, const QString& code,
                       std::chrono::milliseconds timeout)
{
    return formRequest(tokenAddress(setup),
                       {
                           {"grant_type", QStringLiteral("authorization_code")},
                           {"code", code},
                           {"redirect_uri", secrets.redirectUri},
                           {"client_id", setup.clientId},
                           {"code_verifier", QString::fromLatin1(secrets.verifier)},
                       },
                       timeout);
}

UrlRequest refreshRequest(const QXSDKClientSetup& setup, const OAuthLink& link, std::chrono::milliseconds timeout)
{
    return formRequest(tokenAddress(setup),
                       {
                           {"grant_type", QStringLiteral("refresh_token")},
                           {"refresh_token", QString::fromLatin1(*link.refreshToken)},
                           {"client_id", setup.clientId},
                       },
                       timeout);
}

UrlRequest revocationRequest(const QXSDKClientSetup& setup, const OAuthLink& link, std::chrono::milliseconds timeout)
{
    const bool isRefreshToken = link.refreshToken.has_value();
    return formRequest(
        setup.authenticationBaseUrl + QStringLiteral("/oauth2/revoke"),
        {
            {"token", QString::fromLatin1(isRefreshToken ? *link.refreshToken : link.accessToken)},
            {"token_type_hint", isRefreshToken ? QStringLiteral("refresh_token") : QStringLiteral("access_token")},
            {"client_id", setup.clientId},
        },
        timeout);
}

QByteArray userDataBody(const QString& query, const std::optional<QJsonObject>& variables)
{
    QJsonObject body{{QStringLiteral("query"), query}};
    if (variables) {
        body.insert(QStringLiteral("variables"), *variables);
    }
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

UrlRequest userDataRequest(const QXSDKClientSetup& setup, const OAuthLink& link, const QByteArray& body,
                           std::chrono::milliseconds timeout)
{
    return {
        .url = QUrl(setup.apiBaseUrl + QStringLiteral("/graphql"), QUrl::StrictMode),
        .method = UrlRequest::Method::Post,
        .headers =
            {
                {QByteArrayLiteral("Authorization"), QByteArrayLiteral("Bearer ") + link.accessToken},
                {QByteArrayLiteral("Content-Type"), QByteArrayLiteral("application/json")},
                {QByteArrayLiteral("Accept"), QByteArrayLiteral("application/json")},
            },
        .body = body,
        .idleTimeout = timeout,
        .maxAnswerBytes = kMaxUserDataBytes,
    };
}
