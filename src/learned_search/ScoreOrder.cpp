#include "learned_search/ScoreOrder.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace vole::learned_search {

std::vector<std::int32_t> bestComics(std::vector<ScoredComic> scored, std::int32_t topN)
{
    if (topN < 0) {
        throw std::length_error("predict: topN is negative");
    }
    const std::size_t count = std::min(scored.size(), static_cast<std::size_t>(topN));
    const auto end = scored.begin() + static_cast<std::ptrdiff_t>(count);
    std::partial_sort(scored.begin(), end, scored.end(),
                      [](const ScoredComic& a, const ScoredComic& b) { return a.score > b.score; });
    std::vector<std::int32_t> comics;
    comics.reserve(count);
    std::transform(scored.begin(), end, std::back_inserter(comics),
                   [](const ScoredComic& comic) { return comic.comicId; });
    return comics;
}

} // namespace vole::learned_search
