// Measures the road from a key stroke to the fused answer, and for how long the library holds the main thread on it, beside the
// two engines' own times.
//
// fusion_search_bench [--quick]

#include "FusionWorkload.h"
#include "MeasuredEngines.h"
#include "QuickOption.h"
#include "WatchedApplication.h"
#include "search/PrefixSearchIndex.h"

#include <QtCore/QEventLoop>
#include <QtCore/QLoggingCategory>

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace kovalin::bench {

namespace {

using Fusion = QXSDKKovalinFusionSearchEngine;

const QXSDKKovalinSearchResultTypes bothTypes{QXSDKKovalinSearchResultTypeSolovalin,
                                              QXSDKKovalinSearchResultTypeFriendvalin};

struct Options {
    FusionWorkload::Size size{20'000, 100'000, 10'000, 1'500'000, 48};
    int rounds = 5;
};

/// Between two key strokes, so that all threads have gone to sleep.
constexpr std::chrono::milliseconds pause(3);

struct Answer {
    KovalinStickerList stickers;
    QStringList tags;
};

/// The engines over one workload, and what their parts answer when they are called directly.
class Subject final {
public:
    explicit Subject(const FusionWorkload& workload)
        : _packs(workload.packs)
        , _engines(workload)
        , _index(workload.packs)
    {
    }

    Fusion& fusion() { return *_engines.fusion(); }
    [[nodiscard]] const KovalinPackList& packs() const { return _packs; }

    [[nodiscard]] Answer prefixAnswer(const QString& text) const
    {
        const auto found = _index.search(text, bothTypes);
        return {found.stickers, found.tags};
    }

    [[nodiscard]] Answer learnedAnswer(const QString& text) const
    {
        Answer answer{_engines.learned().searchWithExactMatch(text, bothTypes),
                      _engines.classifier().getAutocompleteSuggestions(text)};
        if (!answer.stickers.isEmpty()) {
            answer.tags.append(QChar(0x200E) + text + QStringLiteral("..."));
        }
        return answer;
    }

    [[nodiscard]] Answer bothAnswers(const QString& text) const
    {
        const Answer byTags = prefixAnswer(text);
        const Answer byModel = learnedAnswer(text);
        return {Fusion::_fusePrefixAndLearnedSearchResults(byTags.stickers, byModel.stickers),
                Fusion::_fusePrefixAndLearnedSearchResults(byTags.tags, byModel.tags)};
    }

private:
    KovalinPackList _packs;
    MeasuredEngines _engines;
    PrefixSearchIndex _index; // the prefix engine's own can't be called directly
};

/// What a way of typing led to.
struct Typing {
    std::vector<double> latencies; // from a key stroke to its answer, by the clock
    std::vector<Hold> searches;    // the calls of search() themselves
    std::vector<Hold> jobs;        // all that the event loop did
    std::size_t mostStickers = 0;
};

class Typist final {
public:
    Typist(WatchedApplication& application, Subject& subject)
        : _application(application)
        , _subject(subject)
    {
    }

    Typing typeSlowly(const QList<QStringList>& texts)
    {
        start();
        for (const QStringList& text : texts) {
            for (const QString& beginning : text) {
                typeAtOnce({beginning});
            }
        }
        return finish();
    }

    /// Each text with all its key strokes before the first answer.
    Typing typeInBursts(const QList<QStringList>& texts)
    {
        start();
        for (const QStringList& text : texts) {
            typeAtOnce(text);
        }
        return finish();
    }

    /// The last key stroke of each text while the packs come anew as soon as they were taken in.
    Typing typeWhilePacksAreIndexed(const QList<QStringList>& texts)
    {
        start();
        _goesOn = true;
        indexAgain();
        for (const QStringList& text : texts) {
            typeAtOnce({text.last()}); // of all beginnings each would wait for a build
        }
        _goesOn = false;
        waitFor([this](std::function<void()> done) { _indexed = std::move(done); });
        return finish();
    }

private:
    void start()
    {
        _typing = {};
        static_cast<void>(_application.takeHolds());
    }

    Typing finish()
    {
        _typing.jobs = _application.takeHolds();
        return std::exchange(_typing, {});
    }

    void typeAtOnce(const QStringList& beginnings)
    {
        std::this_thread::sleep_for(pause);
        qsizetype outstanding = beginnings.size();
        waitFor([&](const std::function<void()>& done) {
            for (const QString& beginning : beginnings) {
                const Nanoseconds typed = clockNow();
                _typing.searches.push_back(holdOf([&] {
                    _subject.fusion().search(
                        beginning, bothTypes, [&, typed, done](const KovalinStickerList& stickers, const QStringList&) {
                            _typing.latencies.push_back(clockNow() - typed);
                            _typing.mostStickers =
                                std::max(_typing.mostStickers, static_cast<std::size_t>(stickers.size()));
                            if (--outstanding == 0) {
                                done();
                            }
                        });
                }));
            }
        });
    }

    void indexAgain()
    {
        _subject.fusion().processPacks(_subject.packs(), [this] {
            if (_goesOn) {
                indexAgain();
            } else {
                _indexed();
            }
        });
    }

    WatchedApplication& _application;
    Subject& _subject;
    Typing _typing;
    bool _goesOn = false;
    std::function<void()> _indexed = [] {
    };
};

/// Ends the program where the fused answer isn't what the parts make together.
void verify(Subject& subject, const QList<QStringList>& texts)
{
    for (const QStringList& text : texts) {
        for (const QString& beginning : text) {
            Answer found;
            waitFor([&](const std::function<void()>& done) {
                subject.fusion().search(beginning, bothTypes, [&found, done](const auto& stickers, const auto& tags) {
                    found = {stickers, tags};
                    done();
                });
            });
            const Answer wanted = subject.bothAnswers(beginning);
            if (found.stickers != wanted.stickers || found.tags != wanted.tags) {
                fmt::print(stderr, "The answers to \"{}\" differ.\n", beginning.toStdString());
                std::exit(1);
            }
        }
    }
}

std::vector<double> directTimes(const QList<QStringList>& texts, const Options& options,
                                const std::function<Answer(const QString&)>& ask)
{
    std::vector<double> times;
    for (const QStringList& text : texts) {
        for (const QString& beginning : text) {
            times.push_back(medianTimeOf(options.rounds, [&] { static_cast<void>(ask(beginning)); }));
        }
    }
    return times;
}

void printTimes(std::string_view what, const std::vector<double>& times, const std::vector<double>& direct)
{
    fmt::print("| {} | {:.3g} µs | {:.3g} µs | {:.3g} µs | {:.3g}× | {:.3g}× |\n", what, quantile(times, 0.5) / 1e3,
               quantile(times, 0.99) / 1e3, quantile(times, 1) / 1e3, quantile(times, 0.5) / quantile(direct, 0.5),
               quantile(times, 0.99) / quantile(direct, 0.99));
    std::fflush(stdout);
}

void printHolds(std::string_view what, const std::vector<Hold>& holds)
{
    std::vector<double> byProcessor;
    std::vector<double> byClock;
    for (const Hold& hold : holds) {
        byProcessor.push_back(hold.byProcessor);
        byClock.push_back(hold.byClock);
    }
    fmt::print("| {} | {} | {:.3g} µs | {:.3g} µs | {:.3g} µs | {:.3g} µs |\n", what, holds.size(),
               quantile(byProcessor, 0.5) / 1e3, quantile(byProcessor, 0.99) / 1e3, quantile(byProcessor, 1) / 1e3,
               quantile(byClock, 1) / 1e3);
    std::fflush(stdout);
}

/// The same typing as often as there are rounds.
template <typename Type>
Typing manyTimes(const Options& options, Type&& type)
{
    Typing all;
    for (int round = 0; round < options.rounds; ++round) {
        Typing typing = type();
        all.latencies.insert(all.latencies.end(), typing.latencies.begin(), typing.latencies.end());
        all.searches.insert(all.searches.end(), typing.searches.begin(), typing.searches.end());
        all.jobs.insert(all.jobs.end(), typing.jobs.begin(), typing.jobs.end());
        all.mostStickers = std::max(all.mostStickers, typing.mostStickers);
    }
    return all;
}

void run(WatchedApplication& application, const Options& options)
{
    const FusionWorkload workload(options.size);
    Subject subject(workload);
    const auto& texts = workload.typedTexts;
    verify(subject, texts);

    const auto direct = [&](Answer (Subject::*ask)(const QString&) const) {
        return directTimes(texts, options, [&](const QString& text) { return (subject.*ask)(text); });
    };
    const auto prefixTimes = direct(&Subject::prefixAnswer);
    const auto learnedTimes = direct(&Subject::learnedAnswer);
    const auto directBoth = direct(&Subject::bothAnswers);

    Typist typist(application, subject);
    const auto slow = manyTimes(options, [&] { return typist.typeSlowly(texts); });
    const auto bursts = manyTimes(options, [&] { return typist.typeInBursts(texts); });
    const auto indexing = manyTimes(options, [&] { return typist.typeWhilePacksAreIndexed(texts); });

    fmt::print("{} tags, {} stickers; {} keys, {} comics, {} rows; {} key strokes, up to {} stickers in an answer\n\n",
               options.size.tags, options.size.tags * 5 / 2, options.size.keys, options.size.comics, options.size.rows,
               slow.latencies.size(), slow.mostStickers);
    fmt::print("| what | median | 99 % | longest | beside directly | its 99 % |\n|---|---:|---:|---:|---:|---:|\n");
    printTimes("prefix engine, directly", prefixTimes, directBoth);
    printTimes("learned engine, directly", learnedTimes, directBoth);
    printTimes("both and their fusion, directly", directBoth, directBoth);
    printTimes("from key stroke to answer, one at a time", slow.latencies, directBoth);
    printTimes("the same, in bursts", bursts.latencies, directBoth);
    printTimes("the same, one at a time, while packs are indexed", indexing.latencies, directBoth);

    fmt::print("\n| the main thread is held by | times | median | 99 % | longest | longest, by the clock |\n"
               "|---|---:|---:|---:|---:|---:|\n");
    printHolds("`search`, one key stroke at a time", slow.searches);
    printHolds("a turn of the event loop, one key stroke at a time", slow.jobs);
    printHolds("`search`, in bursts", bursts.searches);
    printHolds("a turn of the event loop, in bursts", bursts.jobs);
    printHolds("`search`, while packs are indexed", indexing.searches);
    printHolds("a turn of the event loop, while packs are indexed", indexing.jobs);
}

} // namespace

} // namespace kovalin::bench

int main(int argc, char** argv)
{
    using namespace kovalin::bench;

    Options options;
    if (isQuick(argc, argv)) {
        options = {{2'000, 3'000, 500, 30'000, 8}, 1};
    }
    WatchedApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("kovalin.*.debug=false"));
    run(application, options);
    return 0;
}
