#include "kovalin/Predict.h"

#include "kovalin/AnswerText.h"
#include "kovalin/ClassifierCommand.h"
#include "kovalin/TextTable.h"
#include "shared/CommandLine.h"

#include <QtCore/QString>

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kovalin::cli {

namespace {

using Classifier = ClassifierCommand::Classifier;

constexpr std::int32_t defaultTop = 1000; // what the search asks for

QString predictionText(const std::string& query, const std::vector<std::int32_t>& comics, std::int32_t limit)
{
    const auto count = static_cast<qsizetype>(comics.size());
    QString text = answerHeading(QString::fromStdString(query), {counted(count, QStringLiteral("comic"))});
    if (count > 0) {
        TextTable table({{QStringLiteral("#"), TextTable::Align::Right}, {QStringLiteral("Comic")}});
        const qsizetype shown = shownOf(count, limit);
        for (qsizetype i = 0; i < shown; ++i) {
            table.addRow({QString::number(i + 1), QString::number(comics[static_cast<std::size_t>(i)])});
        }
        text += u'\n' + table.toString() + moreLine(count - shown);
    }
    return text + u'\n';
}

} // namespace

void addPredictCommand(CLI::App& program)
{
    const auto top = std::make_shared<std::int32_t>(defaultTop);
    ClassifierCommand description;
    description.name = "predict";
    description.description = "Find the comics that a search model has for a text";
    description.queryDescription = "What to find comics for";
    description.listed = "comics";
    description.addAnswer = [top](const Classifier& classifier, const std::string& query, auto& answer) {
        answer["comics"] = classifier.predict(query, *top);
    };
    description.answerText = [top](const Classifier& classifier, const std::string& query, std::int32_t limit) {
        return predictionText(query, classifier.predict(query, *top), limit);
    };
    addClassifierCommand(program, description)
        ->add_option("--top", *top, "The most comics to find")
        ->check(countFault)
        ->capture_default_str();
}

} // namespace kovalin::cli
