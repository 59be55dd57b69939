#include "learned_search/ScoreOrder.h"

#include "learned_search/KeySort.h"
#include "learned_search/SparseScores.h"

#include <bit>
#include <span>

namespace vole::learned_search {

namespace {

bool isBetter(const Survivor& a, const Survivor& b)
{
    return a.score > b.score;
}

bool isNotBetter(const Survivor& a, const Survivor& b)
{
    return !isBetter(a, b);
}

} // namespace

bool orderDistinctBestFirst(std::vector<Survivor>& list, std::size_t count)
{
    // A slice that is stored best first needs no sorting.
    if (count == 0 || std::adjacent_find(list.begin(), list.end(), isNotBetter) == list.end()) {
        return true;
    }
    const auto end = list.begin() + static_cast<std::ptrdiff_t>(count);
    if (end != list.end()) {
        std::nth_element(list.begin(), end - 1, list.end(), isBetter);
    }
    // As whole numbers, positive floats are in the same order.
    sortByKey(std::span(list.begin(), end),
              [](const Survivor& survivor) { return ~std::bit_cast<std::uint32_t>(survivor.score); });
    const float last = list[count - 1].score;
    return std::adjacent_find(list.begin(), end, isNotBetter) == end &&
           std::none_of(end, list.end(), [last](const Survivor& survivor) { return survivor.score == last; });
}

} // namespace vole::learned_search
