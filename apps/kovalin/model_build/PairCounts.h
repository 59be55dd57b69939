#pragma once

#include "kovalin/model_build/CountSums.h"
#include "kovalin/model_build/KeyTable.h"
#include "kovalin/model_build/PairsFile.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

namespace kovalin::cli {

/// Counts what pairs say of keys and comics. A key is a run of one to five words of a text, joined as in a model; one that
/// occurs twice in a text counts once for it. One thread at a time.
class PairCounts final {
public:
    /// A key that no text has by itself and every text counts for: what it counts are the comics.
    static constexpr std::uint32_t kEveryText = 0;

    PairCounts();

    /// A text without a word that a key can have is only counted as skipped. Throws std::overflow_error when all counts
    /// together are too large a number.
    void add(const Pair& pair);

    /// All counts together, but those of skipped texts.
    [[nodiscard]] std::int64_t total() const { return _total; }

    /// How many pairs had a text without a word.
    [[nodiscard]] std::uint64_t skippedTexts() const { return _skippedTexts; }

    [[nodiscard]] std::string_view key(std::uint32_t number) const { return _keys.key(number); }

    /// How often a text ended with the key.
    [[nodiscard]] std::int64_t endCount(std::uint32_t number) const { return _endCounts[number]; }

    /// How often each comic was chosen after a text with each key, ascending by key and then by comic. To be called once,
    /// when all has been added.
    [[nodiscard]] std::vector<ComicCount> takeSums() { return _sums.take(); }

private:
    [[nodiscard]] std::uint32_t numberOf(std::string_view key);

    KeyTable _keys;
    std::deque<std::int64_t> _endCounts; // by number
    CountSums _sums;
    std::vector<std::uint32_t> _keysOfText;
    std::int64_t _total = 0;
    std::uint64_t _skippedTexts = 0;
};

} // namespace kovalin::cli
