#pragma once

#include "learned_search/ModelFileBuffer.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vole::learned_search {

struct SearchModel;

namespace test {

/// The classifier by the book: every step as it is defined, with nothing that makes it fast, and sharing no code with the
/// library but the file's accessors. What the library answers is held against this, and its speed too. The buffer holds a
/// model that passes verification and has all its vectors.
class PlainClassifier final {
public:
    explicit PlainClassifier(std::shared_ptr<ModelFileBuffer> buffer);

    [[nodiscard]] std::vector<std::int32_t> predict(const std::string& query, std::int32_t topN) const;
    [[nodiscard]] std::vector<std::string> getAutocompleteSuggestions(const std::string& query) const;

    [[nodiscard]] static std::vector<std::string> queryToPreprocessedWords(const std::string& query);
    [[nodiscard]] std::vector<std::string> generateWordNgrams(const std::vector<std::string>& words, int maxN) const;

    /// The completions with their popularity, in the order of the file.
    [[nodiscard]] std::vector<std::pair<std::string, float>> completions(const std::string& query) const;

private:
    std::shared_ptr<ModelFileBuffer> _buffer;
    const SearchModel* _model;
};

} // namespace test

} // namespace vole::learned_search
