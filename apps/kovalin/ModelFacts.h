#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vole::learned_search {
struct SearchModel;
}

namespace kovalin::cli {

/// What can be counted in a model.
struct ModelFacts {
    static constexpr std::size_t mostWordsAlone = 5;

    struct Key {
        std::string text; // in display form
        float wordPrior;
    };

    std::uint64_t tables;
    int depth; // of the tables in each other
    std::uint64_t comics;
    std::uint64_t keys;
    /// Keys of one word, of two and so on, and last of more than `mostWordsAlone`.
    std::array<std::uint64_t, mostWordsAlone + 1> keysByWords;
    std::uint64_t suggestedKeys; // keys that may be suggested
    std::uint64_t rows;
    /// As the keys say, whether such rows are there or not; 0 for a negative number, and without keys.
    double medianRowsOfAKey;
    std::int32_t mostRowsOfAKey;
    /// The greatest `wordPrior` first, one that is no number last, equal ones in the file's order.
    std::vector<Key> popularKeys;
};

/// The model has passed verification; nothing else that it says is relied on. At most `popular` popular keys.
[[nodiscard]] ModelFacts factsOf(const vole::learned_search::SearchModel& model, std::size_t popular);

} // namespace kovalin::cli
