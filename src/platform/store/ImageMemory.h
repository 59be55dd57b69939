#pragma once

#include "platform/store/ImageKey.h"
#include "platform/store/PINCache.h"

#include <QtCore/QCache>

#include <mutex>
#include <optional>

namespace kovalin::platform {

/// The memory level: decoded pictures, the least recently used out first. Private to this folder; any thread.
///
/// Guarded by a mutex and not by a queue, since a hit must not cost two switches of thread. It is held for one look-up or change,
/// and never while anything else is waited for.
class ImageMemory final : public PINMemoryCache {
public:
    struct Entry {
        QImage image;
        ImageKey diskKey; // what the picture is known by on disk
    };

    ImageMemory();
    ~ImageMemory() override;
    Q_DISABLE_COPY_MOVE(ImageMemory)

    void setCostLimit(qsizetype cost) override;

    /// Absent if there is none. Counts as a use.
    [[nodiscard]] std::optional<Entry> find(const QString& key);

    /// Takes the place of what is there; a cost beyond the limit leaves nothing there.
    void store(const QString& key, Entry entry, qsizetype cost);

    void removeAll();

    /// How often all was removed so far.
    [[nodiscard]] quint64 removals() const;

    /// Stores what was read from disk, with a cost of 1, unless a picture is there by now or all was removed since `removals` was
    /// asked for: then what was read is out of date.
    void storeRead(const QString& key, Entry entry, quint64 removals);

private:
    mutable std::mutex _mutex;
    QCache<QString, Entry> _entries; // guarded by _mutex
    quint64 _removals = 0;           // guarded by _mutex
};

} // namespace kovalin::platform
