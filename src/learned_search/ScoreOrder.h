#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vole::learned_search {

struct Survivor;

/// Puts the `count` best to the front of the list, best first, by the standard library's partial sort. The order of equal
/// scores is the one that its heap leaves behind; it depends on the whole list and is part of a prediction's result.
template <typename Scored>
void orderBestFirst(std::vector<Scored>& list, std::size_t count)
{
    std::partial_sort(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(count), list.end(),
                      [](const Scored& a, const Scored& b) { return a.score > b.score; });
}

/// The same, faster, for positive scores that are all different, as far as the first `count` depend on it. False where they
/// aren't; then the list holds what it held, in some other order.
[[nodiscard]] bool orderDistinctBestFirst(std::vector<Survivor>& list, std::size_t count);

} // namespace vole::learned_search
