#pragma once

#include "platform/store/ImageKey.h"

#include <QtCore/QHash>
#include <QtCore/QList>

#include <mutex>

namespace kovalin::platform {

/// The uses of pictures that the disk level hasn't written down yet: they are written many at a time, since a hit must not cost
/// a write. Private to this folder; any thread.
class RecentUses final {
public:
    /// How many uses at the most are lost when the program is killed.
    static constexpr int kMaxUnwritten = 256;

    /// True when it is time to write: after each `kMaxUnwritten` uses, however few pictures they were of.
    [[nodiscard]] bool note(const ImageKey& key);

    /// Hands over what was noted, each picture once, in the order of their last use.
    [[nodiscard]] QList<ImageKey> take();

private:
    std::mutex _mutex;
    QHash<ImageKey, int> _lastUse; // guarded by _mutex; the number of the use
    int _uses = 0;                 // guarded by _mutex
};

} // namespace kovalin::platform
