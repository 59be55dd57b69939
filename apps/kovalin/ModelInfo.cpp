#include "kovalin/ModelInfo.h"

#include "kovalin/JsonLine.h"
#include "kovalin/ModelFacts.h"
#include "kovalin/ModelFile.h"
#include "kovalin/ModelInvariants.h"
#include "kovalin/TextTable.h"
#include "learned_search/ModelVerification.h"
#include "shared/CommandLine.h"
#include "shared/StandardStreams.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kovalin::cli {

namespace {

using nlohmann::ordered_json;
using vole::learned_search::kMostTables;

struct Options {
    std::string file;
    bool json = false;
    std::int32_t top = 10;
};

/// All that is said of a file.
struct Report {
    std::string path;
    std::int64_t size; // in bytes
    ModelFacts facts;
    std::vector<BrokenInvariant> broken;
};

/// The number with no more digits than tell it from its neighbours.
ordered_json jsonNumber(float number)
{
    if (!std::isfinite(number)) {
        return nullptr;
    }
    const std::string text = fmt::format("{}", number);
    double same = 0;
    std::from_chars(text.data(), text.data() + text.size(), same);
    return same;
}

void writeAsJson(const Report& report)
{
    const ModelFacts& facts = report.facts;
    ordered_json byWords = ordered_json::object();
    for (std::size_t words = 1; words <= ModelFacts::mostWordsAlone; ++words) {
        byWords[std::to_string(words)] = facts.keysByWords[words - 1];
    }
    byWords["more"] = facts.keysByWords.back();
    ordered_json popular = ordered_json::array();
    for (const auto& key : facts.popularKeys) {
        popular.push_back({{"key", key.text}, {"word_prior", jsonNumber(key.wordPrior)}});
    }
    ordered_json invariants = ordered_json::array();
    for (const auto& broken : report.broken) {
        invariants.push_back({{"name", broken.name}, {"count", broken.count}, {"example", broken.example}});
    }
    writeJsonLine({{"file", report.path},
                   {"size", report.size},
                   {"tables", facts.tables},
                   {"table_limit", kMostTables},
                   {"depth", facts.depth},
                   {"comics", facts.comics},
                   {"keys", facts.keys},
                   {"keys_by_words", byWords},
                   {"suggested_keys", facts.suggestedKeys},
                   {"rows", facts.rows},
                   {"rows_of_a_key", {{"median", facts.medianRowsOfAKey}, {"most", facts.mostRowsOfAKey}}},
                   {"popular_keys", popular},
                   {"invariants", invariants}});
}

/// Names and values, the values one below the other.
QString alignedLines(const QList<std::pair<QString, QString>>& lines)
{
    qsizetype width = 0;
    for (const auto& [name, value] : lines) {
        width = std::max(width, name.size());
    }
    QString text;
    for (const auto& [name, value] : lines) {
        text += QStringLiteral("  ") + name.leftJustified(width) + QStringLiteral("  ") + value + u'\n';
    }
    return text;
}

QString factsText(const Report& report)
{
    const ModelFacts& facts = report.facts;
    const auto number = [](auto value) {
        return QString::number(value);
    };
    QList<std::pair<QString, QString>> lines{
        {QStringLiteral("Size"), number(report.size) + QStringLiteral(" bytes")},
        {QStringLiteral("Tables"), number(facts.tables) + QStringLiteral(" of at most ") + number(kMostTables) +
                                       QStringLiteral(", depth ") + number(facts.depth)},
        {QStringLiteral("Comics"), number(facts.comics)},
        {QStringLiteral("Keys"), number(facts.keys)}};
    for (std::size_t words = 1; words <= ModelFacts::mostWordsAlone; ++words) {
        lines.append({QStringLiteral("  of ") + number(words) +
                          (words == 1 ? QStringLiteral(" word") : QStringLiteral(" words")),
                      number(facts.keysByWords[words - 1])});
    }
    lines.append({QStringLiteral("  of more"), number(facts.keysByWords.back())});
    lines.append({QStringLiteral("  suggested"), number(facts.suggestedKeys)});
    lines.append({QStringLiteral("Rows"), number(facts.rows)});
    lines.append({QStringLiteral("  of a key"), QStringLiteral("median ") + number(facts.medianRowsOfAKey) +
                                                    QStringLiteral(", at most ") + number(facts.mostRowsOfAKey)});
    if (report.broken.empty()) {
        lines.append({QStringLiteral("Invariants"), QStringLiteral("all hold")});
    }
    return alignedLines(lines);
}

QString popularText(const ModelFacts& facts)
{
    TextTable table({{QStringLiteral("Popular key")}, {QStringLiteral("Prior"), TextTable::Align::Right}});
    for (const auto& key : facts.popularKeys) {
        table.addRow({QString::fromStdString(key.text), QString::fromStdString(fmt::format("{}", key.wordPrior))});
    }
    return table.toString();
}

QString brokenText(const std::vector<BrokenInvariant>& broken)
{
    TextTable table({{QStringLiteral("Doesn't hold")},
                     {QStringLiteral("Count"), TextTable::Align::Right},
                     {QStringLiteral("First")}});
    for (const auto& invariant : broken) {
        table.addRow({QString::fromUtf8(invariant.rule), QString::number(invariant.count),
                      QString::fromStdString(invariant.example)});
    }
    return table.toString();
}

void writeAsText(const Report& report)
{
    QString text =
        TextTable::printable(QString::fromStdString(report.path)) + QStringLiteral("\n\n") + factsText(report);
    if (!report.facts.popularKeys.empty()) {
        text += u'\n' + popularText(report.facts);
    }
    if (!report.broken.empty()) {
        text += u'\n' + brokenText(report.broken);
    }
    text += u'\n';
    writeOutput(text.toUtf8());
    flushOutput();
}

void runInfo(const Options& options)
{
    const std::string path = argumentAsGiven(options.file);
    const ModelFile file(path);
    const Report report{path, file.buffer()->getSize(), factsOf(file.model(), static_cast<std::size_t>(options.top)),
                        brokenInvariants(file.model())};
    options.json ? writeAsJson(report) : writeAsText(report);
}

} // namespace

void addModelInfoCommand(CLI::App& model)
{
    CLI::App* command = model.add_subcommand("info", "Tell what is in a search model");
    const auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "The model file")->type_name("")->required();
    command->add_flag("--json", options->json, "Print a JSON object");
    command->add_option("--top", options->top, "The most popular keys to list")
        ->check(countFault)
        ->capture_default_str();
    command->callback([options] { runInfo(*options); });
}

} // namespace kovalin::cli
