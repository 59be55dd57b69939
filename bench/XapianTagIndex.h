#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace kovalin::bench {

/// Tags in an index of Xapian, in memory: a document a tag and a term a word, no positions and no weighing. One thread.
class XapianTagIndex final {
public:
    /// Document numbers follow the order of the tags, from 1 on. Each tag is given as its words. `stickers` holds the numbers
    /// of each tag's stickers, kept as its document's data.
    XapianTagIndex(std::span<const std::vector<std::string>> tags,
                   std::span<const std::vector<std::uint32_t>> stickers);
    ~XapianTagIndex();

    XapianTagIndex(const XapianTagIndex&) = delete;
    XapianTagIndex& operator=(const XapianTagIndex&) = delete;

    /// The numbers of the documents that have, for each word, a term that begins with it; ascending, in a list that the next
    /// call overwrites.
    const std::vector<std::uint32_t>& search(std::span<const std::string> words);

    /// The numbers of the stickers of the documents that have, for each word, a term that begins with it; document by
    /// document and with repeats, in a list that the next call overwrites. And how many documents they come from.
    const std::vector<std::uint32_t>& searchStickers(std::span<const std::string> words, std::size_t& tagCount);

    /// The same for a text that Xapian's own parser takes apart, each word followed by "*".
    const std::vector<std::uint32_t>& searchStickersByText(const std::string& text, std::size_t& tagCount);

private:
    struct Database;
    struct Matches;
    [[nodiscard]] Matches matchesOf(std::span<const std::string> words) const;
    const std::vector<std::uint32_t>& collectStickers(const Matches& matches, std::size_t& tagCount);

    std::unique_ptr<Database> _database;
    std::vector<std::uint32_t> _documents;
    std::vector<std::uint32_t> _stickers;
};

} // namespace kovalin::bench
