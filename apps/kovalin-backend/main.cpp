#include "QXSDKKovalinKit/Version.h"
#include "kovalin-backend/AnswerRule.h"
#include "kovalin-backend/Program.h"
#include "shared/CommandLine.h"
#include "shared/StandardStreams.h"

#include <QtGui/QGuiApplication>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <chrono>
#include <exception>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

using namespace kovalin;

namespace {

constexpr int mostTokenSeconds = 365 * 24 * 3600;

/// Empty when there is none.
std::string answerFault(const std::string& parsed)
{
    const auto read = backend::PathRule::fromText(cli::argumentAsGiven(parsed));
    const auto* fault = std::get_if<QString>(&read);
    return fault ? fault->toStdString() : std::string();
}

std::string portFault(const std::string& parsed)
{
    constexpr int highestPort = std::numeric_limits<quint16>::max();
    bool isNumber = false;
    const int port = QByteArray::fromStdString(parsed).toInt(&isNumber);
    return isNumber && port >= 0 && port <= highestPort
               ? std::string()
               : "must be a whole number from 0 to " + std::to_string(highestPort) + ", not " +
                     cli::argumentAsGiven(parsed);
}

/// What was given, as it was given.
struct Arguments {
    std::string content;
    quint16 port = 0;
    std::vector<std::string> answers;
    int tokenSeconds = 3600;
    bool isUntilEof = false;
};

void addOptions(CLI::App& program, Arguments& arguments)
{
    program
        .add_option(
            "--content", arguments.content,
            "The folder with what is served: models/NAME/VERSION.bin, and configs.json, packs.json, templates.json, "
            "accounts.json, users.json where the usual won't do")
        ->type_name("DIR")
        ->required();
    program.add_option("--port", arguments.port, "The port to listen at; else one that the system chooses")
        ->type_name("N")
        ->check(portFault);
    program.add_option("--token-seconds", arguments.tokenSeconds, "How long an access token is good; else an hour")
        ->type_name("N")
        ->check(CLI::Range(1, mostTokenSeconds));
    program.add_option("--answer", arguments.answers, "How to answer at a path, once an option; see below")
        ->type_name("\"PATH RULE\"")
        ->allow_extra_args(false)
        ->check(answerFault);
    program.add_flag("--until-eof", arguments.isUntilEof, "End when standard input does");
    program.footer(
        "PATH is that of a request before \"?\"; with * at its end, all that begin so.\n"
        "At /api/graphql, #avatar, #packs or #users behind it means one of the queries alone.\n"
        "RULE is ok, a STATUS, STATUS retry-after SECONDS, delay MS, with QUERY, body JSON, garbage, cut, nothing or "
        "refuse.\n"
        "A line \"backend PATH RULE\" on standard input makes a rule while it runs, and is answered with \"ok\".");
}

backend::ProgramOptions optionsFrom(const Arguments& arguments)
{
    backend::ProgramOptions options{.contentFolder = cli::argumentAsGiven(arguments.content),
                                    .port = arguments.port,
                                    .answers = {},
                                    .accessTokenLife = std::chrono::seconds(arguments.tokenSeconds),
                                    .isUntilEof = arguments.isUntilEof};
    for (const std::string& answer : arguments.answers) {
        options.answers.append(std::get<backend::PathRule>(backend::PathRule::fromText(cli::argumentAsGiven(answer))));
    }
    return options;
}

QtMessageHandler usualHandler = nullptr;

void dropWarning(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (type != QtWarningMsg) {
        usualHandler(type, context, text);
    }
}

/// While it lives nothing is heard of what a desktop program would miss, such as a session's runtime directory.
class DroppedWarnings final {
public:
    DroppedWarnings() { usualHandler = qInstallMessageHandler(dropWarning); }
    ~DroppedWarnings() { qInstallMessageHandler(usualHandler); }
    Q_DISABLE_COPY_MOVE(DroppedWarnings)
};

int run(int argc, const char* const* argv)
{
    CLI::App program("The development server, on this machine alone.", "kovalin-backend");
    program.set_version_flag("--version", std::string("kovalin-backend ") + QXSDKKovalinKitVersionString,
                             "Print the version and exit");
    Arguments arguments;
    addOptions(program, arguments);
    try {
        program.parse(cli::argumentsForParser(argc, argv));
    } catch (const CLI::ParseError& error) {
        return cli::answerParser(program, error);
    }
    return backend::runProgram(optionsFrom(arguments));
}

} // namespace

int main(int argc, char** argv)
{
    cli::prepareStandardStreams("kovalin-backend");
    // Texts are UTF-8 whatever the user's locale, and Qt would complain about any other.
    qputenv("LC_ALL", "C.UTF-8");
    int argumentCountForQt = 1;              // the options are ours alone
    qputenv("QT_QPA_PLATFORM", "offscreen"); // it draws, and shows nothing
    std::optional<DroppedWarnings> start(std::in_place);
    const QGuiApplication application(argumentCountForQt, argv);
    start.reset();
    try {
        return run(argc, argv);
    } catch (const cli::OutputClosed&) {
        return cli::Ok;
    } catch (const std::exception& error) {
        cli::writeError(error.what());
        return cli::BadInputGiven;
    }
}
