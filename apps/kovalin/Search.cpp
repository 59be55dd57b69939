#include "kovalin/Search.h"

#include "kovalin/ModelFile.h"
#include "kovalin/PacksFile.h"
#include "kovalin/Queries.h"
#include "kovalin/SearchOutput.h"
#include "kovalin/Searcher.h"
#include "search/QXSDKKovalinSearchResultType.h"
#include "shared/CommandLine.h"

#include <QtCore/QString>

#include <memory>
#include <string>

namespace kovalin::cli {

namespace {

const std::string prefixEngine = "prefix";
const std::string learnedEngine = "learned";
const std::string fusionEngine = "fusion";

struct SearchOptions {
    std::string packs;
    std::string model;
    bool hasModel = false;
    std::string engine; // empty when none was given
    std::string types = "0";
    bool exact = false;
    bool explain = false;
    bool json = false;
    int limit = 10;
};

QXSDKKovalinSearchResultTypes typesIn(const SearchOptions& options)
{
    QXSDKKovalinSearchResultTypes types;
    if (options.types != "1") {
        types.append(QXSDKKovalinSearchResultTypeSolovalin);
    }
    if (options.types != "0") {
        types.append(QXSDKKovalinSearchResultTypeFriendvalin);
    }
    return types;
}

/// Throws where an engine is asked for that takes a model, and there is none.
Searcher::Engine engineIn(const SearchOptions& options)
{
    using Engine = Searcher::Engine;
    if (options.engine.empty()) {
        return options.hasModel ? Engine::Fusion : Engine::Prefix;
    }
    if (options.engine == prefixEngine) {
        return Engine::Prefix;
    }
    if (!options.hasModel) {
        throw CLI::ValidationError("--engine", options.engine + " takes a model, given with --model");
    }
    return options.engine == learnedEngine ? Engine::Learned : Engine::Fusion;
}

void runSearch(const SearchOptions& options, const Queries& queries)
{
    const auto engine = engineIn(options);
    // Before the packs, which may take their time to read.
    const auto model =
        engine == Searcher::Engine::Prefix ? nullptr : ModelFile(argumentAsGiven(options.model)).buffer();
    const Searcher searcher(engine, readPacksFile(argumentAsGiven(options.packs)), model);
    const auto types = typesIn(options);
    queries.forEach([&](const std::string& query) {
        const QString text = QString::fromStdString(query);
        SearchAnswer found = options.exact ? searcher.searchWithExactMatch(text, types) : searcher.search(text, types);
        if (options.explain) {
            searcher.explain(found, types);
        }
        if (options.json) {
            writeAnswerAsJson(found, options.explain);
        } else {
            writeAnswerAsTable(found, options.explain, options.limit);
        }
    });
}

/// Empty when there is none.
std::string typesFault(const std::string& types)
{
    return types == "0" || types == "1" || types == "0,1" ? "" : "must be 0, 1 or 0,1, not " + types;
}

} // namespace

void addSearchCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("search", "Find stickers and tags by text");
    const auto options = std::make_shared<SearchOptions>();
    command->add_option("--packs", options->packs, "The packs document to search, a JSON file")
        ->type_name("FILE")
        ->required();
    const CLI::Option* model =
        command->add_option("--model", options->model, "The search model, a file; the prefix engine doesn't read it")
            ->type_name("FILE");
    command
        ->add_option("--engine", options->engine,
                     "The search engine: prefix goes by the tags, learned by the model, fusion by both; else fusion\n"
                     "with a model, prefix without")
        ->option_text("prefix|learned|fusion")
        ->check(CLI::IsMember({prefixEngine, learnedEngine, fusionEngine}));
    command
        ->add_option("--types", options->types, "Kinds of stickers: 0 for one person, 1 for two, 0,1 for both; else 0")
        ->option_text("0|1|0,1")
        ->check(typesFault);
    command->add_flag("--exact", options->exact, "Take the query for a whole tag or pack title");
    command->add_flag("--explain", options->explain,
                      "Add each tag's rank and score, the lower the better; a tag of the model's alone has none");
    command->add_flag("--json", options->json, "Print one JSON object a line, complete");
    command->add_option("--limit", options->limit, "The most tags and stickers to print without --json, 0 for all")
        ->check(countFault)
        ->capture_default_str();
    const Queries queries(*command, "What to search for");
    command->callback([options, model, queries] {
        options->hasModel = model->count() > 0;
        runSearch(*options, queries);
    });
}

} // namespace kovalin::cli
