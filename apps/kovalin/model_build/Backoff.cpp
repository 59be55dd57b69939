#include "kovalin/model_build/Backoff.h"

#include "kovalin/model_build/Factors.h"
#include "learned_search/QueryWords.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <tuple>
#include <utility>

using vole::learned_search::QueryWords;

namespace kovalin::cli {

namespace {

// So many comics of a word are looked up among those of a run's other words. It bounds the time that runs of common words take,
// and is far more than the rows that a run gets.
constexpr std::size_t mostCandidates = 1000;

std::uint32_t comicOf(const ComicCount& sum)
{
    return static_cast<std::uint32_t>(sum.comic);
}

/// The comics with the greatest counts, of equal ones those that come first in the model.
std::vector<std::uint32_t> bestOf(std::span<const ComicCount> sums)
{
    std::vector<ComicCount> best(sums.begin(), sums.end());
    if (best.size() > mostCandidates) {
        std::ranges::nth_element(best, best.begin() + mostCandidates, [](const ComicCount& a, const ComicCount& b) {
            return std::tie(b.count, a.comic) < std::tie(a.count, b.comic);
        });
        best.resize(mostCandidates);
    }
    std::vector<std::uint32_t> comics(best.size());
    std::ranges::transform(best, comics.begin(), comicOf);
    return comics;
}

} // namespace

Backoff::Backoff(std::vector<double> comicShares)
    : _comicShares(std::move(comicShares))
{
}

void Backoff::addWord(std::string_view word, std::int64_t count, std::span<const ComicCount> sums)
{
    _words.insert_or_assign(word, Word{count, sums, bestOf(sums)});
}

void Backoff::sharesOf(std::string_view run, std::span<const ComicCount> chosen, std::vector<ComicShare>& shares)
{
    findWords(run);
    _candidates = _wordsOfRun.back()->best;
    for (const ComicCount& sum : chosen) {
        _candidates.push_back(comicOf(sum));
    }
    std::ranges::sort(_candidates);
    _candidates.erase(std::unique(_candidates.begin(), _candidates.end()), _candidates.end());

    shares.clear();
    double sum = 0;
    for (const std::uint32_t comic : _candidates) {
        if (const double share = meanShareOf(comic); share > 0) {
            shares.push_back({comic, share});
            sum += share;
        }
    }
    for (ComicShare& share : shares) {
        share.share /= sum;
    }
}

void Backoff::findWords(std::string_view run)
{
    _wordsOfRun.clear();
    for (std::size_t start = 0; start <= run.size();) {
        const std::size_t end = std::min(run.find(QueryWords::kDelimiter, start), run.size());
        const Word* const word = &_words.at(run.substr(start, end - start));
        if (std::ranges::find(_wordsOfRun, word) == _wordsOfRun.end()) {
            _wordsOfRun.push_back(word);
        }
        start = end + 1;
    }
    // Last: all comics but those of the run itself come from it, while most lack another word.
    const auto rarest =
        std::ranges::min_element(_wordsOfRun, std::less(), [](const Word* word) { return word->sums.size(); });
    std::swap(*rarest, _wordsOfRun.back());
}

double Backoff::shareOf(const Word& word, std::uint32_t comic) const
{
    const auto found = std::ranges::lower_bound(word.sums, comic, std::less(), comicOf);
    return found == word.sums.end() || comicOf(*found) != comic
               ? 0
               : smoothedShare(found->count, word.count, _comicShares[comic]);
}

/// The geometric mean: 0 when a word doesn't indicate the comic.
double Backoff::meanShareOf(std::uint32_t comic) const
{
    double product = 1;
    for (const Word* const word : _wordsOfRun) {
        product *= shareOf(*word, comic);
        if (product == 0) {
            return 0;
        }
    }
    return std::pow(product, 1 / static_cast<double>(_wordsOfRun.size()));
}

} // namespace kovalin::cli
