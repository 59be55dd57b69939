#pragma once

#include "learned_search/Scoring.h"

#include <cstdint>
#include <vector>

namespace vole::learned_search {

/// The ids of the first `topN` comics, the greatest score first. Equal scores come out in the order that the standard
/// library's partial sort gives them, which depends on the whole list. A negative `topN` is a std::length_error.
[[nodiscard]] std::vector<std::int32_t> bestComics(std::vector<ScoredComic> scored, std::int32_t topN);

} // namespace vole::learned_search
