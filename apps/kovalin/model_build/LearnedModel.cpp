#include "kovalin/model_build/LearnedModel.h"

#include "kovalin/model_build/Backoff.h"
#include "kovalin/model_build/Factors.h"
#include "kovalin/model_build/PairCounts.h"
#include "learned_search/QueryWords.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string_view>
#include <tuple>
#include <utility>

using vole::learned_search::QueryWords;

namespace kovalin::cli {

namespace {

// So many comics that were never chosen after a run get a row for it. More find hardly more and swell the model.
constexpr std::size_t mostUnchosenRows = 30;

bool isWord(const LearnedModel::Key& key)
{
    return key.text.find(QueryWords::kDelimiter) == std::string_view::npos;
}

std::uint32_t placeOf(const ComicCount& sum)
{
    return static_cast<std::uint32_t>(sum.comic);
}

bool isBetter(const LearnedModel::Row& a, const LearnedModel::Row& b)
{
    return std::tie(b.factor, a.comic) < std::tie(a.factor, b.comic);
}

LearnedModel::Row rowOf(const LearnedModel::Key& key, std::int64_t count, const ComicShare& imagined)
{
    return {imagined.comic, factorOf(smoothedShare(count, key.count, imagined.share))};
}

/// Adds rows of what was chosen, `sums`, and of the best of what else is imagined. `imagined` has all comics of `sums`, and both
/// are ascending by comic.
void addRowsOfRun(const LearnedModel::Key& key, std::span<const ComicCount> sums,
                  const std::vector<ComicShare>& imagined, std::vector<LearnedModel::Row>& rows)
{
    std::vector<LearnedModel::Row> unchosen;
    auto sum = sums.begin();
    for (const ComicShare& share : imagined) {
        if (sum != sums.end() && placeOf(*sum) == share.comic) {
            rows.push_back(rowOf(key, sum->count, share));
            ++sum;
        } else {
            unchosen.push_back(rowOf(key, 0, share));
        }
    }
    const auto end = unchosen.begin() + static_cast<std::ptrdiff_t>(std::min(unchosen.size(), mostUnchosenRows));
    std::ranges::partial_sort(unchosen, end, isBetter);
    std::ranges::copy(unchosen.begin(), end, std::back_inserter(rows));
}

} // namespace

LearnedModel::LearnedModel(PairCounts& counts, std::int64_t minCount)
    : _total(counts.total())
    , _sums(counts.takeSums())
{
    keepKeys(counts, minCount);
    keepComics();
}

void LearnedModel::makeRows()
{
    Backoff words = backoff();
    std::vector<ComicShare> imagined;
    std::vector<Row> rows;
    for (Key& key : _keys) {
        rows.clear();
        const auto sums = sumsOf(key);
        if (isWord(key)) {
            for (const ComicCount& sum : sums) {
                rows.push_back(rowOf(key, sum.count, {placeOf(sum), _comics[placeOf(sum)].share}));
            }
        } else {
            words.sharesOf(key.text, sums, imagined);
            addRowsOfRun(key, sums, imagined, rows);
        }
        std::ranges::sort(rows, isBetter);
        key.rowCount = rows.size();
        _rows.insert(_rows.end(), rows.begin(), rows.end());
    }
    _sums = {};
}

void LearnedModel::keepKeys(const PairCounts& counts, std::int64_t minCount)
{
    for (std::size_t first = 0; first < _sums.size();) {
        const std::uint32_t number = _sums[first].key;
        Key key{counts.key(number), 0, counts.endCount(number), first, 0, 0};
        for (; first < _sums.size() && _sums[first].key == number; ++first) {
            key.count += _sums[first].count;
            ++key.sumCount;
        }
        if (number != PairCounts::kEveryText && key.count >= minCount) {
            _keys.push_back(key);
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
        std::ranges::sort(sumsOf(key), std::less(), &ComicCount::comic);
    }
}

std::span<ComicCount> LearnedModel::sumsOf(const Key& key)
{
    return std::span(_sums).subspan(key.firstSum, key.sumCount);
}

Backoff LearnedModel::backoff()
{
    std::vector<double> shares(_comics.size());
    std::ranges::transform(_comics, shares.begin(), &Comic::share);
    Backoff words(std::move(shares));
    for (const Key& key : _keys) {
        if (isWord(key)) {
            words.addWord(key.text, key.count, sumsOf(key));
        }
    }
    return words;
}

} // namespace kovalin::cli
