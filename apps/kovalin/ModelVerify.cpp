#include "kovalin/ModelVerify.h"

#include "kovalin/JsonLine.h"
#include "kovalin/ModelFile.h"
#include "kovalin/TextTable.h"
#include "shared/CommandLine.h"
#include "shared/StandardStreams.h"

#include <QtCore/QString>

#include <memory>
#include <string>

namespace kovalin::cli {

namespace {

struct Options {
    std::string file;
    bool json = false;
};

void runVerify(const Options& options)
{
    const std::string path = argumentAsGiven(options.file);
    const ModelFile file(path);
    if (options.json) {
        writeJsonLine({{"file", path}, {"valid", true}});
        return;
    }
    const QString text =
        TextTable::printable(QString::fromStdString(path)) + QStringLiteral(": a valid search model\n");
    writeOutput(text.toUtf8());
    flushOutput();
}

} // namespace

void addModelVerifyCommand(CLI::App& model)
{
    CLI::App* command = model.add_subcommand("verify", "Check that a file can be read as a search model");
    command->footer("Checked is what the library checks before it uses a model; \"info\" looks at more.");
    const auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "The model file")->type_name("")->required();
    command->add_flag("--json", options->json, "Print a JSON object");
    command->callback([options] { runVerify(*options); });
}

} // namespace kovalin::cli
