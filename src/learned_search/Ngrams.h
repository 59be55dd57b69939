#pragma once

#include "learned_search/QueryWords.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vole::learned_search {

/// An n-gram of a query that is a key of the dictionary.
template <typename Entry>
struct FoundNgram {
    std::string_view text; // lives in the query's words
    Entry entry;
};

/// The n-grams that cover the words, the longest first and among equally long ones from left to right: runs of at most
/// `maxLength` words that the dictionary knows and that no n-gram found before contains as a piece of text. Containing is
/// meant byte by byte and not word by word: "kittens" leaves no room for "kit".
///
/// `find` looks a key up and gives something that is false where there is no such key.
template <typename Find>
auto findNgrams(const QueryWords& words, std::int32_t maxLength, Find&& find)
{
    using Entry = decltype(find(std::string_view()));
    std::vector<FoundNgram<Entry>> found;
    const auto isCovered = [&found](std::string_view text) {
        return std::any_of(found.begin(), found.end(),
                           [text](const auto& ngram) { return ngram.text.find(text) != std::string_view::npos; });
    };
    const auto longest = std::min(static_cast<std::size_t>(std::max(maxLength, std::int32_t{0})), words.size());
    for (std::size_t length = longest; length >= 1; --length) {
        for (std::size_t first = 0; first + length <= words.size(); ++first) {
            const std::string_view text = words.ngram(first, length);
            // In this order since most runs of words are no keys, while a long text may have found many n-grams.
            if (const Entry entry = find(text); entry && !isCovered(text)) {
                found.push_back({text, entry});
            }
        }
    }
    return found;
}

} // namespace vole::learned_search
