#pragma once

#include "platform/store/ImageKey.h"
#include "platform/store/PINCache.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <memory>

namespace kovalin::platform {

class ImageDiskWorker;
class RecentUses;
class SerialQueue;

/// The disk level: encoded pictures in a SQLite database, one connection on a serial queue of its own. Private to this folder;
/// any thread.
///
/// It only posts. Operations take effect in the order in which they are called, over all threads. Where there is no application
/// object any more nothing is stored and nothing found.
///
/// Lifetime: may be destroyed on any thread with operations pending, which are still carried out; then the database is closed.
class ImageDisk final : public PINDiskCache {
public:
    /// Opens the database at `path`, on the queue. `path` is absolute; its folder is made.
    explicit ImageDisk(const QString& path);
    ~ImageDisk() override;
    Q_DISABLE_COPY_MOVE(ImageDisk)

    void setByteLimit(qint64 bytes) override;

    /// The bytes under `key`; null if there are none. Blocks. Counts as a use.
    [[nodiscard]] QByteArray read(const ImageKey& key);

    /// Returns at once.
    void store(const ImageKey& key, const QByteArray& bytes);

    /// Returns at once.
    void remove(const ImageKey& key);

    /// Notes a use of what was found elsewhere. Returns at once.
    void noteUse(const ImageKey& key);

    enum class Wait { No, Yes };

    /// Removes everything; with `Wait::Yes` blocks until it is gone from the files.
    void removeAll(Wait wait);

private:
    const std::shared_ptr<RecentUses> _uses;
    std::shared_ptr<ImageDiskWorker> _worker; // never null before the destructor
    const std::unique_ptr<SerialQueue> _queue;
};

} // namespace kovalin::platform
