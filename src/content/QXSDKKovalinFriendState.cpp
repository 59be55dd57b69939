#include "content/QXSDKKovalinFriendState.h"

#include "content/ContentLog.h"
#include "content/QXSDKKovalinFriendCache.h"
#include "kits/login/QXSDKLoginClient.h"
#include "platform/foundation/Log.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <algorithm>

using namespace kovalin::platform;

namespace {

void logFailure(const QStringList& userIds, const QXSDKError& error)
{
    KOVALIN_LOG_DEBUG(kovalinContent,
                      QStringLiteral("Failed to fetch friend avatars for users: %1\n error: %2, reason: %3, code: %4")
                          .arg(userIds.join(QStringLiteral(", ")), error.description, error.reason,
                               QString::number(error.statusCode)));
}

} // namespace

QXSDKKovalinFriendAvatarObserver::~QXSDKKovalinFriendAvatarObserver() = default;

std::shared_ptr<QXSDKKovalinFriendState>
QXSDKKovalinFriendState::create(QXSDKKovalinStickerPickerSessionManager& sessionManager)
{
    const std::shared_ptr<QXSDKKovalinFriendState> state(new QXSDKKovalinFriendState);
    sessionManager.registerWeakObserver(state);
    return state;
}

QXSDKKovalinFriendState::QXSDKKovalinFriendState()
    : _cache(QXSDKKovalinFriendCache::shared())
{
}

QXSDKKovalinFriendState::~QXSDKKovalinFriendState() = default;

void QXSDKKovalinFriendState::setFriendUserIds(const QStringList& friendUserIds, qint64 selectedIndex)
{
    _friendUserIds = friendUserIds;
    _selectedFriendIndex = selectedIndex;
    if (QXSDKLoginClient::shared()->isUserLoggedIn()) {
        update();
    }
}

void QXSDKKovalinFriendState::update()
{
    if (_friendUserIds.isEmpty()) {
        clear();
        return;
    }
    _updateWithUserIds(_friendUserIds, _selectedFriendIndex, _shouldForceFetchFriends);
    _shouldForceFetchFriends = false;
}

void QXSDKKovalinFriendState::clear()
{
    _notifyFriendAvatarIdDidChange(std::nullopt, {});
}

void QXSDKKovalinFriendState::addFriendAvatarObserver(const std::shared_ptr<QXSDKKovalinFriendAvatarObserver>& observer)
{
    _observers.add(observer);
}

void QXSDKKovalinFriendState::removeFriendAvatarObserver(
    const std::shared_ptr<QXSDKKovalinFriendAvatarObserver>& observer)
{
    _observers.remove(observer);
}

const std::optional<QString>& QXSDKKovalinFriendState::friendAvatarId() const
{
    return _friendAvatarId;
}

void QXSDKKovalinFriendState::sessionDidStart() {}

void QXSDKKovalinFriendState::sessionDidEnd()
{
    _shouldForceFetchFriends = true;
}

void QXSDKKovalinFriendState::_updateWithUserIds(const QStringList& userIds, qint64 selectedIndex, bool forceFetch)
{
    if (_cancellationSignal) {
        _cancellationSignal->cancel();
    }
    if (userIds.isEmpty()) {
        clear();
        return;
    }
    if (selectedIndex < 0 || selectedIndex >= userIds.size()) {
        KOVALIN_LOG_WARNING(kovalinContent, QStringLiteral("No friend at index %1 of %2")
                                                .arg(QString::number(selectedIndex), QString::number(userIds.size())));
        clear();
        return;
    }
    const QString friendUserId = userIds.at(selectedIndex);
    if (!_cache->hasEntryForUser(friendUserId)) {
        clear();
    } else {
        _dataDidLoadForFriendUserId(friendUserId, userIds);
        if (!forceFetch && _hasEntriesForUsers(userIds)) {
            return;
        }
    }
    _fetchAvatarIds(userIds, friendUserId);
}

void QXSDKKovalinFriendState::_fetchAvatarIds(const QStringList& userIds, const QString& friendUserId)
{
    const auto signal = std::make_shared<QXSDKCancellable>();
    _cancellationSignal = signal;
    QXSDKKovalinClient::fetchAvatarIdsForUserIds(
        userIds, [weakSelf = weak_from_this(), userIds, signal, friendUserId](
                     const std::optional<QXSDKKovalinAvatarIds>& avatarIds, const std::optional<QXSDKError>& error) {
            if (error) {
                logFailure(userIds, *error);
                return;
            }
            if (const auto self = weakSelf.lock()) {
                self->_fetchDidEnd(avatarIds.value_or(QXSDKKovalinAvatarIds()), *signal, friendUserId, userIds);
            }
        });
}

/// What comes too late to be told is remembered all the same.
void QXSDKKovalinFriendState::_fetchDidEnd(const QXSDKKovalinAvatarIds& avatarIds, const QXSDKCancellable& signal,
                                           const QString& friendUserId, const QStringList& userIds)
{
    _cache->updateWithData(avatarIds);
    if (!signal.isCancelled()) {
        _dataDidLoadForFriendUserId(friendUserId, userIds);
    }
}

bool QXSDKKovalinFriendState::_hasEntriesForUsers(const QStringList& userIds) const
{
    return std::ranges::all_of(userIds, [this](const QString& userId) { return _cache->hasEntryForUser(userId); });
}

/// Where the selected friend has no avatar, the first other one who has takes the place.
void QXSDKKovalinFriendState::_dataDidLoadForFriendUserId(const QString& friendUserId,
                                                          const QStringList& allFriendUserIds)
{
    QStringList otherAvatarIds;
    otherAvatarIds.reserve(allFriendUserIds.size() - 1);
    auto friendAvatarId = _cache->avatarIdForUser(friendUserId);
    for (const QString& userId : allFriendUserIds) {
        const auto avatarId = _cache->avatarIdForUser(userId);
        if (!avatarId || avatarId->isEmpty() || userId == friendUserId) {
            continue;
        }
        if (friendAvatarId && !friendAvatarId->isEmpty()) {
            otherAvatarIds.append(*avatarId);
        } else {
            friendAvatarId = avatarId;
        }
    }
    _notifyFriendAvatarIdDidChange(friendAvatarId, otherAvatarIds);
}

void QXSDKKovalinFriendState::_notifyFriendAvatarIdDidChange(const std::optional<QString>& friendAvatarId,
                                                             const QStringList& otherAvatarIds)
{
    _friendAvatarId = friendAvatarId;
    _observers.forEach([&](QXSDKKovalinFriendAvatarObserver& observer) {
        observer.kovalinFriendAvatarDidChange(friendAvatarId, otherAvatarIds);
    });
}
