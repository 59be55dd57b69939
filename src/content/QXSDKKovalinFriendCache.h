#pragma once

#include "content/QXSDKKovalinClient.h"

#include <QtCore/QString>

#include <memory>
#include <optional>

/// Remembers the avatar ids of users for the life of the process, whoever is logged in. Main thread only.
class QXSDKKovalinFriendCache final {
public:
    /// The instance of the process, made on first use and never destroyed.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinFriendCache> shared();

    QXSDKKovalinFriendCache() = default;
    Q_DISABLE_COPY_MOVE(QXSDKKovalinFriendCache)

    /// Whether anything is known of the user, be it that there is no avatar.
    [[nodiscard]] bool hasEntryForUser(const QString& userId) const;

    /// Absent for a user without an avatar and for one of whom nothing is known.
    [[nodiscard]] std::optional<QString> avatarIdForUser(const QString& userId) const;

    /// Takes over all entries; those of other users stay.
    void updateWithData(const QXSDKKovalinAvatarIds& data);

private:
    QXSDKKovalinAvatarIds _cache;
};
