#include "QXSDKKovalinKit/Version.h"
#include "kovalin/Events.h"
#include "kovalin/Model.h"
#include "kovalin/Predict.h"
#include "kovalin/Search.h"
#include "kovalin/Sequence.h"
#include "kovalin/Suggest.h"
#include "kovalin/Words.h"
#include "shared/BadInput.h"
#include "shared/CommandLine.h"
#include "shared/StandardStreams.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QLoggingCategory>
#include <QtCore/QString>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <exception>
#include <string>

using namespace kovalin::cli;

namespace {

/// The subcommand that was given last, or the program itself.
const CLI::App& commandReached(const CLI::App& program)
{
    const CLI::App* command = &program;
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().back();
    }
    return *command;
}

/// What is wrong where the parser would only say that a subcommand is missing; else empty.
std::string faultOf(const CLI::App& program)
{
    const CLI::App& command = commandReached(program);
    const bool isUnknown = command.get_require_subcommand_min() > 0 && command.remaining_size() > 0;
    return isUnknown ? "no such subcommand or option: " + argumentAsGiven(command.remaining().front()) : std::string();
}

ExitCode run(int argc, const char* const* argv)
{
    CLI::App program("The sticker picker's library on the command line.", "kovalin");
    program.set_version_flag("--version", std::string("kovalin ") + QXSDKKovalinKitVersionString,
                             "Print the version and exit");
    program.require_subcommand(1);
    addSearchCommand(program);
    addSequenceCommand(program);
    addPredictCommand(program);
    addSuggestCommand(program);
    addWordsCommand(program);
    addModelCommand(program);
    addEventsCommand(program);
    try {
        program.parse(argumentsForParser(argc, argv));
    } catch (const CLI::ParseError& error) {
        return answerParser(program, error, faultOf(program));
    }
    return Ok;
}

} // namespace

int main(int argc, char** argv)
{
    prepareStandardStreams("kovalin");
    // Texts are UTF-8 whatever the user's locale, and Qt would complain about any other.
    qputenv("LC_ALL", "C.UTF-8");
    int argumentCountForQt = 1; // the options are ours alone
    const QCoreApplication application(argumentCountForQt, argv);
    // What the library tells its developers; QT_LOGGING_RULES turns it on again.
    QLoggingCategory::setFilterRules(QStringLiteral("kovalin.*.debug=false"));
    try {
        return run(argc, argv);
    } catch (const OutputClosed&) {
        return Ok;
    } catch (const std::exception& error) {
        writeError(error.what());
        return BadInputGiven;
    }
}
