#pragma once

#include "support/ModelInspection.h"

#include <optional>
#include <string>
#include <vector>

namespace vole::learned_search {

class LearnedSearchClassifier;

namespace test {

/// What a model is asked.
struct Question {
    std::string query;
    std::int32_t topN = 1000;
};

/// Opens the buffer, asks all that can be asked without the program being stopped, and tells the first thing that isn't as
/// the inspection and the plain classifier say: whether there is a model, what is logged of it, or an answer. nullopt where
/// all is right. The buffer is one of the file that was inspected. Installs a logger of its own meanwhile.
[[nodiscard]] std::optional<std::string> firstFault(const std::shared_ptr<ModelFileBuffer>& buffer,
                                                    const ModelInspection& inspection,
                                                    const std::vector<Question>& questions);

} // namespace test

} // namespace vole::learned_search
