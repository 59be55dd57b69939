#pragma once

#include "learned_search/LearnedSearchClassifier.h"
#include "learned_search/generated-src/LearnedSearchClassifierConversion.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kovalin::test {

/// A native classifier that answers what a test says. Any thread, as the real one.
class ScriptedClassifier final : public vole::learned_search::LearnedSearchClassifier {
public:
    std::vector<std::int32_t> comics;
    std::vector<std::string> suggestions;
    bool hasModel = true;
    std::function<void()> beforePrediction = [] {
    };

    [[nodiscard]] std::vector<std::int32_t> predict(const std::string& query, std::int32_t topN) const override
    {
        beforePrediction();
        lastTopN = topN;
        ++predictions;
        return query == "nothing" ? std::vector<std::int32_t>() : comics;
    }
    [[nodiscard]] std::vector<std::string> getAutocompleteSuggestions(const std::string&) const override
    {
        return suggestions;
    }
    [[nodiscard]] bool modelIsInitialized() const override { return hasModel; }

    mutable std::atomic<std::int32_t> lastTopN = 0;
    mutable std::atomic<int> predictions = 0;
};

/// The classifier on the platform's side of the bridge.
[[nodiscard]] inline std::shared_ptr<QXNativeLearnedSearchClassifier>
bridged(const std::shared_ptr<ScriptedClassifier>& classifier)
{
    return djinni::LearnedSearchClassifierConversion::fromCpp(classifier);
}

[[nodiscard]] inline std::shared_ptr<ScriptedClassifier> scriptedClassifier(std::vector<std::int32_t> comics,
                                                                            std::vector<std::string> suggestions = {})
{
    auto classifier = std::make_shared<ScriptedClassifier>();
    classifier->comics = std::move(comics);
    classifier->suggestions = std::move(suggestions);
    return classifier;
}

} // namespace kovalin::test
