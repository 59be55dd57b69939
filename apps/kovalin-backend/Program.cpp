#include "kovalin-backend/Program.h"

#include "kovalin-backend/ControlLine.h"
#include "kovalin-backend/InputLines.h"
#include "kovalin-backend/TerminationSignals.h"
#include "platform/dispatch/MainQueue.h"
#include "shared/BadInput.h"
#include "shared/StandardStreams.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>

#include <functional>
#include <variant>

namespace kovalin::backend {

namespace {

constexpr int exitBadOutput = 1;

void writeLine(const QString& line)
{
    cli::writeOutput(QByteArray::fromStdString(cli::onOneLine(line.toStdString()) + '\n'));
    cli::flushOutput();
}

/// From the event loop. Without standard output the program has no use, and ends.
void writeLineOrEnd(const QString& line)
{
    try {
        writeLine(line);
    } catch (const cli::OutputClosed&) {
        QCoreApplication::exit(0);
    } catch (const cli::BadInput& fault) {
        cli::writeError(fault.what());
        QCoreApplication::exit(exitBadOutput);
    }
}

QString lineOf(const Request& request)
{
    return QString::fromLatin1(request.method) + u' ' + QString::fromLatin1(request.target());
}

QString lineOf(const MetricsEntry& entry, bool isNew)
{
    const QString what = entry.kind == MetricsEntry::Kind::Count
                             ? QStringLiteral("count %1 %2").arg(entry.name, QString::number(entry.value))
                             : QStringLiteral("latency %1 %2 ms").arg(entry.name, QString::number(entry.milliseconds));
    return QStringLiteral("metrics ") + what + (isNew ? QString() : QStringLiteral(" (again)"));
}

QString lineOf(const analytics::Event& event, bool isNew)
{
    return QStringLiteral("event ") + event.toText() + (isNew ? QString() : QStringLiteral(" (again)"));
}

/// The standard streams belong to the main thread.
BackendEvents eventsAsLines()
{
    const auto write = [](const QString& line) {
        platform::dispatchMain([line] { writeLineOrEnd(line); });
    };
    return {.requestCame = [write](const Request& request) { write(lineOf(request)); },
            .metricsCame = [write](const MetricsEntry& entry, bool isNew) { write(lineOf(entry, isNew)); },
            .analyticsEventCame = [write](const analytics::Event& event, bool isNew) { write(lineOf(event, isNew)); },
            .faultFound =
                [](const QString& fault) {
                    platform::dispatchMain([fault] { cli::writeError(fault.toStdString()); });
                }};
}

void obey(Backend& backend, const QByteArray& line)
{
    if (line.trimmed().isEmpty()) {
        return;
    }
    const auto read = readControlLine(line);
    if (const auto* fault = std::get_if<QString>(&read)) {
        cli::writeError("standard input: " + fault->toStdString());
        return;
    }
    backend.setAnswer(std::get<PathRule>(read));
    writeLineOrEnd(QStringLiteral("ok"));
}

} // namespace

int runProgram(const ProgramOptions& options)
{
    const TerminationSignals signals([] { QCoreApplication::exit(0); });
    Backend backend({.contentFolder = QFile::decodeName(options.contentFolder.c_str()),
                     .port = options.port,
                     .answers = options.answers,
                     .events = eventsAsLines(),
                     .accessTokenLife = options.accessTokenLife});
    writeLine(QStringLiteral("listening on ") + backend.baseUrl().toString());
    const InputLines input({.lineCame = [&backend](const QByteArray& line) { obey(backend, line); },
                            .ended =
                                [isUntilEof = options.isUntilEof] {
                                    if (isUntilEof) {
                                        QCoreApplication::exit(0);
                                    }
                                }});
    return QCoreApplication::exec();
}

} // namespace kovalin::backend
