#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

/// Told whose avatars stand beside the user's own. Called on the main thread.
class QXSDKKovalinFriendAvatarObserver {
public:
    virtual ~QXSDKKovalinFriendAvatarObserver();

    /// The friend's avatar id, absent where there is none, and the avatar ids of the other friends. Also called where nothing
    /// has changed.
    virtual void kovalinFriendAvatarDidChange(const std::optional<QString>& friendAvatarId,
                                              const QStringList& otherAvatarIds) = 0;
};
