#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace kovalin::bench {

/// Tags in a full text index of SQLite (FTS5), in memory, with their stickers in a table beside it. One thread. Errors are
/// thrown as std::runtime_error.
class FtsTagIndex final {
public:
    /// Row numbers follow the order of the tags. `prefixLengths` are the lengths of word beginnings that get an index of
    /// their own, separated by spaces; with them the table is set up for the fastest search by word beginnings (no column
    /// data and no word positions), with none it is as SQLite makes it. `stickers` holds the numbers of each tag's stickers,
    /// or nothing at all.
    FtsTagIndex(std::span<const std::string> tags, const std::string& prefixLengths,
                std::span<const std::vector<std::uint32_t>> stickers);

    /// Merges what was inserted into one segment. Makes searching faster; no part of building.
    void optimize();

    /// The query language's form of "each of the words begins a word of the tag".
    [[nodiscard]] static std::string queryFor(std::span<const std::string> words);

    /// The row numbers of the tags that match, ascending, in a list that the next call overwrites.
    const std::vector<std::int64_t>& search(const std::string& query);

    /// The numbers of the stickers of these tags, tag by tag and with repeats, in a list that the next call overwrites; and
    /// how many tags they come from.
    const std::vector<std::int64_t>& searchStickers(const std::string& query, std::size_t& tagCount);

private:
    struct Closer {
        void operator()(sqlite3* database) const;
        void operator()(sqlite3_stmt* statement) const;
    };

    void execute(const std::string& sql);
    [[nodiscard]] std::unique_ptr<sqlite3_stmt, Closer> prepared(const char* sql);

    std::unique_ptr<sqlite3, Closer> _database;
    std::unique_ptr<sqlite3_stmt, Closer> _search;
    std::unique_ptr<sqlite3_stmt, Closer> _searchStickers;
    std::vector<std::int64_t> _rows;
};

} // namespace kovalin::bench
