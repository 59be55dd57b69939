#include "kits/core/default/OutboxFile.h"

#include <QtCore/QFile>
#include <QtCore/QUuid>

#include <SQLiteCpp/SQLiteCpp.h>

namespace kovalin::test {

namespace {

constexpr int busyMillis = 10'000; // against a hang alone

SQLite::Database opened(const QString& path)
{
    return SQLite::Database(QFile::encodeName(path).toStdString(), SQLite::OPEN_READWRITE, busyMillis);
}

} // namespace

StoredOutbox storedAt(const QString& path)
{
    StoredOutbox stored;
    if (!QFile::exists(path)) {
        return stored;
    }
    SQLite::Database database = opened(path);
    if (!database.tableExists("entries")) {
        return stored;
    }
    SQLite::Statement entries(database, "SELECT id, bytes FROM entries ORDER BY seq");
    while (entries.executeStep()) {
        const SQLite::Column id = entries.getColumn(0);
        const QByteArray idBytes(static_cast<const char*>(id.getBlob()), id.getBytes());
        stored.ids.append(QUuid::fromRfc4122(idBytes).toString(QUuid::WithoutBraces));
        const SQLite::Column bytes = entries.getColumn(1);
        stored.entries.emplace_back(static_cast<const char*>(bytes.getBlob()), bytes.getBytes());
    }
    SQLite::Statement dropped(database, "SELECT value FROM counters WHERE name = 'dropped'");
    if (dropped.executeStep()) {
        stored.dropped = dropped.getColumn(0).getInt64();
    }
    return stored;
}

void runSqlAt(const QString& path, const char* sql)
{
    opened(path).exec(sql);
}

HeldFile::HeldFile(const QString& path)
    : _database(std::make_unique<SQLite::Database>(opened(path)))
{
    _database->exec("BEGIN IMMEDIATE");
}

HeldFile::~HeldFile() = default;

} // namespace kovalin::test
