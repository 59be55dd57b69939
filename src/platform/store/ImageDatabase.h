#pragma once

#include "platform/store/ImageKey.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <optional>

namespace kovalin::platform {

/// Encoded pictures in one SQLite database, with the order of their uses. Private to this folder; one thread at a time.
///
/// Every operation is a transaction: it is done or, where it throws `SQLite::Exception`, has changed nothing. Several processes
/// may have one database open; what one waits for another is bounded.
class ImageDatabase final {
public:
    /// Opens the database at `path`, or makes it if there is no file or an empty one; the folder must be there. Its cost doesn't
    /// depend on how much is stored. Throws for what isn't such a database, too: `isDamage` tells.
    explicit ImageDatabase(const QString& path);

    /// Whether an exception means that the database is no use any more, and not that it can't be reached or written now.
    [[nodiscard]] static bool isDamage(const SQLite::Exception& exception);

    /// Whether an exception means that the next operation may well succeed: the disk is full, or another process takes its time.
    [[nodiscard]] static bool isPassing(const SQLite::Exception& exception);

    /// A number that this database was given when it was made.
    [[nodiscard]] qint64 identity() const { return _identity; }

    /// The bytes under `key`, as they were stored; null if there are none. Bytes that changed on disk are removed, with a line in
    /// the log, and not given.
    [[nodiscard]] QByteArray read(const ImageKey& key);

    /// Stores `bytes` under `key`, in place of what was there, as the most recently used, after `markUsed` of `used`. The least
    /// recently used ones go until all fits into `byteLimit` bytes; what doesn't fit alone isn't stored.
    void store(const ImageKey& key, const QByteArray& bytes, qint64 byteLimit, const QList<ImageKey>& used);

    /// Makes `keys` the most recently used, the last one most of all. Passes over those that aren't stored.
    void markUsed(const QList<ImageKey>& keys);

    /// Removes the least recently used ones until the rest fits into `byteLimit` bytes.
    void trim(qint64 byteLimit);

    void remove(const ImageKey& key);

    /// Removes all, and what is left of it in the file. `cutLog` has to follow.
    void removeAll();

    /// Removes what was removed from the write-ahead log, too. False if another connection is using the log just now. It ends with
    /// the last connection anyway.
    [[nodiscard]] bool cutLog();

private:
    struct Statements {
        explicit Statements(const SQLite::Database& database);

        SQLite::Statement find;
        SQLite::Statement insertPicture;
        SQLite::Statement insertBytes;
        SQLite::Statement remove;
        SQLite::Statement removeOldest;
        SQLite::Statement markUsed;
        SQLite::Statement totalBytes;
    };

    void _configure();
    void _makeTables();
    void _check();
    [[nodiscard]] qint64 _number(const char* query);
    [[nodiscard]] qint64 _totalBytes();
    void _insert(const ImageKey& key, const QByteArray& bytes);
    void _remove(const ImageKey& key);
    void _markUsed(const QList<ImageKey>& keys);
    void _removeOldestUntil(qint64 byteLimit);

    SQLite::Database _database;
    std::optional<Statements> _statements; // made once the tables are there
    qint64 _identity = 0;
};

} // namespace kovalin::platform
