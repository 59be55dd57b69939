#include "platform/store/ImageDatabase.h"

#include "platform/foundation/Log.h"
#include "platform/store/StoreLog.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QFileInfo>
#include <QtCore/QRandomGenerator>

#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>

#include <algorithm>
#include <string>

namespace kovalin::platform {

namespace {

// How long one process waits for another one's transaction.
constexpr int kBusyMillis = 1000;

// Written into the header of the file: that it is ours ("KvIm"), and how its tables look.
constexpr qint64 kApplicationId = 0x4B76496D;
constexpr qint64 kFormat = 1;

// Far above any picture, and below what SQLite stores in one row.
constexpr qint64 kMaxPictureBytes = qint64(256) * 1024 * 1024;

// The bytes lie in a table of their own, since SQLite writes a row anew as a whole when its last use changes. Triggers keep the
// totals, so that nothing ever needs to be counted.
constexpr const char* kTables = R"sql(
    CREATE TABLE picture (id INTEGER PRIMARY KEY, key BLOB NOT NULL UNIQUE, size INTEGER NOT NULL, last_use INTEGER NOT NULL);
    CREATE INDEX picture_by_last_use ON picture (last_use);
    CREATE TABLE content (id INTEGER PRIMARY KEY, digest BLOB NOT NULL, bytes BLOB NOT NULL);
    CREATE TABLE store (identity INTEGER NOT NULL, total_bytes INTEGER NOT NULL, total_pictures INTEGER NOT NULL);
    CREATE TRIGGER picture_added AFTER INSERT ON picture BEGIN
        UPDATE store SET total_bytes = total_bytes + NEW.size, total_pictures = total_pictures + 1;
    END;
    CREATE TRIGGER picture_removed AFTER DELETE ON picture BEGIN
        UPDATE store SET total_bytes = total_bytes - OLD.size, total_pictures = total_pictures - 1;
        DELETE FROM content WHERE id = OLD.id;
    END;
)sql";

[[noreturn]] void throwDamage(const char* what)
{
    throw SQLite::Exception(what, SQLITE_CORRUPT);
}

/// Ends what a statement has begun when it goes out of scope: an unfinished one would hold up the write-ahead log, and keep
/// pointers to what was bound.
class Execution final {
public:
    explicit Execution(SQLite::Statement& statement)
        : _statement(statement)
    {
    }
    ~Execution() { _statement.tryReset(); }
    Q_DISABLE_COPY_MOVE(Execution)

    void bind(int place, const QByteArray& bytes)
    {
        _statement.bindNoCopy(place, bytes.constData(), static_cast<int>(bytes.size()));
    }
    void bind(int place, qint64 number) { _statement.bind(place, static_cast<int64_t>(number)); }

    bool step() { return _statement.executeStep(); }

    /// How many rows have changed.
    int run() { return _statement.exec(); }

    [[nodiscard]] qint64 number(int column) { return _statement.getColumn(column).getInt64(); }
    [[nodiscard]] QByteArray bytes(int column)
    {
        const SQLite::Column value = _statement.getColumn(column);
        const auto* const data = static_cast<const char*>(value.getBlob());
        return {data, value.getBytes()};
    }

private:
    SQLite::Statement& _statement;
};

/// Over the key too: bytes that come back under another key than their own are as wrong as damaged ones. Not against forgery.
QByteArray digestOf(const ImageKey& key, const QByteArray& bytes)
{
    QCryptographicHash hash(QCryptographicHash::Blake2b_160);
    hash.addData(key);
    hash.addData(bytes);
    return hash.result();
}

} // namespace

ImageDatabase::Statements::Statements(const SQLite::Database& database)
    : find(database, "SELECT content.digest, content.bytes FROM picture JOIN content USING (id) WHERE picture.key = ?")
    , insertPicture(database, "INSERT INTO picture (key, size, last_use) "
                              "VALUES (?, ?, (SELECT coalesce(max(last_use), 0) + 1 FROM picture))")
    , insertBytes(database, "INSERT OR REPLACE INTO content (id, digest, bytes) VALUES (?, ?, ?)")
    , remove(database, "DELETE FROM picture WHERE key = ?")
    , removeOldest(database, "DELETE FROM picture WHERE id = (SELECT id FROM picture ORDER BY last_use LIMIT 1)")
    , markUsed(database, "UPDATE picture SET last_use = (SELECT max(last_use) + 1 FROM picture) WHERE key = ?")
    , totalBytes(database, "SELECT total_bytes FROM store")
{
}

ImageDatabase::ImageDatabase(const QString& path)
    : _database(path.toUtf8().constData(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX,
                kBusyMillis)
{
    _configure();
    _makeTables();
    _statements.emplace(_database);
    _check();
}

bool ImageDatabase::isDamage(const SQLite::Exception& exception)
{
    switch (exception.getErrorCode() & 0xFF) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_FORMAT:
    // Our statements are right and our values fit: these mean tables or contents that aren't ours.
    case SQLITE_ERROR:
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
    case SQLITE_TOOBIG:
        return true;
    case SQLITE_IOERR:
        return exception.getExtendedErrorCode() == SQLITE_IOERR_SHORT_READ ||
               exception.getExtendedErrorCode() == SQLITE_IOERR_CORRUPTFS;
    default:
        return false;
    }
}

bool ImageDatabase::isPassing(const SQLite::Exception& exception)
{
    const int code = exception.getErrorCode() & 0xFF;
    return code == SQLITE_BUSY || code == SQLITE_LOCKED || code == SQLITE_FULL;
}

void ImageDatabase::_configure()
{
    // Not mapped into memory: reading a mapped file that somebody truncates would end the program. And nothing that a damaged
    // file holds as its schema is trusted.
    _database.exec("PRAGMA mmap_size = 0; PRAGMA cell_size_check = ON; PRAGMA trusted_schema = OFF");
    // No picture in a temporary file.
    _database.exec("PRAGMA temp_store = MEMORY");
    // In a new file. A picture of 30 KB lies in two of these pages where it would take eight of SQLite's usual ones, which makes
    // both reading and writing it faster; the write-ahead log stays at the usual 4 MiB.
    _database.exec("PRAGMA page_size = 16384; PRAGMA wal_autocheckpoint = 256");
    // The mode is kept in the file, so this changes it once.
    _database.exec("PRAGMA journal_mode = WAL");
    // With a write-ahead log, NORMAL is safe against everything but losing the last transactions in a power failure.
    _database.exec("PRAGMA synchronous = NORMAL");
    // What is removed one by one is written over by what comes; removeAll() rewrites the file.
    _database.exec("PRAGMA secure_delete = OFF");
}

void ImageDatabase::_makeTables()
{
    if (_number("PRAGMA user_version") == kFormat) {
        return;
    }
    // Another process may be making them too: who comes second waits here and finds them made.
    SQLite::Transaction transaction(_database, SQLite::TransactionBehavior::IMMEDIATE);
    if (_number("PRAGMA user_version") != 0 || _number("SELECT count(*) FROM sqlite_schema") != 0) {
        if (_number("PRAGMA user_version") != kFormat) {
            throwDamage("not a picture store of this format");
        }
        return;
    }
    _database.exec(kTables);
    SQLite::Statement make(_database, "INSERT INTO store VALUES (?, 0, 0)");
    make.bind(1, static_cast<int64_t>(QRandomGenerator::system()->generate64() >> 1));
    make.exec();
    _database.exec("PRAGMA application_id = " + std::to_string(kApplicationId));
    _database.exec("PRAGMA user_version = " + std::to_string(kFormat));
    transaction.commit();
}

void ImageDatabase::_check()
{
    if (_number("PRAGMA application_id") != kApplicationId) {
        throwDamage("not a picture store");
    }
    if (sqlite3_db_readonly(_database.getHandle(), "main") != 0) {
        // Either we may not write it, or its header says that only a later SQLite can.
        const bool isWritable = QFileInfo(QString::fromUtf8(_database.getFilename().c_str())).isWritable();
        throw SQLite::Exception("can't be written", isWritable ? SQLITE_CORRUPT : SQLITE_READONLY);
    }
    const SQLite::Transaction snapshot(_database);
    SQLite::Statement select(_database, "SELECT identity, total_bytes, total_pictures FROM store");
    Execution row(select);
    if (!row.step()) {
        throwDamage("the totals are missing");
    }
    _identity = row.number(0);
    const qint64 bytes = row.number(1);
    const qint64 pictures = row.number(2);
    // Wrong totals would keep too much or nothing at all. The pages in use tell, roughly, whether they can be right: a picture
    // wastes at the most a page at its end, and another one for its share of the tables.
    const qint64 pageSize = _number("PRAGMA page_size");
    const qint64 pages = _number("PRAGMA page_count") - _number("PRAGMA freelist_count");
    constexpr qint64 kPagesOfTables = 64;
    const qint64 mostPictures = pages * pageSize;
    if (bytes < 0 || pictures < 0 || pictures > mostPictures || bytes > pages * pageSize ||
        pages > bytes / pageSize + 2 * pictures + kPagesOfTables) {
        throwDamage("the totals can't be right");
    }
}

QByteArray ImageDatabase::read(const ImageKey& key)
{
    {
        Execution find(_statements->find);
        find.bind(1, key);
        if (!find.step()) {
            return {};
        }
        QByteArray bytes = find.bytes(1);
        if (find.bytes(0) == digestOf(key, bytes)) {
            return bytes;
        }
    }
    KOVALIN_LOG_WARNING(storeLog, QStringLiteral("A stored picture has changed on disk, removing it"));
    remove(key);
    return {};
}

void ImageDatabase::store(const ImageKey& key, const QByteArray& bytes, qint64 byteLimit, const QList<ImageKey>& used)
{
    SQLite::Transaction transaction(_database, SQLite::TransactionBehavior::IMMEDIATE);
    _markUsed(used);
    _remove(key);
    if (bytes.size() <= std::min(byteLimit, kMaxPictureBytes)) {
        _removeOldestUntil(byteLimit - bytes.size());
        _insert(key, bytes);
    }
    transaction.commit();
}

void ImageDatabase::markUsed(const QList<ImageKey>& keys)
{
    SQLite::Transaction transaction(_database, SQLite::TransactionBehavior::IMMEDIATE);
    _markUsed(keys);
    transaction.commit();
}

void ImageDatabase::trim(qint64 byteLimit)
{
    if (_totalBytes() <= byteLimit) {
        return;
    }
    {
        SQLite::Transaction transaction(_database, SQLite::TransactionBehavior::IMMEDIATE);
        _removeOldestUntil(byteLimit);
        transaction.commit();
    }
    if (_number("PRAGMA freelist_count") > _number("PRAGMA page_count") / 2) {
        _database.exec("VACUUM");
        static_cast<void>(cutLog());
    }
}

void ImageDatabase::remove(const ImageKey& key)
{
    SQLite::Transaction transaction(_database, SQLite::TransactionBehavior::IMMEDIATE);
    _remove(key);
    transaction.commit();
}

void ImageDatabase::removeAll()
{
    {
        SQLite::Transaction transaction(_database, SQLite::TransactionBehavior::IMMEDIATE);
        _database.exec("DELETE FROM picture");
        // What damage has left without a row in the other table.
        _database.exec("DELETE FROM content");
        transaction.commit();
    }
    _database.exec("VACUUM");
}

bool ImageDatabase::cutLog()
{
    // What the log holds goes into the file, which is cut off behind it, and the log is made empty.
    return _number("PRAGMA wal_checkpoint(TRUNCATE)") == 0;
}

qint64 ImageDatabase::_number(const char* query)
{
    SQLite::Statement statement(_database, query);
    return statement.executeStep() ? static_cast<qint64>(statement.getColumn(0).getInt64()) : 0;
}

qint64 ImageDatabase::_totalBytes()
{
    Execution total(_statements->totalBytes);
    if (!total.step()) {
        throwDamage("the totals are missing");
    }
    return total.number(0);
}

void ImageDatabase::_insert(const ImageKey& key, const QByteArray& bytes)
{
    {
        Execution insert(_statements->insertPicture);
        insert.bind(1, key);
        insert.bind(2, bytes.size());
        insert.run();
    }
    const QByteArray digest = digestOf(key, bytes);
    const qint64 id = _database.getLastInsertRowid();
    Execution insert(_statements->insertBytes);
    insert.bind(1, id);
    insert.bind(2, digest);
    insert.bind(3, bytes);
    insert.run();
}

void ImageDatabase::_remove(const ImageKey& key)
{
    Execution remove(_statements->remove);
    remove.bind(1, key);
    remove.run();
}

void ImageDatabase::_markUsed(const QList<ImageKey>& keys)
{
    for (const ImageKey& key : keys) {
        Execution mark(_statements->markUsed);
        mark.bind(1, key);
        mark.run();
    }
}

void ImageDatabase::_removeOldestUntil(qint64 byteLimit)
{
    while (_totalBytes() > byteLimit) {
        Execution remove(_statements->removeOldest);
        if (remove.run() == 0) {
            throwDamage("the totals tell of more than there is");
        }
    }
}

} // namespace kovalin::platform
