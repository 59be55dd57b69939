#include "learned_search/Autocomplete.h"

#include "learned_search/DictionaryIndex.h"
#include "learned_search/QueryWords.h"
#include "learned_search/search_model_generated.h"

#include <algorithm>
#include <cmath>

namespace vole::learned_search {

namespace {

struct Completion {
    const char* word;
    float popularity;
};

/// The greater popularity first; one that is no number last, since sorting needs an order of all values.
bool isMorePopular(const Completion& a, const Completion& b)
{
    return a.popularity > b.popularity || (std::isnan(b.popularity) && !std::isnan(a.popularity));
}

} // namespace

std::vector<std::string> completionsOf(std::string_view prefix, const SearchModel& model,
                                       const DictionaryIndex& dictionary)
{
    std::vector<Completion> completions;
    const auto [first, last] = dictionary.rowsThatMayBeginWith(prefix);
    for (std::size_t row = first; row < last; ++row) {
        const auto* entry = model.entryInfoForWords()->Get(static_cast<flatbuffers::uoffset_t>(row));
        if (entry->endWordScore() == 0.0F) {
            continue;
        }
        const char* word = entry->word()->c_str();
        if (std::strncmp(word, prefix.data(), prefix.size()) == 0) {
            completions.push_back({word, entry->wordPrior()});
        }
    }
    std::sort(completions.begin(), completions.end(), isMorePopular);
    std::vector<std::string> texts;
    texts.reserve(completions.size());
    for (const Completion& completion : completions) {
        texts.push_back(ngramToString(completion.word));
    }
    return texts;
}

std::string ngramToString(std::string_view ngram)
{
    std::string text(ngram);
    std::replace(text.begin(), text.end(), QueryWords::kDelimiter, ' ');
    return text;
}

} // namespace vole::learned_search
