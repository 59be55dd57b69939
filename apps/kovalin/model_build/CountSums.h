#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kovalin::cli {

/// How often a comic was chosen after a text with a key.
struct ComicCount {
    std::uint32_t key; // its number
    std::int32_t comic;
    std::int64_t count;
};

/// Sums counts by key and comic. What is added is written down and from time to time sorted and summed, which takes 16 bytes
/// for each different pair of key and comic and at most as much again for what isn't summed yet. One thread at a time.
class CountSums final {
public:
    CountSums();

    /// The sum of all counts of a pair must fit its type.
    void add(const ComicCount& count);

    /// All sums, ascending by key and then by comic, each pair once. Leaves nothing.
    [[nodiscard]] std::vector<ComicCount> take();

private:
    void sum();

    std::vector<ComicCount> _counts;
    std::size_t _summed = 0; // so many are sorted and summed
};

} // namespace kovalin::cli
