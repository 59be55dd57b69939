#include "kovalin/model_build/LearnedModel.h"

#include "kovalin/model_build/Factors.h"
#include "kovalin/model_build/PairCounts.h"

#include <algorithm>
#include <functional>
#include <tuple>

namespace kovalin::cli {

LearnedModel::LearnedModel(PairCounts& counts, std::int64_t minCount)
    : _total(counts.total())
    , _sums(counts.takeSums())
{
    keepKeys(counts, minCount);
    keepComics();
}

void LearnedModel::rowsOf(const Key& key, std::vector<Row>& rows) const
{
    rows.clear();
    for (const ComicCount& sum : std::span(_sums).subspan(key.firstSum, key.sumCount)) {
        const auto comic = static_cast<std::uint32_t>(sum.comic);
        rows.push_back({comic, factorOf(sum.count, key.count, _comics[comic].share)});
    }
    std::ranges::sort(
        rows, [](const Row& a, const Row& b) { return std::tie(b.factor, a.comic) < std::tie(a.factor, b.comic); });
}

void LearnedModel::keepKeys(const PairCounts& counts, std::int64_t minCount)
{
    for (std::size_t first = 0; first < _sums.size();) {
        const std::uint32_t number = _sums[first].key;
        Key key{counts.key(number), 0, counts.endCount(number), first, 0};
        for (; first < _sums.size() && _sums[first].key == number; ++first) {
            key.count += _sums[first].count;
            ++key.sumCount;
        }
        if (number != PairCounts::kEveryText && key.count >= minCount) {
            _keys.push_back(key);
            _rowCount += key.sumCount;
        }
    }
    std::ranges::sort(_keys, std::less(), &Key::text);
}

void LearnedModel::keepComics()
{
    // The counts of every text come first, ascending by comic.
    const auto ofOther =
        std::ranges::find_if(_sums, [](const ComicCount& sum) { return sum.key != PairCounts::kEveryText; });
    const std::vector<ComicCount> known(_sums.begin(), ofOther);

    constexpr std::uint32_t unused = 0xFFFF'FFFF;
    std::vector<std::uint32_t> placeOfKnown(known.size(), unused);
    std::vector<std::uint32_t> kept; // places in `known`
    for (const Key& key : _keys) {
        for (ComicCount& sum : sumsOf(key)) {
            const auto found = std::ranges::lower_bound(known, sum.comic, std::less(), &ComicCount::comic);
            const auto place = static_cast<std::uint32_t>(found - known.begin());
            sum.comic = static_cast<std::int32_t>(place);
            if (placeOfKnown[place] == unused) {
                placeOfKnown[place] = 0;
                kept.push_back(place);
            }
        }
    }
    std::ranges::sort(kept, [&known](std::uint32_t a, std::uint32_t b) {
        return std::tie(known[b].count, known[a].comic) < std::tie(known[a].count, known[b].comic);
    });
    _comics.reserve(kept.size());
    for (const std::uint32_t place : kept) {
        placeOfKnown[place] = static_cast<std::uint32_t>(_comics.size());
        _comics.push_back({known[place].comic, static_cast<double>(known[place].count) / static_cast<double>(_total)});
    }
    for (const Key& key : _keys) {
        for (ComicCount& sum : sumsOf(key)) {
            sum.comic = static_cast<std::int32_t>(placeOfKnown[static_cast<std::uint32_t>(sum.comic)]);
        }
    }
}

std::span<ComicCount> LearnedModel::sumsOf(const Key& key)
{
    return std::span(_sums).subspan(key.firstSum, key.sumCount);
}

} // namespace kovalin::cli
