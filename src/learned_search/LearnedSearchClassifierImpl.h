#pragma once

#include "learned_search/ComicIndex.h"
#include "learned_search/DictionaryIndex.h"
#include "learned_search/LearnedSearchClassifier.h"
#include "learned_search/QueryWords.h"
#include "learned_search/Scoring.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vole::learned_search {

struct SearchModel;
struct entryInfoForWord;

class LearnedSearchClassifierImpl final : public LearnedSearchClassifier {
public:
    static constexpr float kPredEpsilon = vole::learned_search::kPredEpsilon;
    /// Stands between the words of a key.
    static constexpr char kNgramDelim = QueryWords::kDelimiter;

    explicit LearnedSearchClassifierImpl(const std::shared_ptr<ModelFileBuffer>& buffer);
    ~LearnedSearchClassifierImpl() override;
    LearnedSearchClassifierImpl(const LearnedSearchClassifierImpl&) = delete;
    LearnedSearchClassifierImpl& operator=(const LearnedSearchClassifierImpl&) = delete;

    [[nodiscard]] std::vector<std::int32_t> predict(const std::string& query, std::int32_t topN) const override;
    [[nodiscard]] std::vector<std::string> getAutocompleteSuggestions(const std::string& query) const override;
    [[nodiscard]] bool modelIsInitialized() const override { return _model != nullptr; }

    /// The words of a query in the form that keys have, in the query's order.
    [[nodiscard]] static std::vector<std::string> queryToPreprocessedWords(const std::string& query);

    /// The n-grams of the dictionary that cover the words, see `findNgrams`. With a `maxN` of 1 or less the words themselves,
    /// whether the dictionary knows them or not.
    [[nodiscard]] std::vector<std::string> generateWordNgrams(const std::vector<std::string>& words,
                                                              std::int32_t maxN) const;

    /// The words from `first` up to but without `last`, joined by the delimiter; empty for an empty range.
    [[nodiscard]] static std::string wordsToNgramString(std::vector<std::string>::const_iterator first,
                                                        std::vector<std::string>::const_iterator last);

    /// A key as people read it.
    [[nodiscard]] static std::string ngramToString(const std::string& ngram);

    /// The entry of a key, inside the mapping; null where there is none, or no model.
    [[nodiscard]] const entryInfoForWord* getEntryForWord(const std::string& key) const;
    [[nodiscard]] bool wordExistsInDict(const std::string& key) const;

    /// Where the rows of a key begin and how many they are, as the file tells; (-1, -1) where there is no such key.
    [[nodiscard]] std::pair<std::int32_t, std::int32_t> getEntriesStartIndexAndSize(const std::string& key) const;

private:
    /// What makes queries fast: at most 2 MiB beside the mapping.
    struct Index {
        explicit Index(const SearchModel& model);

        DictionaryIndex dictionary;
        std::optional<ComicIndex> comics;
    };

    /// Made at the first call. There must be a model.
    [[nodiscard]] const Index& index() const;
    [[nodiscard]] std::vector<Slice> slicesOf(const QueryWords& words) const;

    const SearchModel* _model = nullptr;
    std::shared_ptr<ModelFileBuffer> _buffer; // null unless there is a model
    mutable std::once_flag _indexIsMade;
    mutable std::optional<Index> _index;
};

} // namespace vole::learned_search
