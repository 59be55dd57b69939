#include "kovalin/Search.h"

#include "kovalin/PacksFile.h"
#include "kovalin/Queries.h"
#include "kovalin/SearchOutput.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"
#include "search/QXSDKKovalinSearchResultType.h"
#include "shared/CommandLine.h"

#include <QtCore/QEventLoop>
#include <QtCore/QString>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace kovalin::cli {

namespace {

struct SearchOptions {
    std::string packs;
    std::string engine = "prefix";
    std::string types = "0";
    bool exact = false;
    bool explain = false;
    bool json = false;
    int limit = 10;
};

/// The engine, used as a host uses it: what it does in the background is waited for with the event loop running.
class Searcher final {
public:
    Searcher(const KovalinPackList& packs, const SearchOptions& options)
        : _options(options)
    {
        if (options.types != "1") {
            _types.append(QXSDKKovalinSearchResultTypeSolovalin);
        }
        if (options.types != "0") {
            _types.append(QXSDKKovalinSearchResultTypeFriendvalin);
        }
        waitFor([this, &packs](std::function<void()> done) { _engine.processPacks(packs, std::move(done)); });
    }

    SearchAnswer answer(const QString& query)
    {
        SearchAnswer answer{query, {}, {}, {}};
        if (_options.exact) {
            answer.stickers = _engine.searchWithExactMatch(query, _types);
            return answer;
        }
        waitFor([this, &answer](const std::function<void()>& done) {
            _engine.search(answer.query, _types, [&answer, done](const auto& stickers, const auto& tags) {
                answer.stickers = stickers;
                answer.tags = tags;
                done();
            });
        });
        if (_options.explain) {
            explain(answer);
        }
        return answer;
    }

private:
    /// Calls what is given and returns when `done` has been called, which comes from the main queue.
    static void waitFor(const std::function<void(std::function<void()> done)>& start)
    {
        QEventLoop loop;
        start([&loop] { loop.quit(); });
        loop.exec();
    }

    void explain(SearchAnswer& answer) const
    {
        const QStringList words = QXSDKKovalinPrefixSearchEngine::wordsForSearchTerm(answer.query);
        answer.scores.reserve(answer.tags.size());
        for (const QString& tag : std::as_const(answer.tags)) {
            const auto rank = QXSDKKovalinPrefixSearchEngine::rankForTag(tag, words);
            answer.scores.append({rank, _engine.rankValueForRank(rank) + _engine.occurenceRankForTag(tag)});
        }
    }

    const SearchOptions& _options;
    QXSDKKovalinSearchResultTypes _types;
    QXSDKKovalinPrefixSearchEngine _engine;
};

void runSearch(const SearchOptions& options, const Queries& queries)
{
    Searcher searcher(readPacksFile(argumentAsGiven(options.packs)), options);
    queries.forEach([&searcher, &options](const std::string& query) {
        const SearchAnswer found = searcher.answer(QString::fromStdString(query));
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
    command->add_option("--engine", options->engine, "The search engine")
        ->check(CLI::IsMember({"prefix"}))
        ->capture_default_str();
    command
        ->add_option("--types", options->types, "Kinds of stickers: 0 for one person, 1 for two, 0,1 for both; else 0")
        ->option_text("0|1|0,1")
        ->check(typesFault);
    command->add_flag("--exact", options->exact, "Take the query for a whole tag or pack title");
    command->add_flag("--explain", options->explain, "Add each tag's rank and score, the lower the better");
    command->add_flag("--json", options->json, "Print one JSON object a line, complete");
    command->add_option("--limit", options->limit, "The most tags and stickers to print without --json, 0 for all")
        ->check(countFault)
        ->capture_default_str();
    const Queries queries(*command, "What to search for");
    command->callback([options, queries] { runSearch(*options, queries); });
}

} // namespace kovalin::cli
