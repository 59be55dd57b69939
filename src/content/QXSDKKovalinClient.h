#pragma once

#include "kits/core/QXSDKError.h"
#include "search/KovalinPack.h"

#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <optional>

/// Avatar ids by user id. A user who is known and has no avatar stands there with an absent id; an unknown one doesn't.
using QXSDKKovalinAvatarIds = QHash<QString, std::optional<QString>>;

/// The queries to the content backend, sent through the installed login client. Any thread.
///
/// Each completion is called exactly once, on the main thread, in a later turn of its event loop: with a result and no error, or
/// with an error and no result. There is no cancelling.
class QXSDKKovalinClient final {
public:
    using AvatarURLCompletion =
        std::function<void(const std::optional<QString>& avatarURL, const std::optional<QXSDKError>& error)>;
    using StickersCompletion =
        std::function<void(const std::optional<KovalinPackList>& packs, const std::optional<QXSDKError>& error)>;
    using AvatarIdsCompletion = std::function<void(const std::optional<QXSDKKovalinAvatarIds>& avatarIds,
                                                   const std::optional<QXSDKError>& error)>;

    QXSDKKovalinClient() = delete;

    /// Where the picture of the user's own avatar is; neither that nor an error where the answer doesn't tell it.
    static void fetchAvatarURLWithCompletion(AvatarURLCompletion completion);

    /// The user's packs; neither packs nor an error where the user has no content.
    static void fetchStickersWithCompletion(StickersCompletion completion);

    /// The avatar ids of users. Needs no account of the library's own.
    static void fetchAvatarIdsForUserIds(const QStringList& userIds, AvatarIdsCompletion completion);

private:
    using DataSuccess = std::function<void(const QJsonObject& data)>;
    using UsersSuccess = std::function<void(const QHash<QString, QJsonObject>& kovalinByUser)>;
    using Failure = std::function<void(const QXSDKError& error, bool isLoggedOut)>;

    static void _fetchKovalinDataWithQuery(const QString& query, const std::optional<QJsonObject>& variables,
                                           const QString& metricsKey, DataSuccess success, Failure failure);
    static void _fetchUsersKovalinDataWithQuery(const QString& query, const std::optional<QJsonObject>& variables,
                                                const QString& metricsKey, UsersSuccess success, Failure failure);
    [[nodiscard]] static std::optional<KovalinPackList> _packsFromJsonString(const QString& json);
    [[nodiscard]] static QString _dateString();
};
