#include "kovalin-backend/accounts/AuthorizationRequest.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QUrl>
#include <QtNetwork/QHostAddress>

namespace kovalin::backend {

namespace {

constexpr int badRequest = 400;

/// Where a program of this machine can listen, and nobody else.
bool isLoopback(const QUrl& url)
{
    const bool isHere = url.host() == u"localhost" || QHostAddress(url.host()).isLoopback();
    return url.isValid() && url.scheme() == u"http" && isHere && url.userInfo().isEmpty() && !url.hasFragment();
}

bool isChallenge(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("\\A[A-Za-z0-9_-]{43}\\z")); // of 256 bits
    return form.match(text).hasMatch();
}

} // namespace

std::variant<AuthorizationRequest, Answer> AuthorizationRequest::fromValues(const FormValues& values)
{
    AuthorizationRequest request{.clientId = values.value(u"client_id"),
                                 .redirectUri = values.value(u"redirect_uri"),
                                 .state = values.value(u"state"),
                                 .challenge = values.value(u"code_challenge").toLatin1(),
                                 .scopes = values.value(u"scope").split(u' ', Qt::SkipEmptyParts)};
    if (!isLoopback(QUrl(request.redirectUri, QUrl::StrictMode))) {
        return Answer::text(badRequest, QStringLiteral("The redirect_uri is no http address of this machine"));
    }
    if (request.clientId.isEmpty()) {
        return Answer::text(badRequest, QStringLiteral("The client_id is missing"));
    }
    if (values.value(u"response_type") != u"code") {
        return request.redirect({{"error", QStringLiteral("unsupported_response_type")},
                                 {"error_description", QStringLiteral("The response_type must be code")}});
    }
    if (values.value(u"code_challenge_method") != u"S256" || !isChallenge(values.value(u"code_challenge"))) {
        return request.redirect({{"error", QStringLiteral("invalid_request")},
                                 {"error_description", QStringLiteral("A code_challenge of method S256 is needed")}});
    }
    return request;
}

Answer AuthorizationRequest::redirect(const QList<std::pair<QByteArray, QString>>& values) const
{
    constexpr int found = 302;
    QByteArray address = QUrl(redirectUri, QUrl::StrictMode).toEncoded();
    const auto add = [&address](const QByteArray& name, const QString& value) {
        address += (address.contains('?') ? '&' : '?') + name + '=' + QUrl::toPercentEncoding(value);
    };
    for (const auto& [name, value] : values) {
        add(name, value);
    }
    if (!state.isEmpty()) {
        add(QByteArrayLiteral("state"), state);
    }
    Answer answer = Answer::plain(found);
    answer.headers.emplaceBack(QByteArrayLiteral("Location"), address);
    answer.headers.emplaceBack(QByteArrayLiteral("Cache-Control"), QByteArrayLiteral("no-store"));
    return answer;
}

bool isAvatarScope(const QString& scope)
{
    return scope.endsWith(u"/oauth2/api/user.kovalin.avatar");
}

} // namespace kovalin::backend
