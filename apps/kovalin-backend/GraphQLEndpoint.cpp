#include "kovalin-backend/GraphQLEndpoint.h"

#include "kovalin-backend/GraphQLRequest.h"
#include "kovalin-backend/accounts/AuthorizationRequest.h"

#include <QtCore/QJsonArray>
#include <QtCore/QSet>

#include <algorithm>
#include <optional>

namespace kovalin::backend {

namespace {

constexpr int badRequest = 400;
constexpr int unauthorized = 401;

Answer validationError(const QString& message)
{
    const QJsonObject error{{QStringLiteral("errorType"), QStringLiteral("ValidationError")},
                            {QStringLiteral("message"), message}};
    return Answer::json({{QStringLiteral("errors"), QJsonArray{error}}});
}

Answer data(const QString& name, const QJsonValue& value)
{
    return Answer::json({{QStringLiteral("data"), QJsonObject{{name, value}}}});
}

std::optional<GrantedAccess> accessOf(const Request& request, const Grants& grants)
{
    const QByteArray scheme = QByteArrayLiteral("Bearer ");
    const QByteArray credentials = request.header("Authorization").value_or(QByteArray());
    const bool isBearer = credentials.first(std::min(credentials.size(), scheme.size())).toLower() == scheme.toLower();
    return isBearer ? grants.access(credentials.sliced(scheme.size()).trimmed()) : std::nullopt;
}

std::optional<Account> accountOf(const ContentFolder& content, const QString& id)
{
    const QList<Account> accounts = content.accounts();
    const auto found = std::ranges::find_if(accounts, [&id](const Account& account) { return account.id == id; });
    return found != accounts.end() ? std::optional(*found) : std::nullopt;
}

Answer loginNeeded()
{
    Answer answer = Answer::text(unauthorized, QStringLiteral("There is no access token, or it isn't good any more"));
    answer.headers.emplaceBack(QByteArrayLiteral("WWW-Authenticate"), QByteArrayLiteral("Bearer"));
    return answer;
}

/// Absent when they fit the document: a page, and a time and a locale unless they are left out.
std::optional<QString> packsVariablesFault(const QJsonObject& variables)
{
    if (!variables.value(u"page").isString()) {
        return QStringLiteral("The variable \"page\" is no text");
    }
    for (const QString& name : {QStringLiteral("time"), QStringLiteral("locale")}) {
        const QJsonValue value = variables.value(name);
        if (!value.isString() && !value.isNull() && !value.isUndefined()) {
            return QStringLiteral("The variable \"%1\" is no text").arg(name);
        }
    }
    return std::nullopt;
}

QString filledIn(QByteArray packs, const QUrl& baseUrl, const QString& avatarId)
{
    packs.replace("{base}", baseUrl.toEncoded());
    packs.replace("{avatar}", QUrl::toPercentEncoding(avatarId));
    return QString::fromUtf8(packs);
}

Answer aboutMe(const ContentFolder& content, const QUrl& baseUrl, const GraphQLRequest& request,
               const std::optional<QString>& avatarId)
{
    QJsonObject kovalin;
    if (request.operation() == GraphQLRequest::Operation::Packs) {
        if (const auto fault = packsVariablesFault(request.variables)) {
            return validationError(*fault);
        }
        if (avatarId) {
            kovalin.insert(QStringLiteral("packs"), filledIn(content.packs(), baseUrl, *avatarId));
        }
    } else if (avatarId) {
        kovalin.insert(QStringLiteral("avatar"),
                       QStringLiteral("%1/avatars/%2.png")
                           .arg(baseUrl.toString(), QString::fromLatin1(QUrl::toPercentEncoding(*avatarId))));
    }
    return data(QStringLiteral("me"), QJsonObject{{QStringLiteral("kovalin"), kovalin}});
}

Answer aboutUsers(const ContentFolder& content, const QJsonObject& variables)
{
    const QJsonValue ids = variables.value(u"externalIds");
    const QJsonArray asked = ids.toArray();
    if (!ids.isArray() || !std::all_of(asked.begin(), asked.end(), [](const auto& id) { return id.isString(); })) {
        return validationError(QStringLiteral("The variable \"externalIds\" is no list of texts"));
    }
    const KnownUsers known = content.users();
    QSet<QString> told;
    QJsonArray users;
    for (const QJsonValue& value : asked) {
        const QString id = value.toString();
        const auto user = known.constFind(id);
        if (user == known.constEnd() || told.contains(id)) {
            continue;
        }
        told.insert(id);
        const QJsonObject kovalin = *user ? QJsonObject{{QStringLiteral("id"), **user}} : QJsonObject();
        users.append(QJsonObject{{QStringLiteral("externalId"), id}, {QStringLiteral("kovalin"), kovalin}});
    }
    return data(QStringLiteral("users"), users);
}

Answer answer(const ContentFolder& content, const Grants& grants, const QUrl& baseUrl, const Request& received)
{
    const auto access = accessOf(received, grants);
    const auto account = access ? accountOf(content, access->accountId) : std::nullopt;
    if (!account) {
        return loginNeeded();
    }
    const auto request = GraphQLRequest::fromBody(received.body);
    if (!request) {
        return Answer::text(badRequest, QStringLiteral("The body is no GraphQL request in JSON"));
    }
    if (!request->operation()) {
        return validationError(QStringLiteral("The document is none of those that this server knows"));
    }
    if (request->operation() == GraphQLRequest::Operation::Users) {
        return aboutUsers(content, request->variables);
    }
    if (std::ranges::none_of(access->scopes, isAvatarScope)) {
        return validationError(QStringLiteral("The token has no scope for the avatar"));
    }
    return aboutMe(content, baseUrl, *request, account->avatarId);
}

} // namespace

void addGraphQLEndpoint(Endpoints& endpoints, const std::shared_ptr<const ContentFolder>& content,
                        const std::shared_ptr<const Grants>& grants, const QUrl& baseUrl)
{
    endpoints.add(QByteArrayLiteral("POST"), QStringLiteral("/api/graphql"),
                  [content, grants, baseUrl](const Request& request, const QList<QString>&) {
                      return answer(*content, *grants, baseUrl, request);
                  });
}

} // namespace kovalin::backend
