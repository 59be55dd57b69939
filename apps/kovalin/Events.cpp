#include "kovalin/Events.h"

#include "events/EventBatch.h"
#include "kovalin/BatchFile.h"
#include "kovalin/TextTable.h"
#include "shared/CommandLine.h"
#include "shared/StandardStreams.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <memory>
#include <string>

namespace kovalin::cli {

namespace {

struct Options {
    std::string file;
    bool json = false;
};

void writeAsJson(const QJsonObject& object)
{
    writeOutput(QJsonDocument(object).toJson(QJsonDocument::Compact));
    writeOutput("\n");
}

void writeAsText(const QString& line)
{
    writeOutput(QString(TextTable::printable(line) + u'\n').toUtf8());
}

QString countOf(qsizetype count, const QString& thing)
{
    return QString::number(count) + u' ' + thing + (count == 1 ? QString() : QStringLiteral("s"));
}

QString headText(const analytics::EventBatch& batch)
{
    QString text = QStringLiteral("batch ") + batch.id + QStringLiteral(": ") +
                   countOf(batch.events.size(), QStringLiteral("event")) + QStringLiteral(", ") +
                   QString::number(batch.dropped) + QStringLiteral(" dropped");
    if (!batch.unknown.isEmpty()) {
        const QJsonArray unknown = batch.headToJson().value(u"unknown").toArray();
        text += QStringLiteral(" unknown ") + QString::fromUtf8(QJsonDocument(unknown).toJson(QJsonDocument::Compact));
    }
    return text;
}

/// In UTC, or the number as it is where it lies outside of the years that a date is written with.
QString timeText(qint64 millis)
{
    const QString text = QDateTime::fromMSecsSinceEpoch(millis, Qt::UTC).toString(Qt::ISODateWithMs);
    return text.isEmpty() ? QString::number(millis) : text;
}

QString eventText(const analytics::Event& event)
{
    return timeText(event.timeMillis) + u' ' + (event.id.isEmpty() ? QStringLiteral("(no id)") : event.id) + u' ' +
           event.toText();
}

void decode(const Options& options)
{
    const analytics::EventBatch batch = readBatchFile(argumentAsGiven(options.file));
    options.json ? writeAsJson(batch.headToJson()) : writeAsText(headText(batch));
    for (const analytics::Event& event : batch.events) {
        options.json ? writeAsJson(event.toJson()) : writeAsText(eventText(event));
    }
    flushOutput();
}

} // namespace

void addEventsCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("events", "Show a batch of analytics events as it is sent");
    command->footer("First a line on the batch, then one on each of its events.");
    const auto options = std::make_shared<Options>();
    command->add_option("--decode", options->file, "The stored batch; - is standard input")
        ->type_name("FILE")
        ->required();
    command->add_flag("--json", options->json, "Print one JSON object a line");
    command->callback([options] { decode(*options); });
}

} // namespace kovalin::cli
