#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtGui/QImage>

namespace kovalin::platform {

/// A picture with the bytes that it was decoded from. A value.
struct EncodedImage {
    /// Null where the bytes don't decode.
    QImage image;

    /// As they came (PNG, JPEG, …). Empty where there are none.
    QByteArray bytes;
};

/// The level of a cache that outlasts the program. Any thread.
class PINDiskCache {
public:
    virtual ~PINDiskCache();

    /// Limits what is kept to `bytes`, counted in encoded pictures' bytes; the least recently used ones beyond it go. 0 and less
    /// keeps nothing. Returns at once, and holds for all that is stored afterwards.
    virtual void setByteLimit(qint64 bytes) = 0;
};

/// The level of a cache that is gone with the program. Any thread.
class PINMemoryCache {
public:
    virtual ~PINMemoryCache();

    /// Limits the sum of the costs of what is kept to `cost`; the least recently used pictures beyond it go before this returns. 0
    /// and less keeps nothing.
    virtual void setCostLimit(qsizetype cost) = 0;
};

/// Keeps pictures by key on two levels, decoded ones in memory and encoded ones on disk, each within a limit of its own. Keys
/// are texts of any content and length.
///
/// Any thread. Reading and emptying block; on the main thread, which must not wait, they do less, as told there. Storing returns at
/// once. What one thread stored is found by every operation that starts afterwards, until it has to make room.
///
/// Nothing here fails or completes later: what can't be stored isn't found.
class PINCache {
public:
    virtual ~PINCache();

    /// For their limits. They live as long as the cache.
    [[nodiscard]] virtual PINDiskCache& diskCache() = 0;
    [[nodiscard]] virtual PINMemoryCache& memoryCache() = 0;

    /// The picture under `key`, from memory or else from disk; null if there is none. Blocks while it reads and decodes; on the
    /// main thread it looks into memory alone. Counts as a use.
    [[nodiscard]] virtual QImage objectForKey(const QString& key) = 0;

    /// Stores `object` under `key` on both levels, in place of what was there. A null picture isn't stored and leaves what is
    /// there; a picture without bytes is kept in memory alone. Counts as a use.
    ///
    /// `cost` counts against the memory level's limit, and is at least 1. A cache that doesn't know costs implements the operation
    /// without one alone: the other one passes on to it.
    virtual void setObject(const EncodedImage& object, const QString& key, qsizetype cost);
    virtual void setObject(const EncodedImage& object, const QString& key) = 0;

    /// Empties both levels. Blocks until no byte of a picture is left in memory or in a file; the main thread doesn't wait for the
    /// files.
    virtual void removeAllObjects() = 0;
};

} // namespace kovalin::platform
