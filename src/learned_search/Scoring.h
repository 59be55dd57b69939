#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vole::learned_search {

// How comics are scored: each n-gram of a query multiplies each comic's score by a factor. All in single precision without
// logarithms or rescaling, so that scores underflow, and so that the order of the multiplications is part of the result.

/// The score that every comic starts from, and how strongly an n-gram is taken to indicate a comic that it has no row for.
inline constexpr float kPredEpsilon = 1e-12F;

/// The rows of one n-gram in `comicProbs`, and the weight of that n-gram.
struct Slice {
    std::int32_t start;
    std::int32_t count;
    float weight;
};

/// A row of the list that a prediction works on.
struct ScoredComic {
    std::int32_t comicId;
    float score;
};

/// What an n-gram weighs: 1 for one word, and 10 000 more for each further one.
[[nodiscard]] float ngramWeight(std::string_view ngram);

/// What a row multiplies a score by. With kPredEpsilon for `prob`, what a missing row does.
[[nodiscard]] inline float factorOf(float weight, float prob)
{
    return weight * prob;
}

/// What a comic's score must exceed to be returned, after as many n-grams.
[[nodiscard]] double survivalBound(std::size_t ngramCount);

/// Whether a comic stays in the list. True for a score that is no number: only what is known to be too low goes.
[[nodiscard]] inline bool survives(float score, double bound)
{
    return !(static_cast<double>(score) <= bound);
}

} // namespace vole::learned_search
