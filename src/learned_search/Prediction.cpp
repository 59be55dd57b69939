#include "learned_search/Prediction.h"

#include "learned_search/PlainPrediction.h"
#include "learned_search/ScoreOrder.h"
#include "learned_search/SparseScores.h"

#include <iterator>
#include <stdexcept>

namespace vole::learned_search {

namespace {

/// How many of a list are asked for.
std::size_t countOf(std::size_t listed, std::int32_t topN)
{
    if (topN < 0) {
        throw std::length_error("predict: the number of comics asked for is negative");
    }
    return std::min(listed, static_cast<std::size_t>(topN));
}

template <typename Scored>
std::vector<std::int32_t> firstComics(const std::vector<Scored>& list, std::size_t count)
{
    std::vector<std::int32_t> comics;
    comics.reserve(count);
    std::transform(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(count), std::back_inserter(comics),
                   [](const Scored& scored) { return scored.comicId; });
    return comics;
}

template <typename Scored>
std::vector<std::int32_t> bestComics(std::vector<Scored> list, std::int32_t topN)
{
    const std::size_t count = countOf(list.size(), topN);
    orderBestFirst(list, count);
    return firstComics(list, count);
}

std::vector<std::int32_t> bestComics(const SparseScores& scores, const SearchModel& model, std::int32_t topN)
{
    if (!scores.comicsWithoutRowsSurvive()) {
        auto list = scores.survivorsWithRows();
        const std::size_t count = countOf(list.size(), topN);
        if (orderDistinctBestFirst(list, count)) {
            return firstComics(list, count);
        }
    }
    return bestComics(scores.survivorsInModelOrder(model), topN);
}

} // namespace

std::vector<std::int32_t> predictComics(const SearchModel& model, const std::optional<ComicIndex>& comics,
                                        const std::vector<Slice>& slices, std::int32_t topN)
{
    if (comics) {
        if (const auto scores = SparseScores::of(model, *comics, slices)) {
            return bestComics(*scores, model, topN);
        }
    }
    return bestComics(predictPlainly(model, slices), topN);
}

} // namespace vole::learned_search
