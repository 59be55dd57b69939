#include "learned_search/LearnedSearchClassifierImpl.h"

#include "learned_search/Autocomplete.h"
#include "learned_search/ModelFileBuffer.h"
#include "learned_search/ModelVerification.h"
#include "learned_search/Ngrams.h"
#include "learned_search/Prediction.h"
#include "learned_search/search_model_generated.h"
#include "utils/Log.h"

namespace vole::learned_search {

namespace {

constexpr auto kTag = "[learned_search][LearnedSearchClassifierImpl]";

constexpr std::int32_t longestNgram = 5;

} // namespace

LearnedSearchClassifier::~LearnedSearchClassifier() = default;

std::shared_ptr<LearnedSearchClassifier>
LearnedSearchClassifier::learnedSearchClassifierWithBuffer(const std::shared_ptr<ModelFileBuffer>& buffer)
{
    return std::make_shared<LearnedSearchClassifierImpl>(buffer);
}

LearnedSearchClassifierImpl::Index::Index(const SearchModel& model)
    : dictionary(model)
    , comics(ComicIndex::of(model))
{
}

LearnedSearchClassifierImpl::LearnedSearchClassifierImpl(const std::shared_ptr<ModelFileBuffer>& buffer)
{
    if (!buffer) {
        utils::logging::logError(kTag, "Model file buffer is null");
        return;
    }
    if (!buffer->stateIsValid()) {
        utils::logging::logError(kTag, "Model file buffer is in invalid state");
        return;
    }
    _model = verifiedModel(*buffer);
    if (!_model) {
        utils::logging::logError(kTag,
                                 "Model failed verification, please ensure that it adheres to the flatbuffer schema");
        return;
    }
    _buffer = buffer;
    if (!hasAllVectors(*_model)) {
        utils::logging::logError(kTag, "Model lacks comics, keys or rows, it predicts nothing");
    }
}

LearnedSearchClassifierImpl::~LearnedSearchClassifierImpl() = default;

std::vector<std::int32_t> LearnedSearchClassifierImpl::predict(const std::string& query, std::int32_t topN) const
{
    const auto words = QueryWords::ofQuery(query);
    if (words.empty() || !modelIsInitialized() || !hasAllVectors(*_model)) {
        return {};
    }
    return predictComics(*_model, index().comics, slicesOf(words), topN);
}

std::vector<std::string> LearnedSearchClassifierImpl::getAutocompleteSuggestions(const std::string& query) const
{
    const auto words = QueryWords::ofQuery(query);
    if (words.empty() || !modelIsInitialized()) {
        return {};
    }
    return completionsOf(words.joined(), *_model, index().dictionary);
}

std::vector<std::string> LearnedSearchClassifierImpl::queryToPreprocessedWords(const std::string& query)
{
    const auto words = QueryWords::ofQuery(query);
    std::vector<std::string> list;
    list.reserve(words.size());
    for (std::size_t word = 0; word < words.size(); ++word) {
        list.emplace_back(words.ngram(word, 1));
    }
    return list;
}

std::vector<std::string> LearnedSearchClassifierImpl::generateWordNgrams(const std::vector<std::string>& words,
                                                                         std::int32_t maxN) const
{
    if (maxN <= 1) {
        return words;
    }
    if (!modelIsInitialized()) {
        return {};
    }
    const auto joined = QueryWords::ofWords(words);
    std::vector<std::string> list;
    for (const auto& ngram :
         findNgrams(joined, maxN, [this](std::string_view key) { return index().dictionary.find(key); })) {
        list.emplace_back(ngram.text);
    }
    return list;
}

std::string LearnedSearchClassifierImpl::wordsToNgramString(std::vector<std::string>::const_iterator first,
                                                            std::vector<std::string>::const_iterator last)
{
    if (last <= first) {
        return {};
    }
    std::string ngram = *first;
    while (++first != last) {
        ngram.append(1, kNgramDelim).append(*first);
    }
    return ngram;
}

std::string LearnedSearchClassifierImpl::ngramToString(const std::string& ngram)
{
    return vole::learned_search::ngramToString(ngram);
}

const entryInfoForWord* LearnedSearchClassifierImpl::getEntryForWord(const std::string& key) const
{
    return modelIsInitialized() ? index().dictionary.find(key) : nullptr;
}

bool LearnedSearchClassifierImpl::wordExistsInDict(const std::string& key) const
{
    return getEntryForWord(key) != nullptr;
}

std::pair<std::int32_t, std::int32_t>
LearnedSearchClassifierImpl::getEntriesStartIndexAndSize(const std::string& key) const
{
    const auto* entry = getEntryForWord(key);
    return entry ? std::pair(entry->entryStartIdx(), entry->numEntries()) : std::pair(-1, -1);
}

const LearnedSearchClassifierImpl::Index& LearnedSearchClassifierImpl::index() const
{
    std::call_once(_indexIsMade, [this] { _index.emplace(*_model); });
    return *_index;
}

/// The rows of the query's n-grams. A key whose rows begin at a negative index counts as not found.
std::vector<Slice> LearnedSearchClassifierImpl::slicesOf(const QueryWords& words) const
{
    const auto& dictionary = index().dictionary;
    std::vector<Slice> slices;
    for (const auto& ngram :
         findNgrams(words, longestNgram, [&dictionary](std::string_view key) { return dictionary.find(key); })) {
        if (ngram.entry->entryStartIdx() >= 0) {
            slices.push_back({ngram.entry->entryStartIdx(), ngram.entry->numEntries(), ngramWeight(ngram.text)});
        }
    }
    return slices;
}

} // namespace vole::learned_search
