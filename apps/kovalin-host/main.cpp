#include "QXSDKKovalinKit/Version.h"
#include "kovalin-backend/Backend.h"
#include "kovalin-host/HostKits.h"
#include "kovalin-host/HostOptions.h"
#include "kovalin-host/HostRecord.h"
#include "kovalin-host/HostWindow.h"
#include "kovalin-host/ScriptRunner.h"
#include "picker/config/QXSDKKovalinLanguage.h"
#include "platform/ui/Animation.h"
#include "shared/BadInput.h"
#include "shared/CommandLine.h"
#include "shared/StandardStreams.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QGuiApplication>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <exception>
#include <memory>
#include <optional>
#include <string>

using namespace kovalin;
using host::HostOptions;

namespace {

constexpr int mostPickers = 2;
constexpr int mostIcons = 4;
constexpr int mostRatio = 4;
constexpr int mostPoints = 4000;

/// What was given, as it was given.
struct Arguments {
    std::string script;
    std::string out;
    std::string backend;
    std::string content = "examples/content";
    std::string caches;
    std::string theme = "light";
    std::string language;
    bool isOffscreen = false;
    bool isMirrored = false;
    bool isMotionReduced = false;
    bool isPrinting = false;
    int pickers = 1;
    int icons = 1;
    int ratio = 0; // the screen's
    int width = HostOptions().size.width();
    int height = HostOptions().size.height();
};

void addScriptOptions(CLI::App& program, Arguments& arguments)
{
    auto* const script =
        program.add_option("--script", arguments.script, "Do what stands in this file, line by line, and end");
    script->type_name("FILE");
    auto* const out = program.add_option("--out", arguments.out, "Where the script leaves its pictures and facts");
    out->type_name("DIR")->needs(script);
    script->needs(out);
    program.add_flag("--print", arguments.isPrinting, "Print each step of the script")->needs(script);
    program.add_flag("--offscreen", arguments.isOffscreen, "Need no display")->needs(script);
}

void addServerOptions(CLI::App& program, Arguments& arguments)
{
    program.add_option("--backend", arguments.backend, "The address of a kovalin-backend; else one in this process")
        ->type_name("URL");
    program.add_option("--content", arguments.content, "What that one serves, and its users; else examples/content")
        ->type_name("DIR");
    program
        .add_option("--caches", arguments.caches,
                    "Where all is kept for the next start, the account's link in the clear; else nothing is")
        ->type_name("DIR");
}

void addLookOptions(CLI::App& program, Arguments& arguments)
{
    program.add_option("--theme", arguments.theme, "light or dark")
        ->type_name("NAME")
        ->check(CLI::IsMember({"light", "dark"}));
    program.add_flag("--rtl", arguments.isMirrored, "From right to left");
    program.add_option("--language", arguments.language, "Of the picker's texts, as de or zh-Hant; else the system's")
        ->type_name("TAG");
    program.add_flag("--reduced-motion", arguments.isMotionReduced, "Without animations");
    program.add_option("--pickers", arguments.pickers, "How many pickers, 1 or 2")
        ->type_name("N")
        ->check(CLI::Range(1, mostPickers));
    program.add_option("--icons", arguments.icons, "How many icons beside the text field, 0 to 4")
        ->type_name("N")
        ->check(CLI::Range(0, mostIcons));
    program.add_option("--width", arguments.width, "Of the window, in points")
        ->type_name("N")
        ->check(CLI::Range(1, mostPoints));
    program.add_option("--height", arguments.height, "Of the window, in points")
        ->type_name("N")
        ->check(CLI::Range(1, mostPoints));
    program.add_option("--ratio", arguments.ratio, "Pixels to a point; else the screen's")
        ->type_name("N")
        ->check(CLI::Range(1, mostRatio));
}

QString pathOf(const std::string& given)
{
    return QFile::decodeName(cli::argumentAsGiven(given).c_str());
}

QString madeFolder(const std::string& given)
{
    const QString path = pathOf(given);
    if (!QDir().mkpath(path)) {
        throw cli::BadInput(given + ": no folder can be made there");
    }
    return QDir(path).absolutePath();
}

HostOptions optionsFrom(const Arguments& arguments)
{
    HostOptions options{.scriptFile = pathOf(arguments.script),
                        .contentFolder = pathOf(arguments.content),
                        .isDark = arguments.theme == "dark",
                        .isMirrored = arguments.isMirrored,
                        .pickers = arguments.pickers,
                        .icons = arguments.icons,
                        .size = {arguments.width, arguments.height}};
    if (!arguments.backend.empty()) {
        const QUrl url(QString::fromStdString(arguments.backend));
        if (!url.isValid() || url.host().isEmpty()) {
            throw cli::BadInput(arguments.backend + ": no address of a server");
        }
        options.backend = url;
    }
    if (options.isScripted()) {
        options.outFolder = madeFolder(arguments.out);
    }
    if (!arguments.caches.empty()) {
        options.cachesFolder = madeFolder(arguments.caches);
        options.keepsLogin = true;
    }
    return options;
}

/// Before the application object, which reads it.
void setUpEnvironment(const Arguments& arguments)
{
    if (arguments.isOffscreen) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    } else if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY") &&
               !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        throw cli::BadInput("there is no display; a script needs none with --offscreen");
    }
    if (!arguments.script.empty()) {
        // The same texts for everybody.
        qputenv("LC_ALL", "C.UTF-8");
    }
    if (arguments.ratio > 0) {
        qputenv("QT_SCALE_FACTOR", QByteArray::number(arguments.ratio));
    }
}

int runHost(const HostOptions& options, const std::shared_ptr<host::HostRecord>& record, bool isPrinting)
{
    const host::HostKits kits(options, record);
    if (options.isScripted()) {
        host::ScriptRunner(options, kits, record).run(isPrinting);
        return cli::Ok;
    }
    kits.refreshConfigs();
    const host::HostWindow window(options, record);
    return QGuiApplication::exec();
}

int run(int argc, char** argv)
{
    CLI::App program("A chat window with the sticker picker in it.", "kovalin-host");
    program.set_version_flag("--version", std::string("kovalin-host ") + QXSDKKovalinKitVersionString,
                             "Print the version and exit");
    Arguments arguments;
    addScriptOptions(program, arguments);
    addServerOptions(program, arguments);
    addLookOptions(program, arguments);
    program.footer("What a script can say stands in docs/host-script.md.");
    try {
        program.parse(cli::argumentsForParser(argc, argv));
    } catch (const CLI::ParseError& error) {
        return cli::answerParser(program, error);
    }
    HostOptions options = optionsFrom(arguments);
    setUpEnvironment(arguments);
    // Goes after the application object, at whose end the library still writes.
    std::optional<QTemporaryDir> caches;
    if (options.cachesFolder.isEmpty()) {
        options.cachesFolder = caches.emplace().path();
    }
    const auto record = std::make_shared<host::HostRecord>();
    if (options.isScripted()) {
        record->takeLogLines(options.outFolder + QStringLiteral("/log.txt"));
    }
    int argumentCountForQt = 1; // the options are ours alone
    const QGuiApplication application(argumentCountForQt, argv);
    if (QGuiApplication::platformName() == u"offscreen") {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
    if (!arguments.language.empty()) {
        QXSDKKovalinSetPreferredLanguages({QString::fromStdString(arguments.language)});
    }
    platform::setReducedMotion(arguments.isMotionReduced);
    return runHost(options, record, arguments.isPrinting);
}

} // namespace

int main(int argc, char** argv)
{
    cli::prepareStandardStreams("kovalin-host");
    try {
        return run(argc, argv);
    } catch (const cli::OutputClosed&) {
        return cli::Ok;
    } catch (const std::exception& error) {
        cli::writeError(error.what());
        return cli::BadInputGiven;
    }
}
