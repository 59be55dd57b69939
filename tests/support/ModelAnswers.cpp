#include "support/ModelAnswers.h"

#include "learned_search/LearnedSearchClassifier.h"
#include "support/PlainClassifier.h"
#include "support/RecordingLogger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace vole::learned_search::test {

namespace {

constexpr auto tag = "[learned_search][LearnedSearchClassifierImpl]";
constexpr auto refusal = "Model failed verification, please ensure that it adheres to the flatbuffer schema";
constexpr auto incompleteness = "Model lacks comics, keys or rows, it predicts nothing";

/// nullopt for a length error.
template <typename Classifier>
std::optional<std::vector<std::int32_t>> predictionOf(const Classifier& classifier, const Question& question)
{
    try {
        return classifier.predict(question.query, question.topN);
    } catch (const std::length_error&) {
        return std::nullopt;
    }
}

/// Texts with the place of their popularity among all; those of the same place may stand in any order.
using Placed = std::vector<std::pair<std::size_t, std::string>>;

std::pair<Placed, Placed> wantedAndFound(const LearnedSearchClassifier& classifier, const PlainClassifier& plain,
                                         const std::string& query)
{
    auto completions = plain.completions(query);
    std::stable_sort(completions.begin(), completions.end(), [](const auto& a, const auto& b) {
        return a.second > b.second || (std::isnan(b.second) && !std::isnan(a.second));
    });
    Placed wanted;
    for (std::size_t at = 0; at < completions.size(); ++at) {
        auto& [key, popularity] = completions[at];
        const bool isNext = at > 0 && (completions[at - 1].second > popularity ||
                                       std::isnan(completions[at - 1].second) != std::isnan(popularity));
        std::replace(key.begin(), key.end(), '|', ' ');
        wanted.emplace_back(at == 0 ? 0 : wanted.back().first + isNext, key);
    }
    Placed found;
    for (const std::string& suggestion : classifier.getAutocompleteSuggestions(query)) {
        found.emplace_back(found.size() < wanted.size() ? wanted[found.size()].first : wanted.size(), suggestion);
    }
    std::sort(wanted.begin(), wanted.end());
    std::sort(found.begin(), found.end());
    return {std::move(wanted), std::move(found)};
}

std::string describe(const Question& question, const char* fault)
{
    return fault + (": " + testing::PrintToString(question.query)) + ", topN " + std::to_string(question.topN);
}

/// Of a classifier without what it takes to predict.
std::optional<std::string> firstPrediction(const LearnedSearchClassifier& classifier,
                                           const std::vector<Question>& questions)
{
    for (const Question& question : questions) {
        if (predictionOf(classifier, question) != std::vector<std::int32_t>()) {
            return describe(question, "comics without a model for it");
        }
    }
    return std::nullopt;
}

std::optional<std::string> firstSuggestion(const LearnedSearchClassifier& classifier,
                                           const std::vector<Question>& questions)
{
    for (const Question& question : questions) {
        if (!classifier.getAutocompleteSuggestions(question.query).empty()) {
            return describe(question, "suggestions without a model for it");
        }
    }
    return std::nullopt;
}

std::optional<std::string> firstWrongPrediction(const LearnedSearchClassifier& classifier, const PlainClassifier& plain,
                                                const std::vector<Question>& questions)
{
    for (const Question& question : questions) {
        if (predictionOf(classifier, question) != predictionOf(plain, question)) {
            return describe(question, "other comics than the plain classifier's");
        }
    }
    return std::nullopt;
}

std::optional<std::string> firstWrongSuggestion(const LearnedSearchClassifier& classifier, const PlainClassifier& plain,
                                                const std::vector<Question>& questions)
{
    for (const Question& question : questions) {
        const auto [wanted, found] = wantedAndFound(classifier, plain, question.query);
        if (wanted != found) {
            return describe(question, "other suggestions than the plain classifier's");
        }
    }
    return std::nullopt;
}

std::vector<vole::test::RecordingLogger::Line> wantedLines(const ModelInspection& inspection)
{
    if (inspection.verifies && inspection.hasAllVectors()) {
        return {};
    }
    return {{utils::logging::kErrorLevel, tag, inspection.verifies ? incompleteness : refusal}};
}

} // namespace

std::optional<std::string> firstFault(const std::shared_ptr<ModelFileBuffer>& buffer, const ModelInspection& inspection,
                                      const std::vector<Question>& questions)
{
    const vole::test::RecordingLogger log;
    const auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer);
    if (classifier->modelIsInitialized() != inspection.verifies) {
        return inspection.verifies ? "a good model is refused" : "a bad model is taken";
    }
    std::optional<std::string> fault;
    if (!inspection.verifies || !inspection.hasKeys) {
        fault = firstSuggestion(*classifier, questions);
    } else {
        fault = firstWrongSuggestion(*classifier, PlainClassifier(buffer), questions);
    }
    if (fault) {
        return fault;
    }
    if (inspection.canBePredictedWith()) {
        fault = firstWrongPrediction(*classifier, PlainClassifier(buffer), questions);
    } else if (!inspection.verifies || !inspection.hasAllVectors()) {
        fault = firstPrediction(*classifier, questions);
    }
    if (!fault && log.lines() != wantedLines(inspection)) {
        return "other lines in the log than wanted: " + testing::PrintToString(log.messages());
    }
    return fault;
}

} // namespace vole::learned_search::test
