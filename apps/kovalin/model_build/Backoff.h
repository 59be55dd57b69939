#pragma once

#include "kovalin/model_build/CountSums.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kovalin::cli {

/// A comic by its place in the model, and its share of some choices.
struct ComicShare {
    std::uint32_t comic;
    double share;
};

/// What comics the words of a run indicate together, whatever was chosen after the run itself. One thread at a time.
class Backoff final {
public:
    /// `comicShares` are the comics' shares of all choices, by place.
    explicit Backoff(std::vector<double> comicShares);

    /// `sums` are the word's counts, ascending by comic, with the comics' places for their ids. They must outlive this object.
    void addWord(std::string_view word, std::int64_t count, std::span<const ComicCount> sums);

    /// The comics that all words of the run indicate, ascending, with shares that are 1 together. All words must have been
    /// added. `chosen` is what was chosen after the run, as for addWord; these comics are among the result. Of the others only
    /// those count that are among the best of the word that was chosen for the fewest comics.
    void sharesOf(std::string_view run, std::span<const ComicCount> chosen, std::vector<ComicShare>& shares);

private:
    struct Word {
        std::int64_t count;
        std::span<const ComicCount> sums;
        std::vector<std::uint32_t> best; // comics
    };

    void findWords(std::string_view run);
    [[nodiscard]] double shareOf(const Word& word, std::uint32_t comic) const;
    [[nodiscard]] double meanShareOf(std::uint32_t comic) const;

    std::vector<double> _comicShares;
    std::unordered_map<std::string_view, Word> _words;
    std::vector<const Word*> _wordsOfRun; // each once, the one with the fewest comics last
    std::vector<std::uint32_t> _candidates;
};

} // namespace kovalin::cli
