#include "learned_search/PlainPrediction.h"

#include "learned_search/search_model_generated.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace vole::learned_search {

std::vector<ScoredComic> predictPlainly(const SearchModel& model, const std::vector<Slice>& slices)
{
    const auto& priors = *model.comicPriors();
    const auto& probs = *model.comicProbs();

    // One row of zeros for each comic stands before the comics themselves. They are comic 0, and their score stays zero unless
    // an infinite factor makes it no number.
    std::vector<ScoredComic> scores(priors.size());
    scores.reserve(2 * scores.size());
    for (const auto* prior : priors) {
        scores.push_back({prior->comicId(), kPredEpsilon});
    }

    for (const Slice& slice : slices) {
        std::unordered_map<std::int32_t, float> probOfComic;
        const std::int64_t end = std::int64_t{slice.start} + slice.count;
        for (std::int64_t row = slice.start; row < end; ++row) {
            probEntry entry; // a copy, since a model need not be aligned
            std::memcpy(&entry, probs.Get(static_cast<flatbuffers::uoffset_t>(row)), sizeof entry);
            probOfComic[entry.comicId()] = entry.prob();
        }
        const float factorOfMissing = factorOf(slice.weight, kPredEpsilon);
        for (ScoredComic& scored : scores) {
            const auto found = probOfComic.find(scored.comicId);
            scored.score *= found == probOfComic.end() ? factorOfMissing : factorOf(slice.weight, found->second);
        }
    }

    const double bound = survivalBound(slices.size());
    std::erase_if(scores, [bound](const ScoredComic& scored) { return !survives(scored.score, bound); });
    return scores;
}

} // namespace vole::learned_search
