#pragma once

#include "learned_search/ComicIndex.h"
#include "learned_search/Scoring.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace vole::learned_search {

struct SearchModel;

/// The ids of the best `topN` comics after all slices, best first: those of `predictPlainly` put into order by
/// `orderBestFirst`, in time that grows with the slices and not with the model's comics. `comics` is nullopt where the model
/// can't be indexed; then, and where a row makes a short cut unsafe, it is the plain way that answers. A negative `topN` is a
/// std::length_error. A row index outside of the model's rows stops the program.
[[nodiscard]] std::vector<std::int32_t> predictComics(const SearchModel& model, const std::optional<ComicIndex>& comics,
                                                      const std::vector<Slice>& slices, std::int32_t topN);

} // namespace vole::learned_search
