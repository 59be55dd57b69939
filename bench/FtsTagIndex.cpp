#include "FtsTagIndex.h"

#include <sqlite3.h>

#include <stdexcept>

namespace kovalin::bench {

namespace {

void check(bool isGood, sqlite3* database)
{
    if (!isGood) {
        throw std::runtime_error(std::string("SQLite: ") + sqlite3_errmsg(database));
    }
}

} // namespace

void FtsTagIndex::Closer::operator()(sqlite3* database) const
{
    sqlite3_close_v2(database);
}

void FtsTagIndex::Closer::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

FtsTagIndex::FtsTagIndex(std::span<const std::string> tags, const std::string& prefixLengths,
                         std::span<const std::vector<std::uint32_t>> stickers)
{
    sqlite3* database = nullptr;
    const int opened = sqlite3_open_v2(":memory:", &database,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    _database.reset(database);
    check(opened == SQLITE_OK, database);

    execute(prefixLengths.empty() ? "CREATE VIRTUAL TABLE tags USING fts5(tag)"
                                  : "CREATE VIRTUAL TABLE tags USING fts5(tag, content='', columnsize=0, detail=none, "
                                    "prefix='" +
                                        prefixLengths + "')");
    execute("BEGIN");
    const auto insert = prepared("INSERT INTO tags(rowid, tag) VALUES(?, ?)");
    sqlite3_int64 row = 0;
    for (const std::string& tag : tags) {
        sqlite3_bind_int64(insert.get(), 1, row++);
        sqlite3_bind_text(insert.get(), 2, tag.data(), static_cast<int>(tag.size()), SQLITE_STATIC);
        check(sqlite3_step(insert.get()) == SQLITE_DONE, database);
        sqlite3_reset(insert.get());
    }
    execute(
        "CREATE TABLE stickers(tag INTEGER, place INTEGER, sticker INTEGER, PRIMARY KEY(tag, place)) WITHOUT ROWID");
    const auto insertSticker = prepared("INSERT INTO stickers VALUES(?, ?, ?)");
    for (std::size_t tag = 0; tag < stickers.size(); ++tag) {
        for (std::size_t place = 0; place < stickers[tag].size(); ++place) {
            sqlite3_bind_int64(insertSticker.get(), 1, static_cast<sqlite3_int64>(tag));
            sqlite3_bind_int64(insertSticker.get(), 2, static_cast<sqlite3_int64>(place));
            sqlite3_bind_int64(insertSticker.get(), 3, stickers[tag][place]);
            check(sqlite3_step(insertSticker.get()) == SQLITE_DONE, database);
            sqlite3_reset(insertSticker.get());
        }
    }
    execute("COMMIT");
    _searchStickers =
        prepared("SELECT stickers.tag, stickers.sticker FROM tags JOIN stickers ON stickers.tag = tags.rowid "
                 "WHERE tags MATCH ? ORDER BY tags.rowid, stickers.place");
    _search = prepared("SELECT rowid FROM tags WHERE tags MATCH ? ORDER BY rowid");
}

void FtsTagIndex::optimize()
{
    execute("INSERT INTO tags(tags) VALUES('optimize')");
}

std::string FtsTagIndex::queryFor(std::span<const std::string> words)
{
    std::string query;
    for (const std::string& word : words) {
        query += (query.empty() ? "\"" : " AND \"") + word + "\"*";
    }
    return query;
}

const std::vector<std::int64_t>& FtsTagIndex::search(const std::string& query)
{
    _rows.clear();
    sqlite3_bind_text(_search.get(), 1, query.data(), static_cast<int>(query.size()), SQLITE_STATIC);
    int outcome = SQLITE_ROW;
    while ((outcome = sqlite3_step(_search.get())) == SQLITE_ROW) {
        _rows.push_back(sqlite3_column_int64(_search.get(), 0));
    }
    check(outcome == SQLITE_DONE, _database.get());
    sqlite3_reset(_search.get());
    return _rows;
}

const std::vector<std::int64_t>& FtsTagIndex::searchStickers(const std::string& query, std::size_t& tagCount)
{
    _rows.clear();
    tagCount = 0;
    sqlite3_int64 lastTag = -1;
    sqlite3_bind_text(_searchStickers.get(), 1, query.data(), static_cast<int>(query.size()), SQLITE_STATIC);
    int outcome = SQLITE_ROW;
    while ((outcome = sqlite3_step(_searchStickers.get())) == SQLITE_ROW) {
        const sqlite3_int64 tag = sqlite3_column_int64(_searchStickers.get(), 0);
        tagCount += tag == lastTag ? 0 : 1;
        lastTag = tag;
        _rows.push_back(sqlite3_column_int64(_searchStickers.get(), 1));
    }
    check(outcome == SQLITE_DONE, _database.get());
    sqlite3_reset(_searchStickers.get());
    return _rows;
}

void FtsTagIndex::execute(const std::string& sql)
{
    check(sqlite3_exec(_database.get(), sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, _database.get());
}

std::unique_ptr<sqlite3_stmt, FtsTagIndex::Closer> FtsTagIndex::prepared(const char* sql)
{
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v3(_database.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) == SQLITE_OK,
          _database.get());
    return std::unique_ptr<sqlite3_stmt, Closer>(statement);
}

} // namespace kovalin::bench
