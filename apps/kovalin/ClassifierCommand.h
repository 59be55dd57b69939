#pragma once

#include "learned_search/LearnedSearchClassifierImpl.h"

#include <QtCore/QString>

#include <CLI/App.hpp>
#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <functional>
#include <string>

namespace kovalin::cli {

/// A subcommand that asks the classifier of a model file queries and does nothing else.
struct ClassifierCommand {
    using Classifier = vole::learned_search::LearnedSearchClassifierImpl;

    std::string name;
    std::string description;
    std::string queryDescription;
    /// What the answer for people lists, in the plural, so that it can be cut short; empty for an answer without such a list.
    std::string listed;
    /// The answer as the members of one object behind "query".
    std::function<void(const Classifier& classifier, const std::string& query, nlohmann::ordered_json& answer)>
        addAnswer;
    /// The answer for people, with its line ends. A limit of 0 is none.
    std::function<QString(const Classifier& classifier, const std::string& query, std::int32_t limit)> answerText;
};

/// Adds the subcommand with --model, --json, QUERY and, where there is something to cut short, --limit. Each query is answered
/// at once. Returned for options of its own.
CLI::App* addClassifierCommand(CLI::App& program, const ClassifierCommand& description);

} // namespace kovalin::cli
