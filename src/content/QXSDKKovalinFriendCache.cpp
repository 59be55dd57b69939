#include "content/QXSDKKovalinFriendCache.h"

std::shared_ptr<QXSDKKovalinFriendCache> QXSDKKovalinFriendCache::shared()
{
    static const auto& cache = *new auto(std::make_shared<QXSDKKovalinFriendCache>());
    return cache;
}

bool QXSDKKovalinFriendCache::hasEntryForUser(const QString& userId) const
{
    return _cache.contains(userId);
}

std::optional<QString> QXSDKKovalinFriendCache::avatarIdForUser(const QString& userId) const
{
    return _cache.value(userId);
}

void QXSDKKovalinFriendCache::updateWithData(const QXSDKKovalinAvatarIds& data)
{
    _cache.insert(data);
}
