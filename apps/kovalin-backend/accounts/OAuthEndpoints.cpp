#include "kovalin-backend/accounts/OAuthEndpoints.h"

#include "kovalin-backend/accounts/AuthorizationPage.h"
#include "kovalin-backend/accounts/AuthorizationRequest.h"
#include "kovalin-backend/accounts/FormValues.h"

#include <algorithm>
#include <optional>
#include <variant>

namespace kovalin::backend {

namespace {

constexpr int ok = 200;
constexpr int noContent = 204;
constexpr int badRequest = 400;

/// Tokens must not stay in a cache (RFC 6749, 5.1).
Answer notStored(Answer answer)
{
    answer.headers.emplaceBack(QByteArrayLiteral("Cache-Control"), QByteArrayLiteral("no-store"));
    return answer;
}

Answer refusal(const QString& error, const QString& description)
{
    Answer answer =
        Answer::json({{QStringLiteral("error"), error}, {QStringLiteral("error_description"), description}});
    answer.status = badRequest;
    return notStored(std::move(answer));
}

/// The one that was asked for, or the first where none was; null where there is no such account.
const Account* chosenAccount(const QList<Account>& accounts, const QString& id)
{
    const auto found =
        std::ranges::find_if(accounts, [&id](const Account& account) { return id.isEmpty() || account.id == id; });
    return found != accounts.end() ? &*found : nullptr;
}

Answer approve(Grants& grants, const AuthorizationRequest& request, const Account& account, bool withAvatar)
{
    QStringList scopes = request.scopes;
    if (!withAvatar) {
        scopes.removeIf(isAvatarScope);
    }
    const QByteArray code = grants.add({.clientId = request.clientId,
                                        .redirectUri = request.redirectUri,
                                        .challenge = request.challenge,
                                        .accountId = account.id,
                                        .scopes = scopes});
    return request.redirect({{"code", QString::fromLatin1(code)}});
}

Answer authorize(const ContentFolder& content, Grants& grants, const Request& received)
{
    const FormValues values(received.query);
    const auto read = AuthorizationRequest::fromValues(values);
    if (const auto* answer = std::get_if<Answer>(&read)) {
        return *answer;
    }
    const auto& request = std::get<AuthorizationRequest>(read);
    const QString choice = values.value(u"auto");
    const bool withAvatar = choice == u"approve";
    const QList<Account> accounts = content.accounts();
    if (choice.isEmpty()) {
        return authorizationPage(request, values, accounts);
    }
    if (choice == u"deny") {
        return request.redirect({{"error", QStringLiteral("access_denied")}});
    }
    if (!withAvatar && choice != u"approve-without-scope") {
        return Answer::text(
            badRequest, QStringLiteral("\"auto\" is approve, deny or approve-without-scope, not \"%1\"").arg(choice));
    }
    const Account* const account = chosenAccount(accounts, values.value(u"account"));
    return account
               ? approve(grants, request, *account, withAvatar)
               : Answer::text(badRequest, QStringLiteral("There is no account \"%1\"").arg(values.value(u"account")));
}

Answer tokenAnswer(const std::optional<IssuedTokens>& tokens)
{
    if (!tokens) {
        return refusal(QStringLiteral("invalid_grant"),
                       QStringLiteral("It is unknown, used, too old or another client's"));
    }
    return notStored(Answer::json({{QStringLiteral("access_token"), QString::fromLatin1(tokens->accessToken)},
                                   {QStringLiteral("token_type"), QStringLiteral("Bearer")},
                                   {QStringLiteral("expires_in"), static_cast<qint64>(tokens->accessTokenLife.count())},
                                   {QStringLiteral("refresh_token"), QString::fromLatin1(tokens->refreshToken)},
                                   {QStringLiteral("scope"), tokens->scopes.join(u' ')}}));
}

Answer giveTokens(Grants& grants, const Request& received)
{
    const FormValues values(received.body);
    const QString type = values.value(u"grant_type");
    const bool isFirst = type == u"authorization_code";
    if (!type.isEmpty() && !isFirst && type != u"refresh_token") {
        return refusal(QStringLiteral("unsupported_grant_type"),
                       QStringLiteral("The grant_type is authorization_code or refresh_token"));
    }
    const QStringList needed = isFirst ? QStringList{QStringLiteral("code"), QStringLiteral("redirect_uri"),
                                                     QStringLiteral("client_id"), QStringLiteral("code_verifier")}
                                       : QStringList{QStringLiteral("grant_type"), QStringLiteral("refresh_token"),
                                                     QStringLiteral("client_id")};
    for (const QString& name : needed) {
        if (values.value(name).isEmpty()) {
            return refusal(QStringLiteral("invalid_request"), QStringLiteral("The %1 is missing").arg(name));
        }
    }
    if (isFirst) {
        return tokenAnswer(grants.redeem({.code = values.value(u"code").toLatin1(),
                                          .clientId = values.value(u"client_id"),
                                          .redirectUri = values.value(u"redirect_uri"),
                                          .verifier = values.value(u"code_verifier").toLatin1()}));
    }
    return tokenAnswer(grants.refresh(values.value(u"refresh_token").toLatin1(), values.value(u"client_id")));
}

Answer revoke(Grants& grants, const Request& received)
{
    const QString token = FormValues(received.body).value(u"token");
    if (token.isEmpty()) {
        return refusal(QStringLiteral("invalid_request"), QStringLiteral("The token is missing"));
    }
    grants.revoke(token.toLatin1());
    return Answer::empty(ok);
}

} // namespace

void addOAuthEndpoints(Endpoints& endpoints, const std::shared_ptr<const ContentFolder>& content,
                       const std::shared_ptr<Grants>& grants)
{
    const QByteArray post = QByteArrayLiteral("POST");
    endpoints.add(QByteArrayLiteral("GET"), QStringLiteral("/accounts/oauth2/authorize"),
                  [content, grants](const Request& request, const QList<QString>&) {
                      return authorize(*content, *grants, request);
                  });
    endpoints.add(post, QStringLiteral("/accounts/oauth2/token"),
                  [grants](const Request& request, const QList<QString>&) { return giveTokens(*grants, request); });
    endpoints.add(post, QStringLiteral("/accounts/oauth2/revoke"),
                  [grants](const Request& request, const QList<QString>&) { return revoke(*grants, request); });
    endpoints.add(post, QStringLiteral("/control/expire-tokens"), [grants](const Request&, const QList<QString>&) {
        grants->expireAccessTokens();
        return Answer::empty(noContent);
    });
}

} // namespace kovalin::backend
