// A host application in a process of its own: one start of the library, one query, and what came of it as one line of JSON.
#include "end_to_end/FileSizeLimit.h"
#include "end_to_end/SearchStart.h"
#include "platform/foundation/CachesDirectory.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cstdio>
#include <exception>
#include <optional>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QCommandLineOption fileSizeLimit(QStringLiteral("file-size-limit"), QStringLiteral("Of any file."),
                                           QStringLiteral("bytes"));
    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("backend"), QStringLiteral("The backend's base URL."));
    parser.addPositionalArgument(QStringLiteral("caches"), QStringLiteral("The caches directory."));
    parser.addOption(fileSizeLimit);
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 2) {
        parser.showHelp(2);
    }
    std::optional<kovalin::test::FileSizeLimit> limit;
    if (parser.isSet(fileSizeLimit)) {
        limit.emplace(parser.value(fileSizeLimit).toULongLong());
    }
    kovalin::platform::setCachesDirectory(arguments.at(1));
    try {
        const auto start = kovalin::test::startAndSearch(arguments.at(0));
        const QJsonObject line{{QStringLiteral("ready"), start.isLearnedEngineReady},
                               {QStringLiteral("stickers"), QJsonArray::fromStringList(start.comicIds)},
                               {QStringLiteral("tags"), QJsonArray::fromStringList(start.tags)}};
        std::puts(QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "%s\n", exception.what());
        return 1;
    }
    return 0;
}
