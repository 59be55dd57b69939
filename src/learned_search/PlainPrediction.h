#pragma once

#include "learned_search/Scoring.h"

#include <vector>

namespace vole::learned_search {

struct SearchModel;

/// The comics that stay after all slices, in the order of the model, by a walk over all comics for each slice. This is what a
/// prediction means, whatever the model holds: comics listed twice, rows that repeat a comic or stand for unlisted ones,
/// factors that are infinite or no number. The model has its three vectors. A row index outside of `comicProbs` stops the
/// program.
[[nodiscard]] std::vector<ScoredComic> predictPlainly(const SearchModel& model, const std::vector<Slice>& slices);

} // namespace vole::learned_search
