#pragma once

#include "kovalin_learned_search/Export.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vole::learned_search {

class ModelFileBuffer;

/// Answers free text with the comics that fit it, and with suggestions of what to type, from a model file. Any thread, any
/// number of them at a time. Keeps the file's mapping for as long as it lives; a new model is a new classifier.
class KOVALIN_LEARNED_SEARCH_EXPORT LearnedSearchClassifier {
public:
    virtual ~LearnedSearchClassifier();

    /// Never null. A null buffer, one in an invalid state, and one that holds no model make a classifier that isn't
    /// initialised and answers nothing; each leaves a line in the log.
    [[nodiscard]] static std::shared_ptr<LearnedSearchClassifier>
    learnedSearchClassifierWithBuffer(const std::shared_ptr<ModelFileBuffer>& buffer);

    /// The ids of the comics that fit the query, best first, at most `topN`. Comics that fit equally well come in an order
    /// that depends on all others, and that is the same for the same question. Empty for a query without a letter or digit
    /// of ASCII. A negative `topN` is a std::length_error. A model whose dictionary points behind its own rows stops the
    /// program.
    [[nodiscard]] virtual std::vector<std::int32_t> predict(const std::string& query, std::int32_t topN) const = 0;

    /// The model's texts that begin with the query's words, the most popular first, words separated by blanks. All of them;
    /// equally popular ones in no particular order.
    [[nodiscard]] virtual std::vector<std::string> getAutocompleteSuggestions(const std::string& query) const = 0;

    /// Whether there is a usable model. Never changes.
    [[nodiscard]] virtual bool modelIsInitialized() const = 0;
};

} // namespace vole::learned_search
