#include "learned_search/Prediction.h"

#include "learned_search/PlainPrediction.h"
#include "learned_search/ScoreOrder.h"

namespace vole::learned_search {

std::vector<std::int32_t> predictComics(const SearchModel& model, const std::optional<ComicIndex>&,
                                        const std::vector<Slice>& slices, std::int32_t topN)
{
    return bestComics(predictPlainly(model, slices), topN);
}

} // namespace vole::learned_search
