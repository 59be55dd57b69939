#include "XapianTagIndex.h"

#include <xapian.h>

#include <cstring>

namespace kovalin::bench {

struct XapianTagIndex::Database {
    Database()
    {
        parser.set_database(database);
        parser.set_default_op(Xapian::Query::OP_AND);
    }

    [[nodiscard]] Xapian::MSet matchesOf(const Xapian::Query& query) const
    {
        Xapian::Enquire enquire(database);
        enquire.set_weighting_scheme(Xapian::BoolWeight());
        enquire.set_docid_order(Xapian::Enquire::ASCENDING);
        enquire.set_query(query);
        return enquire.get_mset(0, database.get_doccount());
    }

    Xapian::WritableDatabase database{std::string(), Xapian::DB_BACKEND_INMEMORY};
    Xapian::QueryParser parser;
};

struct XapianTagIndex::Matches {
    Xapian::MSet set;
};

XapianTagIndex::XapianTagIndex(std::span<const std::vector<std::string>> tags,
                               std::span<const std::vector<std::uint32_t>> stickers)
    : _database(std::make_unique<Database>())
{
    for (std::size_t tag = 0; tag < tags.size(); ++tag) {
        const auto& words = tags[tag];
        Xapian::Document document;
        std::string data(stickers[tag].size() * sizeof(std::uint32_t), '\0');
        std::memcpy(data.data(), stickers[tag].data(), data.size());
        document.set_data(data);
        for (const std::string& word : words) {
            document.add_boolean_term(word);
        }
        _database->database.add_document(document);
    }
    _database->database.commit();
}

XapianTagIndex::~XapianTagIndex() = default;

XapianTagIndex::Matches XapianTagIndex::matchesOf(std::span<const std::string> words) const
{
    std::vector<Xapian::Query> beginnings;
    for (const std::string& word : words) {
        beginnings.emplace_back(Xapian::Query::OP_WILDCARD, word, 0, Xapian::Query::WILDCARD_LIMIT_ERROR,
                                Xapian::Query::OP_OR);
    }
    return {_database->matchesOf(Xapian::Query(Xapian::Query::OP_AND, beginnings.begin(), beginnings.end()))};
}

const std::vector<std::uint32_t>& XapianTagIndex::search(std::span<const std::string> words)
{
    _documents.clear();
    const Matches matches = matchesOf(words);
    for (auto match = matches.set.begin(); match != matches.set.end(); ++match) {
        _documents.push_back(*match);
    }
    return _documents;
}

const std::vector<std::uint32_t>& XapianTagIndex::searchStickers(std::span<const std::string> words,
                                                                 std::size_t& tagCount)
{
    return collectStickers(matchesOf(words), tagCount);
}

const std::vector<std::uint32_t>& XapianTagIndex::searchStickersByText(const std::string& text, std::size_t& tagCount)
{
    const Xapian::Query query = _database->parser.parse_query(text, Xapian::QueryParser::FLAG_WILDCARD);
    return collectStickers({_database->matchesOf(query)}, tagCount);
}

const std::vector<std::uint32_t>& XapianTagIndex::collectStickers(const Matches& matches, std::size_t& tagCount)
{
    _stickers.clear();
    tagCount = matches.set.size();
    for (auto match = matches.set.begin(); match != matches.set.end(); ++match) {
        const std::string data = match.get_document().get_data();
        const auto start = _stickers.size();
        _stickers.resize(start + data.size() / sizeof(std::uint32_t));
        std::memcpy(_stickers.data() + start, data.data(), data.size());
    }
    return _stickers;
}

} // namespace kovalin::bench
