#include "learned_search/Scoring.h"

#include "learned_search/QueryWords.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

#if defined(__FAST_MATH__)
#error "Scores must be computed as they are written."
#endif
static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);
static_assert(FLT_EVAL_METHOD == 0, "Scores must be rounded to single precision after each operation.");

namespace vole::learned_search {

float ngramWeight(std::string_view ngram)
{
    const auto delimiters = std::count(ngram.begin(), ngram.end(), QueryWords::kDelimiter);
    return 10000.0F * static_cast<float>(delimiters) + 1.0F;
}

double survivalBound(std::size_t ngramCount)
{
    constexpr double filterFactor = 0.001F; // in single precision first
    return std::pow(static_cast<double>(kPredEpsilon), static_cast<double>(ngramCount)) * filterFactor;
}

} // namespace vole::learned_search
