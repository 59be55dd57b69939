#include "learned_search/SparseScores.h"

#include "learned_search/KeySort.h"
#include "learned_search/search_model_generated.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace vole::learned_search {

namespace {

constexpr std::int32_t rowsAhead = 16;

/// A copy, since a model need not be aligned.
probEntry entryAt(const std::uint8_t* rows, std::int32_t row)
{
    probEntry entry;
    std::memcpy(&entry, rows + static_cast<std::size_t>(row) * sizeof entry, sizeof entry);
    return entry;
}

} // namespace

SparseScores::SparseScores(std::size_t comicCount, std::span<const Slice> slices)
    : _comicCount(comicCount)
    , _bound(survivalBound(slices.size()))
    , _isScored(comicCount / 64 + 1)
{
    _missing.reserve(slices.size());
    std::size_t rows = 0;
    for (const Slice& slice : slices) {
        _missing.push_back(factorOf(slice.weight, kPredEpsilon));
        rows += static_cast<std::size_t>(std::max(slice.count, 0));
    }
    _scored.reserve(std::min(rows, comicCount));
    if (slices.size() > 1) {
        _places = std::make_unique_for_overwrite<std::uint32_t[]>(comicCount);
    }
}

std::optional<SparseScores> SparseScores::of(const SearchModel& model, const ComicIndex& comics,
                                             std::span<const Slice> slices)
{
    SparseScores scores(comics.size(), slices);
    for (std::uint32_t number = 0; number < slices.size(); ++number) {
        if (!scores.multiply(model, comics, slices[number], number)) {
            return std::nullopt;
        }
        scores._sharedScore *= scores._missing[number];
    }
    for (Scored& scored : scores._scored) {
        scores.catchUp(scored, static_cast<std::uint32_t>(slices.size()));
        if (std::isnan(scored.comic.score)) {
            return std::nullopt;
        }
    }
    return scores;
}

/// Multiplies the slice's rows in; false where the plain way must do it.
bool SparseScores::multiply(const SearchModel& model, const ComicIndex& comics, const Slice& slice,
                            std::uint32_t number)
{
    if (slice.count <= 0) {
        return true;
    }
    const auto& probs = *model.comicProbs();
    if (std::int64_t{slice.start} + slice.count > std::int64_t{probs.size()}) {
        return false;
    }
    const std::uint8_t* const rows = probs.Data() + static_cast<std::size_t>(slice.start) * sizeof(probEntry);
    for (std::int32_t row = 0; row < slice.count; ++row) {
        // Between two queries the index leaves the caches: the comics of the next rows are fetched together, not one by one.
        comics.prefetch(entryAt(rows, std::min(row + rowsAhead, slice.count - 1)).comicId());
        const probEntry entry = entryAt(rows, row);
        const float factor = factorOf(slice.weight, entry.prob());
        if (!std::isfinite(factor)) {
            return false;
        }
        const std::uint32_t position = comics.positionOf(entry.comicId());
        if (position != ComicIndex::kNone && !multiply(entry.comicId(), position, factor, number)) {
            return false;
        }
    }
    return true;
}

/// Multiplies a row in; false if the slice had one for this comic before.
bool SparseScores::multiply(std::int32_t comic, std::uint32_t position, float factor, std::uint32_t number)
{
    std::uint64_t& bits = _isScored[position / 64];
    const std::uint64_t bit = std::uint64_t{1} << (position % 64);
    if ((bits & bit) == 0) {
        bits |= bit;
        if (_places) {
            _places[position] = static_cast<std::uint32_t>(_scored.size());
        }
        _scored.push_back({{_sharedScore * factor, comic, position}, number + 1});
        return true;
    }
    if (!_places) {
        return false;
    }
    Scored& scored = _scored[_places[position]];
    if (scored.nextSlice > number) {
        return false;
    }
    catchUp(scored, number);
    scored.comic.score *= factor;
    scored.nextSlice = number + 1;
    return true;
}

/// Multiplies in that the comic had no row in the slices before `slice`.
void SparseScores::catchUp(Scored& scored, std::uint32_t slice) const
{
    for (; scored.nextSlice < slice; ++scored.nextSlice) {
        scored.comic.score *= _missing[scored.nextSlice];
    }
}

std::vector<Survivor> SparseScores::survivorsWithRows() const
{
    std::vector<Survivor> survivors;
    survivors.reserve(_scored.size());
    for (const Scored& scored : _scored) {
        if (survives(scored.comic.score, _bound)) {
            survivors.push_back(scored.comic);
        }
    }
    return survivors;
}

std::vector<Survivor> SparseScores::survivorsInModelOrder(const SearchModel& model) const
{
    auto survivors = survivorsWithRows();
    if (comicsWithoutRowsSurvive()) {
        survivors.reserve(_comicCount);
        for (std::uint32_t position = 0; position < _comicCount; ++position) {
            if ((_isScored[position / 64] >> (position % 64) & 1U) == 0) {
                survivors.push_back({_sharedScore, model.comicPriors()->Get(position)->comicId(), position});
            }
        }
    }
    sortByKey(std::span(survivors), [](const Survivor& survivor) { return survivor.position; });
    return survivors;
}

} // namespace vole::learned_search
