#include "kovalin/model_build/CountSums.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace kovalin::cli {

namespace {

constexpr std::size_t firstCapacity = 64 * 1024; // 1 MiB

bool isBefore(const ComicCount& a, const ComicCount& b)
{
    return std::tie(a.key, a.comic) < std::tie(b.key, b.comic);
}

} // namespace

CountSums::CountSums()
{
    _counts.reserve(firstCapacity);
}

void CountSums::add(const ComicCount& count)
{
    if (_counts.size() == _counts.capacity()) {
        sum();
        // A quarter is left for what is to come, so that sorting is rare, and growing in small steps leaves little unused.
        if (_counts.size() > _counts.capacity() / 4 * 3) {
            _counts.reserve(_counts.capacity() / 2 * 3);
        }
    }
    _counts.push_back(count);
}

std::vector<ComicCount> CountSums::take()
{
    sum();
    _summed = 0;
    return std::exchange(_counts, {});
}

void CountSums::sum()
{
    const auto added = _counts.begin() + static_cast<std::ptrdiff_t>(_summed);
    std::sort(added, _counts.end(), isBefore);
    std::inplace_merge(_counts.begin(), added, _counts.end(), isBefore);
    auto last = _counts.begin();
    for (auto next = last; next != _counts.end(); ++next) {
        if (next == last) {
            continue;
        }
        if (isBefore(*last, *next)) {
            *++last = *next;
        } else {
            last->count += next->count;
        }
    }
    if (!_counts.empty()) {
        _counts.erase(last + 1, _counts.end());
    }
    _summed = _counts.size();
}

} // namespace kovalin::cli
