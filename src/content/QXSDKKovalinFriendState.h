#pragma once

#include "content/QXSDKCancellable.h"
#include "content/QXSDKKovalinClient.h"
#include "content/QXSDKKovalinFriendAvatarObserver.h"
#include "platform/foundation/WeakSet.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManagerObserver.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>
#include <optional>

class QXSDKKovalinFriendCache;
class QXSDKKovalinStickerPickerSessionManager;

/// The friends that a host has set, and which of their avatars stands beside the user's own. What is known serves at once; it is
/// refreshed once a session.
///
/// Main thread only. Observers are told at once, and are held weakly.
class QXSDKKovalinFriendState final : public QXSDKKovalinStickerPickerSessionManagerObserver,
                                      public std::enable_shared_from_this<QXSDKKovalinFriendState> {
public:
    /// A state without friends, told of the manager's sessions.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinFriendState>
    create(QXSDKKovalinStickerPickerSessionManager& sessionManager);
    ~QXSDKKovalinFriendState() override;
    Q_DISABLE_COPY_MOVE(QXSDKKovalinFriendState)

    /// Sets the friends and which of them is selected, and updates if an account is linked. An index outside of the list selects
    /// nobody.
    void setFriendUserIds(const QStringList& friendUserIds, qint64 selectedIndex);

    /// Tells observers what is known of the friends, and asks for what isn't, or for everything once a session.
    void update();

    /// Tells observers that there is no friend's avatar. The friends stay.
    void clear();

    void addFriendAvatarObserver(const std::shared_ptr<QXSDKKovalinFriendAvatarObserver>& observer);
    void removeFriendAvatarObserver(const std::shared_ptr<QXSDKKovalinFriendAvatarObserver>& observer);

    /// The avatar id that observers were told last; absent where there is none.
    [[nodiscard]] const std::optional<QString>& friendAvatarId() const;

    // Sessions.

    void sessionDidStart() override;
    void sessionDidEnd() override;

private:
    QXSDKKovalinFriendState();

    void _updateWithUserIds(const QStringList& userIds, qint64 selectedIndex, bool forceFetch);
    void _fetchAvatarIds(const QStringList& userIds, const QString& friendUserId);
    void _fetchDidEnd(const QXSDKKovalinAvatarIds& avatarIds, const QXSDKCancellable& signal,
                      const QString& friendUserId, const QStringList& userIds);
    [[nodiscard]] bool _hasEntriesForUsers(const QStringList& userIds) const;
    void _dataDidLoadForFriendUserId(const QString& friendUserId, const QStringList& allFriendUserIds);
    void _notifyFriendAvatarIdDidChange(const std::optional<QString>& friendAvatarId,
                                        const QStringList& otherAvatarIds);

    const std::shared_ptr<QXSDKKovalinFriendCache> _cache;
    kovalin::platform::WeakSet<QXSDKKovalinFriendAvatarObserver> _observers;
    QStringList _friendUserIds;
    qint64 _selectedFriendIndex = 0;
    bool _shouldForceFetchFriends = true;
    std::optional<QString> _friendAvatarId;
    std::shared_ptr<QXSDKCancellable> _cancellationSignal; // of the request in flight
};
