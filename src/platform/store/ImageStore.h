#pragma once

#include "platform/foundation/CachesDirectory.h"
#include "platform/store/ImageDisk.h"
#include "platform/store/ImageMemory.h"
#include "platform/store/PINCache.h"

namespace kovalin::platform {

/// The library's own `PINCache`: decoded pictures in memory, and in a SQLite database the bytes that they came as, which are
/// never encoded again. Pictures read from disk are decoded on the calling thread and taken into memory, at a cost of 1.
///
/// Until limits are set: 50 pictures in memory, 50 MiB on disk. No picture ages.
///
/// - A hit on either level counts as a use on both. Uses are written to disk together with the next picture, or after some
///   hundreds; a kill loses those since, nothing else.
/// - A damaged database is moved aside, to the file's name with ".damaged" at its end, in place of the one before, and made anew.
///   Where the disk is full or the folder can't be written, pictures are kept in memory alone, and each one that is stored tries
///   the disk again. Each such trouble is told by one line in the log.
/// - Several programs may share one database. Each sees what the others have stored on disk.
///
/// Lifetime: may be destroyed on any thread; what is still to be written is written. It isn't when the application object dies
/// first: then pending operations are dropped, blocked reads find nothing, and from then on there is the memory level alone.
/// Before the first application object, reads of the disk block until there is one.
class ImageStore final : public PINCache {
public:
    /// The store `name`, kept in the file "`name`.sqlite" in `folder`, which is made if need be. The file is opened in the
    /// background.
    /// Requires: `name` can be a file's name; two names must not differ by case alone.
    explicit ImageStore(const QString& name, const QString& folder = cachesDirectory());
    ~ImageStore() override;
    Q_DISABLE_COPY_MOVE(ImageStore)

    [[nodiscard]] PINDiskCache& diskCache() override;
    [[nodiscard]] PINMemoryCache& memoryCache() override;

    [[nodiscard]] QImage objectForKey(const QString& key) override;

    void setObject(const EncodedImage& object, const QString& key, qsizetype cost) override;

    /// With a cost of 1.
    void setObject(const EncodedImage& object, const QString& key) override;

    void removeAllObjects() override;

private:
    ImageMemory _memory;
    ImageDisk _disk;
};

} // namespace kovalin::platform
