#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

#include <memory>
#include <vector>

namespace SQLite {
class Database;
} // namespace SQLite

namespace kovalin::test {

/// What an outbox's file holds.
struct StoredOutbox {
    QStringList ids = {}; ///< without braces, in their order
    std::vector<QByteArray> entries = {};
    qint64 dropped = 0;
};

/// Reads an outbox's file with a connection of its own and nothing of the library; nothing where there is none yet.
[[nodiscard]] StoredOutbox storedAt(const QString& path);

/// Runs SQL on the file with a connection of its own.
void runSqlAt(const QString& path, const char* sql);

/// Holds a file as another process would that writes to it: nobody else can.
class HeldFile final {
public:
    explicit HeldFile(const QString& path);
    ~HeldFile();
    Q_DISABLE_COPY_MOVE(HeldFile)

private:
    std::unique_ptr<SQLite::Database> _database;
};

} // namespace kovalin::test
