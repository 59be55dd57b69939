#include "kits/core/default/OutboxStore.h"

#include "kits/core/default/CoreKitLog.h"
#include "platform/foundation/Log.h"

#include <QtCore/QByteArray>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

namespace kovalin::kits {

namespace {

constexpr int kFormat = 1;
constexpr int kApplicationId = 0x4b564f42; // "KVOB"

// How long another process may hold the file, and so hold up the end of the application.
constexpr int kBusyMillis = 100;

/// The file is sound for SQLite, but nothing that an outbox can use.
class UnusableStore final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Whether SQLite couldn't do what it was asked for a reason outside of the file. All else is the file's content.
bool isCircumstance(int code)
{
    switch (code) {
    case SQLITE_PERM:
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_NOMEM:
    case SQLITE_READONLY:
    case SQLITE_INTERRUPT:
    case SQLITE_IOERR:
    case SQLITE_FULL:
    case SQLITE_CANTOPEN:
    case SQLITE_PROTOCOL:
    case SQLITE_NOLFS:
    case SQLITE_AUTH:
        return true;
    default:
        return false;
    }
}

/// Of a file of a later version SQLite says that it can't be written, as if its folder were locked; and a single wrong bit
/// makes one.
bool hasKnownVersion(const QString& path)
{
    constexpr qsizetype versionAt = 18; // behind SQLite's name
    constexpr char newest = 2;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return true;
    }
    const QByteArray head = file.read(versionAt + 1);
    return head.size() <= versionAt || (head[versionAt] > 0 && head[versionAt] <= newest);
}

QByteArray idBytes(const QUuid& id)
{
    return id.toRfc4122();
}

void bindBytes(SQLite::Statement& statement, int index, const QByteArray& bytes)
{
    // Null would be no value instead of an empty one.
    statement.bind(index, static_cast<const void*>(bytes.isNull() ? "" : bytes.constData()),
                   static_cast<int>(bytes.size()));
}

QByteArray bytesIn(const SQLite::Column& column)
{
    return QByteArray(static_cast<const char*>(column.getBlob()), column.getBytes());
}

QString damagedPath(const QString& path)
{
    return path + QStringLiteral(".damaged");
}

/// Removes what SQLite writes beside a file that isn't there any more: it would take it for the next one's.
void removeLogs(const QString& path)
{
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
}

/// Makes the file, which only its owner may read: SQLite's own would be everybody's.
void makePrivateFile(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

void removeEntries(SQLite::Database& database, const std::vector<QUuid>& ids)
{
    SQLite::Statement remove(database, "DELETE FROM entries WHERE id = ?");
    for (const QUuid& id : ids) {
        bindBytes(remove, 1, idBytes(id));
        remove.exec();
        remove.reset();
    }
}

void addEntries(SQLite::Database& database, const std::vector<OutboxEntry>& entries)
{
    // One that is there already came with a commit that was reported as failed.
    SQLite::Statement add(database, "INSERT OR IGNORE INTO entries(id, time, bytes, checksum) VALUES(?, ?, ?, ?)");
    for (const OutboxEntry& entry : entries) {
        bindBytes(add, 1, idBytes(entry.id));
        add.bind(2, static_cast<int64_t>(entry.time));
        bindBytes(add, 3, entry.bytes);
        add.bind(4, static_cast<int32_t>(OutboxStore::checksumOf(entry)));
        add.exec();
        add.reset();
    }
}

void countDropped(SQLite::Database& database, qint64 count)
{
    // Never below none: another process may have told of the same ones.
    SQLite::Statement add(database, "INSERT INTO counters(name, value) VALUES('dropped', MAX(0, ?1)) "
                                    "ON CONFLICT(name) DO UPDATE SET value = MAX(0, value + ?1)");
    add.bind(1, static_cast<int64_t>(count));
    add.exec();
}

} // namespace

OutboxStore::OutboxStore(QString path)
    : _path(std::move(path))
{
}

OutboxStore::~OutboxStore() = default;

std::optional<OutboxStore::Content> OutboxStore::load()
{
    Content content;
    switch (_tried([this, &content] { content = _readAll(); })) {
    case Result::Done:
        return content;
    case Result::MadeAnew:
        return Content();
    case Result::Failed:
        break;
    }
    return std::nullopt;
}

OutboxStore::Result OutboxStore::apply(const OutboxChanges& changes)
{
    return _tried([this, &changes] {
        SQLite::Transaction transaction(*_database, SQLite::TransactionBehavior::IMMEDIATE);
        removeEntries(*_database, changes.removed);
        addEntries(*_database, changes.added);
        if (changes.dropped != 0) {
            countDropped(*_database, changes.dropped);
        }
        transaction.commit();
    });
}

OutboxStore::Result OutboxStore::erase()
{
    if (_database == nullptr && !QFile::exists(_path)) {
        removeLogs(_path);
        QFile::remove(damagedPath(_path));
        return Result::Done;
    }
    const Result result = _tried([this] {
        SQLite::Transaction transaction(*_database, SQLite::TransactionBehavior::IMMEDIATE);
        _database->exec("DELETE FROM entries; DELETE FROM counters");
        transaction.commit();
        // The log before the writes still has what was written; this gives its blocks back.
        _database->exec("PRAGMA wal_checkpoint(TRUNCATE)");
    });
    QFile::remove(damagedPath(_path));
    return result;
}

quint16 OutboxStore::checksumOf(const OutboxEntry& entry)
{
    const QByteArray all = idBytes(entry.id) + QByteArray::number(entry.time) + ' ' + entry.bytes;
    return qChecksum(all);
}

OutboxStore::Result OutboxStore::_tried(const std::function<void()>& work)
{
    Result result = Result::Done;
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            _open();
            if (result == Result::Done) {
                work();
            }
            _isFailureTold = false;
            return result;
        } catch (const std::exception& exception) {
            _database.reset(); // opened again the next time: the disk may be another by then
            if (attempt > 0 || !_isDamage(exception)) {
                _failed(exception.what());
                return Result::Failed;
            }
            _moveAside(exception.what());
            result = Result::MadeAnew;
        }
    }
    return Result::Failed;
}

void OutboxStore::_open()
{
    if (_database != nullptr) {
        return;
    }
    makePrivateFile(_path);
    _database = std::make_unique<SQLite::Database>(QFile::encodeName(_path).constData(),
                                                   SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, kBusyMillis);
    // In write-ahead mode a commit is in the system's hands without a wait for the disk: it survives the process, though
    // not a power cut.
    _database->exec("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA secure_delete = ON");
    _check();
}

void OutboxStore::_check()
{
    const auto numberOf = [this](const char* pragma) {
        return _database->execAndGet(pragma).getInt();
    };
    if (numberOf("PRAGMA user_version") == 0 && numberOf("SELECT count(*) FROM sqlite_master") == 0) {
        _createTables();
    }
    if (numberOf("PRAGMA application_id") != kApplicationId || numberOf("PRAGMA user_version") != kFormat) {
        throw UnusableStore("Not an outbox of this version");
    }
    // With the index, which a quick check leaves out: entries are removed by it.
    const std::string state = _database->execAndGet("PRAGMA integrity_check(1)").getString();
    if (state != "ok") {
        throw UnusableStore(state);
    }
}

void OutboxStore::_createTables()
{
    // Where another process does the same, the second one finds them.
    SQLite::Transaction transaction(*_database, SQLite::TransactionBehavior::IMMEDIATE);
    _database->exec("CREATE TABLE IF NOT EXISTS entries(seq INTEGER PRIMARY KEY, id BLOB NOT NULL UNIQUE, "
                    "time INTEGER NOT NULL, bytes BLOB NOT NULL, checksum INTEGER NOT NULL)");
    _database->exec("CREATE TABLE IF NOT EXISTS counters(name TEXT PRIMARY KEY NOT NULL, value INTEGER NOT NULL)");
    const QByteArray mark = "PRAGMA application_id = " + QByteArray::number(kApplicationId) +
                            "; PRAGMA user_version = " + QByteArray::number(kFormat);
    _database->exec(mark.constData());
    transaction.commit();
}

OutboxStore::Content OutboxStore::_readAll()
{
    Content content;
    std::vector<int64_t> damaged;
    {
        SQLite::Statement read(*_database, "SELECT seq, id, time, bytes, checksum FROM entries ORDER BY seq");
        while (read.executeStep()) {
            OutboxEntry entry{.id = QUuid::fromRfc4122(bytesIn(read.getColumn(1))),
                              .time = read.getColumn(2).getInt64(),
                              .bytes = bytesIn(read.getColumn(3))};
            if (entry.time < 0 || read.getColumn(4).getInt64() != checksumOf(entry)) {
                damaged.push_back(read.getColumn(0).getInt64());
            } else {
                content.entries.push_back(std::move(entry));
            }
        }
    }
    if (!damaged.empty()) {
        SQLite::Transaction transaction(*_database, SQLite::TransactionBehavior::IMMEDIATE);
        SQLite::Statement remove(*_database, "DELETE FROM entries WHERE seq = ?");
        for (const int64_t seq : damaged) {
            remove.bind(1, seq);
            remove.exec();
            remove.reset();
        }
        countDropped(*_database, static_cast<qint64>(damaged.size()));
        transaction.commit();
        KOVALIN_LOG_WARNING(
            kovalinCoreKit,
            QStringLiteral("%1: dropped %2 damaged entries").arg(_path, QString::number(damaged.size())));
    }
    SQLite::Statement dropped(*_database, "SELECT value FROM counters WHERE name = 'dropped'");
    if (dropped.executeStep()) {
        content.dropped = static_cast<quint64>(std::max<int64_t>(0, dropped.getColumn(0).getInt64()));
    }
    return content;
}

bool OutboxStore::_isDamage(const std::exception& exception) const
{
    if (const auto* const failure = dynamic_cast<const SQLite::Exception*>(&exception)) {
        const int code = failure->getErrorCode() & 0xff; // without the details
        return code == SQLITE_READONLY ? !hasKnownVersion(_path) : !isCircumstance(code);
    }
    return dynamic_cast<const UnusableStore*>(&exception) != nullptr;
}

void OutboxStore::_moveAside(const char* reason)
{
    KOVALIN_LOG_WARNING(kovalinCoreKit,
                        QStringLiteral("%1 is damaged, moving it aside: %2").arg(_path, QString::fromUtf8(reason)));
    QFile::remove(damagedPath(_path));
    if (!QFile::rename(_path, damagedPath(_path))) {
        QFile::remove(_path);
    }
    removeLogs(_path);
}

void OutboxStore::_failed(const char* reason)
{
    if (!std::exchange(_isFailureTold, true)) {
        KOVALIN_LOG_WARNING(kovalinCoreKit,
                            QStringLiteral("Can't store in %1: %2").arg(_path, QString::fromUtf8(reason)));
    }
}

} // namespace kovalin::kits
