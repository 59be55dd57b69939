#include "kovalin/ModelBuild.h"

#include "kovalin/model_build/LearnedModel.h"
#include "kovalin/model_build/ModelLimits.h"
#include "kovalin/model_build/ModelWriter.h"
#include "kovalin/model_build/PairCounts.h"
#include "kovalin/model_build/PairsFile.h"
#include "kovalin/model_build/ProgressLine.h"
#include "kovalin/model_build/ReplacementFile.h"
#include "learned_search/LearnedSearchClassifier.h"
#include "learned_search/ModelFileBuffer.h"
#include "shared/BadInput.h"
#include "shared/CommandLine.h"
#include "shared/StandardStreams.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>

using namespace vole::learned_search;

namespace kovalin::cli {

namespace {

struct BuildOptions {
    std::string pairs;
    std::string out;
    std::int64_t minCount = 1;
    bool json = false;
};

void count(PairsFile& pairs, PairCounts& counts)
{
    ProgressLine progress;
    while (const auto pair = pairs.next()) {
        try {
            counts.add(*pair);
        } catch (const std::overflow_error& error) {
            pairs.failAtLine(error.what());
        } catch (const std::length_error& error) {
            pairs.failAtLine(error.what());
        }
        progress.update([&pairs] { return "lines read: " + std::to_string(pairs.lineCount()); });
    }
    if (counts.total() == 0) {
        throw BadInput(pairs.name() + (pairs.lineCount() == 0 ? ": is empty" : ": no text has a word to learn"));
    }
}

void checkThatItCanBeWritten(const LearnedModel& model, const PairsFile& pairs, std::int64_t minCount)
{
    if (model.keys().empty()) {
        throw BadInput(pairs.name() + ": no key was counted " + std::to_string(minCount) + " times");
    }
    if (const std::string fault = limitFault(sizeOf(model)); !fault.empty()) {
        throw BadInput(pairs.name() + ": " + fault);
    }
}

/// Looks at what was written with the eyes of those who will use it.
void checkThatItCanBeRead(const std::string& path)
{
    const auto buffer = ModelFileBuffer::modelFileBufferInstanceWithPath(path);
    if (!LearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer)->modelIsInitialized()) {
        throw std::logic_error("internal error: the model that was written can't be read");
    }
}

void writeSummary(const ModelSize& size, std::size_t bytes, std::uint64_t skippedTexts, bool json)
{
    if (json) {
        const nlohmann::ordered_json summary{{"keys", size.keys},
                                             {"comics", size.comics},
                                             {"rows", size.rows},
                                             {"bytes", bytes},
                                             {"skipped_texts", skippedTexts}};
        writeOutput(summary.dump());
    } else {
        writeOutput("keys: " + std::to_string(size.keys) + ", comics: " + std::to_string(size.comics) +
                    ", rows: " + std::to_string(size.rows) + ", bytes: " + std::to_string(bytes) +
                    ", texts skipped for having no word: " + std::to_string(skippedTexts));
    }
    writeOutput("\n");
    flushOutput();
}

/// Empty when there is none.
std::string positiveCountFault(const std::string& text)
{
    std::int64_t count = 0;
    const char* const end = text.data() + text.size();
    const auto [parsedEnd, error] = std::from_chars(text.data(), end, count);
    return error == std::errc() && parsedEnd == end && count > 0 ? "" : "must be a positive integer, not " + text;
}

void runBuild(const BuildOptions& options)
{
    ReplacementFile out(argumentAsGiven(options.out));
    PairsFile pairs(argumentAsGiven(options.pairs));
    PairCounts counts;
    count(pairs, counts);
    LearnedModel model(counts, options.minCount);
    checkThatItCanBeWritten(model, pairs, options.minCount);
    model.makeRows();
    checkThatItCanBeWritten(model, pairs, options.minCount);
    const auto file = fileOf(model);
    out.write({file.data(), file.size()});
    checkThatItCanBeRead(out.temporaryPath());
    out.replace();
    writeSummary(sizeOf(model), file.size(), counts.skippedTexts(), options.json);
}

} // namespace

void addModelBuildCommand(CLI::App& model)
{
    CLI::App* command = model.add_subcommand("build", "Make a model file of what people typed and chose");
    command->footer("Each line of TSV is a text, the comic id chosen after it, and how often that was, with a tab\n"
                    "between them. Keys are the runs of one to five words of the texts; of letters only those of\n"
                    "ASCII count. FILE is replaced as a whole once the model is complete.");
    const auto options = std::make_shared<BuildOptions>();
    command->add_option("--pairs", options->pairs, "What people typed and chose, \"-\" for standard input")
        ->type_name("TSV")
        ->required();
    command->add_option("--out", options->out, "The model file to write")->type_name("FILE")->required();
    command->add_option("--min-count", options->minCount, "Leave out keys that were counted less than N times")
        ->type_name("N")
        ->check(positiveCountFault)
        ->capture_default_str();
    command->add_flag("--json", options->json, "Print the summary as one JSON object");
    command->callback([options] { runBuild(*options); });
}

} // namespace kovalin::cli
