#include "kovalin/Suggest.h"

#include "kovalin/AnswerText.h"
#include "kovalin/ClassifierCommand.h"
#include "kovalin/TextTable.h"

#include <QtCore/QString>

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kovalin::cli {

namespace {

using Classifier = ClassifierCommand::Classifier;

QString suggestionsText(const std::string& query, const std::vector<std::string>& suggestions, std::int32_t limit)
{
    const auto count = static_cast<qsizetype>(suggestions.size());
    QString text = answerHeading(QString::fromStdString(query), {counted(count, QStringLiteral("suggestion"))});
    if (count > 0) {
        TextTable table({{QStringLiteral("Suggestion")}});
        const qsizetype shown = shownOf(count, limit);
        for (qsizetype i = 0; i < shown; ++i) {
            table.addRow({QString::fromStdString(suggestions[static_cast<std::size_t>(i)])});
        }
        text += u'\n' + table.toString() + moreLine(count - shown);
    }
    return text + u'\n';
}

} // namespace

void addSuggestCommand(CLI::App& program)
{
    ClassifierCommand description;
    description.name = "suggest";
    description.description = "Complete a text with what a search model knows";
    description.queryDescription = "What to complete";
    description.listed = "suggestions";
    description.addAnswer = [](const Classifier& classifier, const std::string& query, auto& answer) {
        answer["suggestions"] = classifier.getAutocompleteSuggestions(query);
    };
    description.answerText = [](const Classifier& classifier, const std::string& query, std::int32_t limit) {
        return suggestionsText(query, classifier.getAutocompleteSuggestions(query), limit);
    };
    addClassifierCommand(program, description);
}

} // namespace kovalin::cli
