#include "kits/login/default/OAuthLink.h"

#include "platform/foundation/Json.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>

using namespace kovalin::platform;

namespace {

// Fetched this long before its end, an access token doesn't run out on its way; of short-lived ones a tenth is given up.
constexpr double kMarginSeconds = 60;
constexpr double kMarginShare = 0.1;

// The number stands for what the fields mean.
constexpr int kSecretVersion = 1;

/// A token as it may stand in a header (RFC 6749, appendix A.12, without the space); absent for any other.
std::optional<QByteArray> tokenIn(const QJsonObject& object, QStringView key)
{
    const auto text = jsonString(object, key);
    const auto isVisible = [](QChar c) {
        return c > u' ' && c <= u'~';
    };
    if (!text || text->isEmpty() || !std::ranges::all_of(*text, isVisible)) {
        return std::nullopt;
    }
    return text->toLatin1();
}

std::optional<double> refreshTimeOf(const QJsonObject& answer, double now)
{
    const auto seconds = jsonNumber(answer, u"expires_in");
    if (!seconds || *seconds < 0) {
        return std::nullopt;
    }
    return now + *seconds - std::min(kMarginSeconds, *seconds * kMarginShare);
}

} // namespace

std::optional<OAuthLink> linkFromTokenAnswer(const QByteArray& body, const QStringList& scopesAsked, double now)
{
    const QJsonObject answer = QJsonDocument::fromJson(body).object();
    const auto token = tokenIn(answer, u"access_token");
    const QString type = jsonString(answer, u"token_type").value_or(QStringLiteral("Bearer"));
    if (!token || type.compare(u"Bearer", Qt::CaseInsensitive) != 0) {
        return std::nullopt;
    }
    const auto scope = jsonString(answer, u"scope");
    return OAuthLink{
        .accessToken = *token,
        .refreshToken = tokenIn(answer, u"refresh_token"),
        .refreshTime = refreshTimeOf(answer, now),
        .scopes = scope ? scope->split(u' ', Qt::SkipEmptyParts) : scopesAsked,
    };
}

std::optional<OAuthLink> refreshedLink(const OAuthLink& link, const QByteArray& body, double now)
{
    auto refreshed = linkFromTokenAnswer(body, link.scopes, now);
    if (refreshed) {
        if (!refreshed->refreshToken) {
            refreshed->refreshToken = link.refreshToken;
        }
        refreshed->authenticationBaseUrl = link.authenticationBaseUrl;
    }
    return refreshed;
}

QByteArray secretOf(const OAuthLink& link)
{
    QJsonObject object{
        {QStringLiteral("version"), kSecretVersion},
        {QStringLiteral("accessToken"), QString::fromLatin1(link.accessToken)},
        {QStringLiteral("scopes"), QJsonArray::fromStringList(link.scopes)},
        {QStringLiteral("authenticationBaseUrl"), link.authenticationBaseUrl},
    };
    if (link.refreshToken) {
        object.insert(QStringLiteral("refreshToken"), QString::fromLatin1(*link.refreshToken));
    }
    if (link.refreshTime) {
        object.insert(QStringLiteral("refreshTime"), *link.refreshTime);
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<OAuthLink> linkFromSecret(const QByteArray& secret)
{
    const QJsonObject object = QJsonDocument::fromJson(secret).object();
    const auto token = tokenIn(object, u"accessToken");
    const auto scopes = jsonStringList(object, u"scopes");
    const auto address = jsonString(object, u"authenticationBaseUrl");
    if (jsonNumber(object, u"version") != kSecretVersion || !token || !scopes || !address) {
        return std::nullopt;
    }
    return OAuthLink{
        .accessToken = *token,
        .refreshToken = tokenIn(object, u"refreshToken"),
        .refreshTime = jsonNumber(object, u"refreshTime"),
        .scopes = *scopes,
        .authenticationBaseUrl = *address,
    };
}
