#pragma once

#include "kits/core/default/OutboxEntry.h"
#include "kits/core/default/OutboxMemory.h"

#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace SQLite {
class Database;
} // namespace SQLite

namespace kovalin::kits {

/// The entries of an outbox on disk: a SQLite database in write-ahead mode. What it took survives the death of the process. One
/// thread at a time. No operation throws; a failure is logged once until something works again.
///
/// A file that is damaged, or that isn't an outbox's, is moved aside to "….damaged", of which one is kept, and a new one is
/// begun. A single entry that isn't as it was written is dropped. Several processes may have the file open.
///
/// The tables, of which `user_version` 1 and `application_id` "KVOB" tell:
///
///     entries   seq       the order in which they came
///               id        16 bytes of a UUID
///               time      milliseconds since 1970
///               bytes
///               checksum  of the three before, see `checksumOf`
///     counters  "dropped" and how many
class OutboxStore final {
public:
    enum class Result {
        Done,
        Failed,   ///< Nothing has changed; it may work later.
        MadeAnew, ///< The store was damaged. It is there again and empty.
    };

    struct Content {
        std::vector<OutboxEntry> entries = {}; ///< in their order
        quint64 dropped = 0;                   ///< with the damaged ones
    };

    /// Touches nothing yet. The folder is made when it is needed.
    explicit OutboxStore(QString path);
    ~OutboxStore();
    Q_DISABLE_COPY_MOVE(OutboxStore)

    /// Everything; empty for a new or damaged store, absent where it can't be read now.
    [[nodiscard]] std::optional<Content> load();

    /// All changes or none.
    [[nodiscard]] Result apply(const OutboxChanges& changes);

    /// Deletes everything, also from the disk's blocks that the file had, and the damaged file. Makes no file where there is none.
    [[nodiscard]] Result erase();

    /// The checksum of an entry: it differs for entries that differ in few bits.
    [[nodiscard]] static quint16 checksumOf(const OutboxEntry& entry);

private:
    Result _tried(const std::function<void()>& work);
    void _open();
    void _check();
    void _createTables();
    [[nodiscard]] Content _readAll();
    [[nodiscard]] bool _isDamage(const std::exception& exception) const;
    void _moveAside(const char* reason);
    void _failed(const char* reason);

    const QString _path;
    std::unique_ptr<SQLite::Database> _database; // null while closed
    bool _isFailureTold = false;
};

} // namespace kovalin::kits
