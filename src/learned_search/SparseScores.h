#pragma once

#include "learned_search/ComicIndex.h"
#include "learned_search/Scoring.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace vole::learned_search {

struct SearchModel;

/// A comic that stays after all slices, with its score.
struct Survivor {
    float score;
    std::int32_t comicId;
    std::uint32_t position; // in the model's comicPriors
};

/// The scores after all slices of those comics that have a row in any. One that has none has the score that all of them share.
/// Each score comes from the same multiplications in the same order as if every comic were walked through.
class SparseScores final {
public:
    /// nullopt where only the plain way gives the right answer: a row index outside of the rows, a comic that stands twice in a
    /// slice, or a factor or score that isn't finite.
    [[nodiscard]] static std::optional<SparseScores> of(const SearchModel& model, const ComicIndex& comics,
                                                        std::span<const Slice> slices);

    /// Whether a comic stays that has no row. It takes n-grams that weigh so much that they outweigh missing rows.
    [[nodiscard]] bool comicsWithoutRowsSurvive() const { return survives(_sharedScore, _bound); }

    /// The survivors that have rows, in the order in which the slices name them.
    [[nodiscard]] std::vector<Survivor> survivorsWithRows() const;

    /// All survivors in the order of the model's comicPriors.
    [[nodiscard]] std::vector<Survivor> survivorsInModelOrder(const SearchModel& model) const;

private:
    struct Scored {
        Survivor comic;
        std::uint32_t nextSlice; // the first one that isn't in the score yet
    };

    SparseScores(std::size_t comicCount, std::span<const Slice> slices);

    [[nodiscard]] bool multiply(const SearchModel& model, const ComicIndex& comics, const Slice& slice,
                                std::uint32_t number);
    [[nodiscard]] bool multiply(std::int32_t comic, std::uint32_t position, float factor, std::uint32_t number);
    void catchUp(Scored& scored, std::uint32_t slice) const;

    std::size_t _comicCount;
    std::vector<float> _missing;       // by slice: the factor of a comic without a row
    float _sharedScore = kPredEpsilon; // of a comic that had no row in the slices so far
    double _bound;
    std::vector<Scored> _scored;          // as they came
    std::vector<std::uint64_t> _isScored; // a bit for each position
    std::unique_ptr<std::uint32_t[]>
        _places; // in `_scored`, by position, where there is one; not made for a single slice
};

} // namespace vole::learned_search
