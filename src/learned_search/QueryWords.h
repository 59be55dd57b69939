#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vole::learned_search {

/// The words of a text, one after the other in one string with a delimiter in between, so that every run of words is a piece
/// of that string. Immutable.
class QueryWords final {
public:
    /// Stands between the words of a key.
    static constexpr char kDelimiter = '|';

    /// The words of a query: what stands between white space, lower-case, with everything but letters and digits of ASCII
    /// taken out. Bytes, not characters: no letter beyond ASCII is kept, whatever the process's locale.
    [[nodiscard]] static QueryWords ofQuery(std::string_view query);

    /// The words as they are given.
    [[nodiscard]] static QueryWords ofWords(const std::vector<std::string>& words);

    [[nodiscard]] std::size_t size() const { return _starts.size() - 1; }
    [[nodiscard]] bool empty() const { return size() == 0; }

    /// `count` words from `first` on, at least one, joined by the delimiter. Lives as long as this object.
    [[nodiscard]] std::string_view ngram(std::size_t first, std::size_t count) const
    {
        return std::string_view(_joined).substr(_starts[first], _starts[first + count] - 1 - _starts[first]);
    }

    /// All words, joined by the delimiter.
    [[nodiscard]] const std::string& joined() const { return _joined; }

private:
    QueryWords() = default;

    void dropLastDelimiter();

    std::string _joined;
    // Where each word starts, and one more: where the next one would.
    std::vector<std::size_t> _starts{0};
};

} // namespace vole::learned_search
