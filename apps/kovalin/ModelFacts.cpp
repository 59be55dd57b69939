#include "kovalin/ModelFacts.h"

#include "kovalin/ModelFile.h"
#include "learned_search/LearnedSearchClassifierImpl.h"
#include "learned_search/search_model_generated.h"

#include <algorithm>
#include <cmath>

using namespace vole::learned_search;

namespace kovalin::cli {

namespace {

using Keys = std::vector<const entryInfoForWord*>;

Keys keysOf(const SearchModel& model)
{
    const auto* entries = model.entryInfoForWords();
    const flatbuffers::uoffset_t size = entries ? entries->size() : 0;
    Keys keys;
    keys.reserve(size);
    for (flatbuffers::uoffset_t i = 0; i < size; ++i) {
        keys.push_back(entries->Get(i));
    }
    return keys;
}

void countWords(const Keys& keys, ModelFacts& facts)
{
    for (const auto* key : keys) {
        const auto words = 1 + std::ranges::count(key->word()->string_view(), LearnedSearchClassifierImpl::kNgramDelim);
        ++facts.keysByWords[std::min(static_cast<std::size_t>(words) - 1, ModelFacts::mostWordsAlone)];
    }
}

void measureSlices(const Keys& keys, ModelFacts& facts)
{
    if (keys.empty()) {
        return;
    }
    std::vector<std::int32_t> counts;
    counts.reserve(keys.size());
    for (const auto* key : keys) {
        counts.push_back(std::max(key->numEntries(), std::int32_t{0}));
    }
    std::ranges::sort(counts);
    const std::size_t middle = counts.size() / 2;
    const double upper = counts[middle];
    facts.medianRowsOfAKey = counts.size() % 2 == 1 ? upper : (counts[middle - 1] + upper) / 2;
    facts.mostRowsOfAKey = counts.back();
}

bool isMorePopular(const entryInfoForWord* a, const entryInfoForWord* b)
{
    return a->wordPrior() > b->wordPrior() || (std::isnan(b->wordPrior()) && !std::isnan(a->wordPrior()));
}

} // namespace

ModelFacts factsOf(const SearchModel& model, std::size_t popular)
{
    Keys keys = keysOf(model);
    ModelFacts facts{};
    facts.tables = tableCount(model);
    facts.depth = facts.tables > 1 ? 2 : 1;
    facts.comics = model.comicPriors() ? model.comicPriors()->size() : 0;
    facts.keys = keys.size();
    facts.rows = model.comicProbs() ? model.comicProbs()->size() : 0;
    facts.suggestedKeys = static_cast<std::uint64_t>(
        std::ranges::count_if(keys, [](const auto* key) { return key->endWordScore() != 0.0F; }));
    countWords(keys, facts);
    measureSlices(keys, facts);
    std::ranges::stable_sort(keys, isMorePopular);
    keys.resize(std::min(keys.size(), popular));
    for (const auto* key : keys) {
        facts.popularKeys.push_back({LearnedSearchClassifierImpl::ngramToString(key->word()->str()), key->wordPrior()});
    }
    return facts;
}

} // namespace kovalin::cli
