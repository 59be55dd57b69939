#include "kovalin/ClassifierCommand.h"

#include "kovalin/JsonLine.h"
#include "kovalin/ModelFile.h"
#include "kovalin/Queries.h"
#include "shared/CommandLine.h"
#include "shared/StandardStreams.h"

#include <memory>

namespace kovalin::cli {

namespace {

struct Options {
    std::string model;
    bool json = false;
    std::int32_t limit = 10;
};

void answerQueries(const ClassifierCommand& command, const Options& options, const Queries& queries)
{
    const ClassifierCommand::Classifier classifier(ModelFile(argumentAsGiven(options.model)).buffer());
    queries.forEach([&](const std::string& query) {
        if (options.json) {
            nlohmann::ordered_json answer{{"query", query}};
            command.addAnswer(classifier, query, answer);
            writeJsonLine(answer);
        } else {
            writeOutput(command.answerText(classifier, query, options.limit).toUtf8());
            flushOutput();
        }
    });
}

} // namespace

CLI::App* addClassifierCommand(CLI::App& program, const ClassifierCommand& description)
{
    CLI::App* command = program.add_subcommand(description.name, description.description);
    const auto options = std::make_shared<Options>();
    command->add_option("--model", options->model, "The search model to ask, a file")->type_name("FILE")->required();
    command->add_flag("--json", options->json, "Print one JSON object a line, complete");
    if (!description.listed.empty()) {
        command
            ->add_option("--limit", options->limit,
                         "The most " + description.listed + " to print without --json, 0 for all")
            ->check(countFault)
            ->capture_default_str();
    }
    const Queries queries(*command, description.queryDescription);
    command->callback([description, options, queries] { answerQueries(description, *options, queries); });
    return command;
}

} // namespace kovalin::cli
