#include "content/QXSDKKovalinClient.h"

#include "content/ClientAnswers.h"
#include "content/ClientMetrics.h"
#include "content/QXSDKKovalinClientRequiredScope.h"
#include "kits/login/QXSDKLoginClient.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/foundation/Clock.h"
#include "platform/foundation/Json.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QLocale>

#include <utility>

using namespace kovalin::platform;

namespace {

const auto avatarQuery = QStringLiteral("{me{kovalin{avatar}}}");
const auto packsQuery = QStringLiteral("query ($page: String!, $time: String, $locale: String)"
                                       "{me{kovalin{packs(page: $page, time: $time, locale: $locale)}}}");
const auto avatarIdsQuery =
    QStringLiteral("query ($externalIds: [String!]!){users(externalIds: $externalIds) {externalId, kovalin{id}}}");

/// The first of the languages that the user prefers, as "en-US".
QString preferredLanguage()
{
    const QStringList languages = QLocale::system().uiLanguages();
    const bool isTold = !languages.isEmpty() && languages.first() != QStringLiteral("C");
    return isTold ? languages.first() : QStringLiteral("en");
}

/// Goes on in a later turn of the main thread's event loop.
template <class Completion, class Result>
void complete(const Completion& completion, const Result& result, const std::optional<QXSDKError>& error)
{
    dispatchMain([completion, result, error] { completion(result, error); });
}

/// A failure that completes with the error alone; what the flag says stays within the library.
template <class Result, class Completion>
std::function<void(const QXSDKError&, bool)> completingFailure(const Completion& completion)
{
    return [completion](const QXSDKError& error, bool) {
        complete(completion, std::optional<Result>(), error);
    };
}

} // namespace

void QXSDKKovalinClient::fetchAvatarURLWithCompletion(AvatarURLCompletion completion)
{
    auto failure = completingFailure<QString>(completion);
    _fetchKovalinDataWithQuery(
        avatarQuery, std::nullopt, QStringLiteral("request:avatar"),
        [completion = std::move(completion)](const QJsonObject& data) {
            complete(completion, jsonString(data, u"avatar"), std::nullopt);
        },
        std::move(failure));
}

void QXSDKKovalinClient::fetchStickersWithCompletion(StickersCompletion completion)
{
    const QJsonObject variables{{QStringLiteral("page"), QStringLiteral("kovalin-app")},
                                {QStringLiteral("time"), _dateString()},
                                {QStringLiteral("locale"), preferredLanguage()}};
    auto failure = completingFailure<KovalinPackList>(completion);
    _fetchKovalinDataWithQuery(
        packsQuery, variables, QStringLiteral("request:packs"),
        [completion = std::move(completion)](const QJsonObject& data) {
            const auto json = jsonString(data, u"packs");
            const auto packs = json ? _packsFromJsonString(*json) : std::nullopt;
            std::optional<QXSDKError> error;
            if (json && !packs) {
                error = errorWithStatusCode(500, QStringLiteral("Invalid Packs Response"),
                                            QStringLiteral("Could not parse json"));
            }
            complete(completion, packs, error);
        },
        std::move(failure));
}

void QXSDKKovalinClient::fetchAvatarIdsForUserIds(const QStringList& userIds, AvatarIdsCompletion completion)
{
    const QJsonObject variables{{QStringLiteral("externalIds"), QJsonArray::fromStringList(userIds)}};
    auto failure = completingFailure<QXSDKKovalinAvatarIds>(completion);
    _fetchUsersKovalinDataWithQuery(
        avatarIdsQuery, variables, QStringLiteral("request:externalAvatars"),
        [completion = std::move(completion)](const QHash<QString, QJsonObject>& kovalinByUser) {
            QXSDKKovalinAvatarIds avatarIds;
            avatarIds.reserve(kovalinByUser.size());
            for (auto user = kovalinByUser.cbegin(); user != kovalinByUser.cend(); ++user) {
                avatarIds.insert(user.key(), jsonString(user.value(), u"id"));
            }
            complete(completion, std::optional(std::move(avatarIds)), std::nullopt);
        },
        std::move(failure));
}

void QXSDKKovalinClient::_fetchKovalinDataWithQuery(const QString& query, const std::optional<QJsonObject>& variables,
                                                    const QString& metricsKey, DataSuccess success, Failure failure)
{
    const auto loginClient = QXSDKLoginClient::shared();
    if (!loginClient->isUserLoggedIn()) {
        failure(logoutErrorWithReason(QStringLiteral("No user account linked")), true);
        return;
    }
    if (!loginClient->hasAccessToScope(kQXSDKKovalinClientRequiredScope())) {
        failure(errorWithStatusCode(401, QStringLiteral("User does not have access to Kovalin scope"),
                                    QStringLiteral("ValidationError")),
                false);
        return;
    }
    const double start = currentTimeSeconds();
    success = QXSDKKovalinClientSuccessWithMetrics(std::move(success), metricsKey, start);
    failure = QXSDKKovalinClientFailureWithMetrics(std::move(failure), metricsKey, start);
    loginClient->fetchUserDataWithQuery(
        query, variables,
        [success = std::move(success), failure](const QJsonObject& response) {
            dispatchMain([success, failure, response] {
                const QJsonValue kovalin = jsonValueAt(response, {u"data", u"me", u"kovalin"});
                if (!hasErrors(response) && kovalin.isObject()) {
                    success(kovalin.toObject());
                } else {
                    failure(errorIn(response), false);
                }
            });
        },
        [failure](const QXSDKError& error, bool isLoggedOut) {
            dispatchMain([failure, error, isLoggedOut] { failure(error, isLoggedOut); });
        });
}

/// The queries about other people need neither an account nor the scope, and what they bring is taken in spite of errors beside it.
void QXSDKKovalinClient::_fetchUsersKovalinDataWithQuery(const QString& query,
                                                         const std::optional<QJsonObject>& variables,
                                                         const QString& metricsKey, UsersSuccess success,
                                                         Failure failure)
{
    const double start = currentTimeSeconds();
    success = QXSDKKovalinClientSuccessWithMetrics(std::move(success), metricsKey, start);
    failure = QXSDKKovalinClientFailureWithMetrics(std::move(failure), metricsKey, start);
    QXSDKLoginClient::shared()->fetchUserDataWithQuery(
        query, variables,
        [success = std::move(success), failure](const QJsonObject& response) {
            dispatchMain([success, failure, response] {
                const auto kovalinByUser = QXSDKKovalinClientDictFromUsers(jsonValueAt(response, {u"data", u"users"}));
                if (kovalinByUser && !kovalinByUser->isEmpty()) {
                    success(*kovalinByUser);
                } else {
                    failure(errorIn(response), false);
                }
            });
        },
        [failure](const QXSDKError& error, bool isLoggedOut) {
            dispatchMain([failure, error, isLoggedOut] { failure(error, isLoggedOut); });
        });
}

/// The document is {"packs": […]}; absent where it is none.
std::optional<KovalinPackList> QXSDKKovalinClient::_packsFromJsonString(const QString& json)
{
    if (!json.isValidUtf16()) {
        return std::nullopt; // no UTF-8 says the same
    }
    const auto packs = jsonArray(QJsonDocument::fromJson(json.toUtf8()).object(), u"packs");
    return packs ? std::optional(KovalinPack::packsFromJson(*packs)) : std::nullopt;
}

/// As "2020-09-13T14:26:40+02:00", in the device's time zone; "Z" stands for an offset of nothing.
QString QXSDKKovalinClient::_dateString()
{
    const auto now = QDateTime::fromMSecsSinceEpoch(currentTimeMillis(), Qt::LocalTime);
    return now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODate);
}
