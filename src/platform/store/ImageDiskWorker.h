#pragma once

#include "platform/store/ImageDatabase.h"
#include "platform/store/ImageKey.h"
#include "platform/store/RecentUses.h"
#include "platform/store/StoreFiles.h"

#include <functional>
#include <memory>
#include <optional>

namespace kovalin::platform {

/// What lives on the disk level's queue: the database, and what becomes of it when it is damaged or out of reach. Private to this
/// folder; made on any thread, everything else on the queue.
///
/// A damaged database is moved aside, in place of the one before, and made anew. One that can't be opened or written leaves the
/// level empty; each thing to store tries again. Either is told by one line in the log, a run of the same trouble by the first.
class ImageDiskWorker final {
public:
    ImageDiskWorker(const QString& path, std::shared_ptr<RecentUses> uses);
    ~ImageDiskWorker();
    Q_DISABLE_COPY_MOVE(ImageDiskWorker)

    /// Opens the database ahead of the first operation.
    void open();

    void setByteLimit(qint64 bytes);

    /// Null if there is nothing under `key`. Counts as a use.
    [[nodiscard]] QByteArray read(const ImageKey& key);

    /// Writes down `used` first.
    void store(const ImageKey& key, const QByteArray& bytes, const QList<ImageKey>& used);
    void remove(const ImageKey& key);

    /// Also what was moved aside. Where the database can't be emptied its files are removed. Where another process keeps it from
    /// emptying the write-ahead log, that is done with the next pictures.
    void removeAll();

    /// Writes down the uses noted so far.
    void writeUses();

    /// Writes down the uses and closes the database.
    void close();

private:
    /// Whether an operation is worth opening the database again after that has failed.
    enum class Reopen { No, Yes };

    bool _attempt(Reopen reopen, const std::function<void(ImageDatabase&)>& work);
    [[nodiscard]] bool _isOpen(Reopen reopen);
    [[nodiscard]] bool _recover(const SQLite::Exception& exception, bool wasOpen);
    [[nodiscard]] bool _isAnother(std::optional<qint64> identity);
    [[nodiscard]] bool _replace(const QString& why);
    void _complain(const QString& why);

    const StoreFiles _files;
    const std::shared_ptr<RecentUses> _uses;
    std::optional<ImageDatabase> _database;
    qint64 _byteLimit;
    bool _isUnavailable = false;
    bool _isLogToBeCut = false;
    bool _hasComplained = false;
};

} // namespace kovalin::platform
