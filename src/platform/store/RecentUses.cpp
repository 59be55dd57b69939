#include "platform/store/RecentUses.h"

#include <algorithm>
#include <utility>

namespace kovalin::platform {

bool RecentUses::note(const ImageKey& key)
{
    const std::lock_guard lock(_mutex);
    _lastUse.insert(key, _uses);
    ++_uses;
    return _uses % kMaxUnwritten == 0;
}

QList<ImageKey> RecentUses::take()
{
    QHash<ImageKey, int> lastUse;
    {
        const std::lock_guard lock(_mutex);
        lastUse = std::exchange(_lastUse, {});
        _uses = 0;
    }
    QList<ImageKey> keys = lastUse.keys();
    std::ranges::sort(keys, {}, [&lastUse](const ImageKey& key) { return lastUse.value(key); });
    return keys;
}

} // namespace kovalin::platform
