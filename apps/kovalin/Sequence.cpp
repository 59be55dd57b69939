#include "kovalin/Sequence.h"

#include "kovalin/TextTable.h"
#include "search/QXSDKKovalinSearchSequence.h"
#include "shared/BadInput.h"
#include "shared/StandardStreams.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QJsonParseError>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <string>

namespace kovalin::cli {

namespace {

/// Throws BadInput, with the fault alone, when it is no category number.
QXSDKKovalinCategory categoryOf(const QJsonValue& value)
{
    using Limits = std::numeric_limits<int>;
    const double number = value.toDouble();
    if (!value.isDouble() || number != std::floor(number) || number < Limits::min() || number > Limits::max()) {
        throw BadInput("a category is no integer");
    }
    return static_cast<QXSDKKovalinCategory>(static_cast<int>(number));
}

/// Pushes what the line holds; throws BadInput, with the fault alone, when it is no list of pushes.
QXSDKKovalinSearchTermList termsOf(const std::string& line)
{
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(line), &error);
    if (error.error != QJsonParseError::NoError) {
        throw BadInput("no JSON list: " + error.errorString().toStdString());
    }
    if (!document.isArray()) {
        throw BadInput("no JSON list");
    }
    QXSDKKovalinSearchSequence sequence;
    const QJsonArray pushes = document.array();
    for (const QJsonValue push : pushes) {
        const QJsonArray parts = push.toArray();
        if (parts.size() != 2 || !parts[0].isString()) {
            throw BadInput("an element is no [text, category]");
        }
        sequence.push(parts[0].toString(), categoryOf(parts[1]));
    }
    return sequence.popAll();
}

void writeAsJson(const QXSDKKovalinSearchTermList& terms)
{
    QJsonArray list;
    for (const auto& term : terms) {
        list.append(QJsonArray{term->value(), term->category()});
    }
    const QJsonObject object{{QStringLiteral("terms"), list}};
    writeOutput(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QString categoryInWords(QXSDKKovalinCategory category)
{
    switch (category) {
    case QXSDKKovalinCategoryNone:
        return QStringLiteral("no search");
    case QXSDKKovalinCategoryTypedText:
        return QStringLiteral("typed text");
    case QXSDKKovalinCategorySuggestedTag:
        return QStringLiteral("suggested tag");
    case QXSDKKovalinCategoryDefaultTag:
        return QStringLiteral("default tag");
    case QXSDKKovalinCategoryHostTerm:
        return QStringLiteral("host term");
    }
    return QStringLiteral("category ") + QString::number(category);
}

void writeAsText(const QXSDKKovalinSearchTermList& terms)
{
    QStringList texts;
    for (const auto& term : terms) {
        texts.append(u'"' + TextTable::printable(term->value()) + QStringLiteral("\" (") +
                     categoryInWords(term->category()) + u')');
    }
    writeOutput(texts.isEmpty() ? "no terms" : texts.join(QStringLiteral(", ")).toUtf8());
}

void runSequence(bool json)
{
    std::size_t lineNumber = 0;
    while (const auto line = readInputLine()) {
        ++lineNumber;
        QXSDKKovalinSearchTermList terms;
        try {
            terms = termsOf(*line);
        } catch (const BadInput& fault) {
            throw BadInput("standard input, line " + std::to_string(lineNumber) + ": " + fault.what());
        }
        json ? writeAsJson(terms) : writeAsText(terms);
        writeOutput("\n");
        flushOutput();
    }
}

} // namespace

void addSequenceCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("sequence", "Show which searches of a sequence are kept");
    command->footer("Each line of standard input is a sequence of its own: a JSON list of [text, category].");
    const auto json = std::make_shared<bool>(false);
    command->add_flag("--json", *json, "Print one JSON object a line");
    command->callback([json] { runSequence(*json); });
}

} // namespace kovalin::cli
