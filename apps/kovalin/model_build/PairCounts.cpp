#include "kovalin/model_build/PairCounts.h"

#include "learned_search/QueryWords.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

using vole::learned_search::QueryWords;

namespace kovalin::cli {

namespace {

constexpr std::size_t longestKey = 5; // words: queries are searched for no longer ones

} // namespace

PairCounts::PairCounts()
{
    static_cast<void>(numberOf({})); // is kEveryText
}

void PairCounts::add(const Pair& pair)
{
    const auto words = QueryWords::ofQuery(pair.text);
    if (words.empty()) {
        ++_skippedTexts;
        return;
    }
    if (pair.count > std::numeric_limits<std::int64_t>::max() - _total) {
        throw std::overflow_error("the counts add up to more than " +
                                  std::to_string(std::numeric_limits<std::int64_t>::max()));
    }
    _total += pair.count;
    _keysOfText.assign(1, kEveryText);
    for (std::size_t first = 0; first < words.size(); ++first) {
        const std::size_t longest = std::min(longestKey, words.size() - first);
        for (std::size_t length = 1; length <= longest; ++length) {
            const std::uint32_t key = numberOf(words.ngram(first, length));
            _keysOfText.push_back(key);
            if (first + length == words.size()) {
                _endCounts[key] += pair.count;
            }
        }
    }
    std::ranges::sort(_keysOfText);
    _keysOfText.erase(std::unique(_keysOfText.begin(), _keysOfText.end()), _keysOfText.end());
    for (const std::uint32_t key : _keysOfText) {
        _sums.add({key, pair.comic, pair.count});
    }
}

std::uint32_t PairCounts::numberOf(std::string_view key)
{
    const std::uint32_t number = _keys.numberOf(key);
    if (number == _endCounts.size()) {
        _endCounts.push_back(0);
    }
    return number;
}

} // namespace kovalin::cli
