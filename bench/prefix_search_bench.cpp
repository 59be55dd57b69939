// Measures the prefix search against the plain method and against search engines at large, and prints the ratios.
//
// prefix_search_bench [--quick] [--benchmark_filter=… and Google Benchmark's other flags]

#include "FtsTagIndex.h"
#include "Measure.h"
#include "search/PrefixSearchIndex.h"
#include "search/SearchWords.h"
#include "support/PackGenerator.h"
#include "support/PlainPrefixSearch.h"
#ifdef KOVALIN_BENCH_HAS_XAPIAN
#include "XapianTagIndex.h"
#endif

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace kovalin::bench {

namespace {

constexpr std::string_view ours = "ours";
constexpr std::string_view oursTagsOnly = "ours, tags only";
constexpr std::string_view plain = "plain";
constexpr std::string_view fts = "FTS5 as it comes";
constexpr std::string_view ftsTuned = "FTS5 tuned";
constexpr std::string_view ftsTagsOnly = "FTS5 tuned, tags only";
constexpr std::string_view xapian = "Xapian by its parser";
constexpr std::string_view xapianPrepared = "Xapian prepared";
constexpr std::string_view xapianTagsOnly = "Xapian prepared, tags only";

/// An index for word beginnings of two to eight letters, on a table without anything that isn't searched.
constexpr const char* tunedPrefixLengths = "2 3 4 5 6 7 8";

const QXSDKKovalinSearchResultTypes bothTypes{QXSDKKovalinSearchResultTypeSolovalin,
                                              QXSDKKovalinSearchResultTypeFriendvalin};

std::vector<std::string> wordsOf(const QString& text)
{
    std::vector<std::string> words;
    for (const QStringView word : SearchWords(text)) {
        words.push_back(word.toUtf8().toStdString());
    }
    return words;
}

struct Size {
    int tags;
    int queryStep; // of the typed queries every so-manieth is asked
    int repetitions;
};

/// Content of one size with its queries, in the form in which each engine takes them. The tags come with the most used ones
/// first, so that row and document order is our order within a rank.
struct Workload {
    explicit Workload(const Size& wanted)
        : size(wanted)
        , packs(test::generatePacks({.stickers = wanted.tags * 5 / 2, .tags = wanted.tags, .seed = 2024}))
    {
        const QStringList typed = test::typedQueries(packs, 48, 7);
        for (qsizetype place = 0; place < typed.size(); place += wanted.queryStep) {
            queries.append(typed[place]);
            queryWords.push_back(wordsOf(typed[place]));
        }
        std::vector<std::pair<qsizetype, QString>> counts;
        std::unordered_map<QString, std::uint32_t> numbers;
        const PrefixSearchIndex index(packs);
        for (auto set = index.tagToKovalins().cbegin(); set != index.tagToKovalins().cend(); ++set) {
            counts.emplace_back(-set->count(), set.key());
        }
        std::sort(counts.begin(), counts.end());
        for (const auto& [negativeCount, tag] : counts) {
            tags.push_back(tag.toStdString());
            tagWords.push_back(wordsOf(tag));
            auto& stickers = tagStickers.emplace_back();
            for (const KovalinStickerPtr& sticker : index.searchWithExactMatch(tag, bothTypes)) {
                const auto [number, isNew] = numbers.try_emplace(*sticker->comicId() + *sticker->url(), stickerCount);
                stickerCount += isNew ? 1 : 0;
                stickers.push_back(number->second);
            }
        }
    }

    Size size;
    KovalinPackList packs;
    QStringList queries;
    std::vector<std::vector<std::string>> queryWords;
    std::vector<std::string> tags;
    std::vector<std::vector<std::string>> tagWords;
    std::vector<std::vector<std::uint32_t>> tagStickers; // by tag, as numbers
    std::uint32_t stickerCount = 0;
};

/// The numbers that come up, each once and in their first order: what makes an answer of stickers out of those of tags.
class DistinctStickers final {
public:
    explicit DistinctStickers(std::uint32_t count)
        : _seen(count, false)
    {
    }

    template <typename Number>
    std::size_t countIn(const std::vector<Number>& stickers)
    {
        _distinct.clear();
        for (const auto sticker : stickers) {
            const auto number = static_cast<std::uint32_t>(sticker);
            if (!_seen[number]) {
                _seen[number] = true;
                _distinct.push_back(number);
            }
        }
        for (const std::uint32_t number : _distinct) {
            _seen[number] = false;
        }
        return _distinct.size();
    }

private:
    std::vector<bool> _seen;
    std::vector<std::uint32_t> _distinct;
};

/// The workload last asked for; one at a time is kept, for the large ones fill much of the memory.
const Workload& workloadOf(const Size& size)
{
    static std::unique_ptr<Workload> current;
    if (!current || current->size.tags != size.tags) {
        current.reset();
        current = std::make_unique<Workload>(size);
    }
    return *current;
}

/// An engine that has taken in a workload's content and answers its queries by number.
class Engine {
public:
    struct Answer {
        std::size_t tags;
        std::optional<std::size_t> stickers; // nullopt where the engine knows only tags
    };

    virtual ~Engine() = default;
    virtual Answer search(std::size_t query) = 0;

    /// Called once between building and searching.
    virtual void settle() {}
};

class OurEngine final : public Engine {
public:
    explicit OurEngine(const Workload& workload)
        : _workload(workload)
        , _index(workload.packs)
    {
    }

    Answer search(std::size_t query) override
    {
        const auto result = _index.search(_workload.queries[static_cast<qsizetype>(query)], bothTypes);
        return {static_cast<std::size_t>(result.tags.size()), static_cast<std::size_t>(result.stickers.size())};
    }

private:
    const Workload& _workload;
    PrefixSearchIndex _index;
};

/// Does the part of the work that the engines at large do.
class OurTagsEngine final : public Engine {
public:
    explicit OurTagsEngine(const Workload& workload)
        : _workload(workload)
        , _index(workload.packs)
    {
    }

    Answer search(std::size_t query) override
    {
        const auto tags = _index.tagsForSearchTerm(_workload.queries[static_cast<qsizetype>(query)], bothTypes);
        return {static_cast<std::size_t>(tags.size()), std::nullopt};
    }

private:
    const Workload& _workload;
    PrefixSearchIndex _index;
};

class PlainEngine final : public Engine {
public:
    explicit PlainEngine(const Workload& workload)
        : _workload(workload)
    {
        _search.processPacks(workload.packs);
    }

    Answer search(std::size_t query) override
    {
        const auto result = _search.search(_workload.queries[static_cast<qsizetype>(query)], bothTypes);
        return {static_cast<std::size_t>(result.tags.size()), static_cast<std::size_t>(result.stickers.size())};
    }

private:
    const Workload& _workload;
    test::PlainPrefixSearch _search;
};

enum class Answers { Stickers, TagsOnly };

class FtsEngine final : public Engine {
public:
    FtsEngine(const Workload& workload, const std::string& prefixLengths, Answers answers)
        : _index(workload.tags, prefixLengths,
                 answers == Answers::Stickers ? std::span(workload.tagStickers)
                                              : std::span<const std::vector<std::uint32_t>>())
        , _distinct(workload.stickerCount)
        , _answers(answers)
    {
        for (const auto& words : workload.queryWords) {
            _queries.push_back(FtsTagIndex::queryFor(words));
        }
    }

    Answer search(std::size_t query) override
    {
        if (_answers == Answers::TagsOnly) {
            return {_index.search(_queries[query]).size(), std::nullopt};
        }
        std::size_t tagCount = 0;
        const auto& stickers = _index.searchStickers(_queries[query], tagCount);
        return {tagCount, _distinct.countIn(stickers)};
    }
    void settle() override { _index.optimize(); }

private:
    FtsTagIndex _index;
    DistinctStickers _distinct;
    Answers _answers;
    std::vector<std::string> _queries;
};

#ifdef KOVALIN_BENCH_HAS_XAPIAN
enum class Queries { Texts, Prepared, PreparedForTagsOnly };

class XapianEngine final : public Engine {
public:
    XapianEngine(const Workload& workload, Queries queries)
        : _workload(workload)
        , _index(workload.tagWords, workload.tagStickers)
        , _distinct(workload.stickerCount)
        , _queries(queries)
    {
        for (const auto& words : workload.queryWords) {
            std::string& text = _texts.emplace_back();
            for (const std::string& word : words) {
                text += word + "* ";
            }
        }
    }

    Answer search(std::size_t query) override
    {
        if (_queries == Queries::PreparedForTagsOnly) {
            return {_index.search(_workload.queryWords[query]).size(), std::nullopt};
        }
        std::size_t tagCount = 0;
        const auto& stickers = _queries == Queries::Texts
                                   ? _index.searchStickersByText(_texts[query], tagCount)
                                   : _index.searchStickers(_workload.queryWords[query], tagCount);
        return {tagCount, _distinct.countIn(stickers)};
    }

private:
    const Workload& _workload;
    XapianTagIndex _index;
    DistinctStickers _distinct;
    Queries _queries;
    std::vector<std::string> _texts;
};
#endif

struct EngineKind {
    std::string_view name;
    std::function<std::unique_ptr<Engine>(const Workload&)> make;
};

template <typename E>
EngineKind engineKind(std::string_view name)
{
    return {name, [](const Workload& workload) {
                return std::make_unique<E>(workload);
            }};
}

const std::vector<EngineKind>& engineKinds()
{
    static const std::vector<EngineKind> kinds{
        engineKind<OurEngine>(ours),
        engineKind<OurTagsEngine>(oursTagsOnly),
        engineKind<PlainEngine>(plain),
        {fts,
         [](const Workload& workload) {
             return std::make_unique<FtsEngine>(workload, "", Answers::Stickers);
         }},
        {ftsTuned,
         [](const Workload& workload) {
             return std::make_unique<FtsEngine>(workload, tunedPrefixLengths, Answers::Stickers);
         }},
        {ftsTagsOnly,
         [](const Workload& workload) {
             return std::make_unique<FtsEngine>(workload, tunedPrefixLengths, Answers::TagsOnly);
         }},
#ifdef KOVALIN_BENCH_HAS_XAPIAN
        {xapian,
         [](const Workload& workload) {
             return std::make_unique<XapianEngine>(workload, Queries::Texts);
         }},
        {xapianPrepared,
         [](const Workload& workload) {
             return std::make_unique<XapianEngine>(workload, Queries::Prepared);
         }},
        {xapianTagsOnly,
         [](const Workload& workload) {
             return std::make_unique<XapianEngine>(workload, Queries::PreparedForTagsOnly);
         }},
#endif
    };
    return kinds;
}

/// A comparison of times is worth nothing unless the answers agree; ends the program when they don't.
void verify(benchmark::State& state, const Size& size)
{
    const Workload& workload = workloadOf(size);
    OurEngine our(workload);
    std::vector<double> tagCounts, stickerCounts;
    for (std::size_t query = 0; query < workload.queryWords.size(); ++query) {
        const auto answer = our.search(query);
        tagCounts.push_back(static_cast<double>(answer.tags));
        stickerCounts.push_back(static_cast<double>(answer.stickers.value_or(0)));
    }
    state.counters["queries"] = static_cast<double>(tagCounts.size());
    state.counters["without_answer"] = static_cast<double>(std::count(tagCounts.cbegin(), tagCounts.cend(), 0.0));
    state.counters["median_tags"] = quantile(tagCounts, 0.5);
    state.counters["p95_tags"] = quantile(tagCounts, 0.95);
    state.counters["median_stickers"] = quantile(stickerCounts, 0.5);
    state.counters["p95_stickers"] = quantile(stickerCounts, 0.95);
    for (const EngineKind& kind : engineKinds()) {
        const auto engine = kind.make(workload);
        for (std::size_t query = 0; query < workload.queryWords.size(); ++query) {
            const auto expected = our.search(query);
            const auto got = engine->search(query);
            if (got.tags != expected.tags || (got.stickers && got.stickers != expected.stickers)) {
                std::fprintf(stderr, "%d tags, query \"%s\": ours finds %zu tags and %zu stickers, %s %zu and %zu\n",
                             size.tags, qUtf8Printable(workload.queries[static_cast<qsizetype>(query)]), expected.tags,
                             expected.stickers.value_or(0), std::string(kind.name).c_str(), got.tags,
                             got.stickers.value_or(0));
                std::exit(EXIT_FAILURE);
            }
        }
    }
}

enum class Figure { SearchMedian, SearchTail, Build, Memory };

/// What was measured: nanoseconds, or bytes of memory.
class Report final {
public:
    void set(Figure figure, int tags, std::string_view engine, double value)
    {
        _values[{figure, tags, engine}] = value;
    }

    void print(const std::vector<Size>& sizes) const
    {
        std::printf("\nTimes and sizes of the others are given as multiples of ours for the same answer.\n");
        printTable("Free text search, median of all queries", Figure::SearchMedian, sizes, 1e3, "µs");
        printTable("Free text search, 95th percentile of all queries", Figure::SearchTail, sizes, 1e3, "µs");
        printTable("Building the index", Figure::Build, sizes, 1e6, "ms");
        printTable("Memory of the index", Figure::Memory, sizes, 1 << 20, "MiB");
        std::printf("\nA search answers tags and stickers, each sticker once, unless it says tags only. FTS5 and "
                    "Xapian answer\n"
                    "numbers, in the order of the tags' counts without ranks, and are built from lists of the "
                    "different tags with\n"
                    "their stickers, both of which favours them; tuned and prepared are the fastest forms that were "
                    "found. All\n"
                    "engines are asked the same queries. Times are processor time of the thread and include freeing "
                    "the answer.\n");
        for (const Size& size : sizes) {
            if (size.queryStep > 1 && value(Figure::SearchMedian, size.tags, plain)) {
                std::printf("At %d tags only every %dth query is asked, since the plain method is slow.\n", size.tags,
                            size.queryStep);
            }
        }
    }

private:
    [[nodiscard]] std::optional<double> value(Figure figure, int tags, std::string_view engine) const
    {
        const auto found = _values.find({figure, tags, engine});
        return found == _values.end() ? std::nullopt : std::optional(found->second);
    }

    /// Three digits that count, none behind the point from 100 on.
    static std::string number(double value)
    {
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "%.*f", value < 10 ? 2 : value < 100 ? 1 : 0, value);
        return text.data();
    }

    [[nodiscard]] std::vector<std::string_view> enginesWith(Figure figure) const
    {
        std::vector<std::string_view> names;
        for (const EngineKind& kind : engineKinds()) {
            if (std::any_of(_values.cbegin(), _values.cend(), [&](const auto& entry) {
                    return std::get<Figure>(entry.first) == figure &&
                           std::get<std::string_view>(entry.first) == kind.name;
                })) {
                names.push_back(kind.name);
            }
        }
        return names;
    }

    void printTable(const char* title, Figure figure, const std::vector<Size>& sizes, double unit,
                    const std::string& unitName) const
    {
        const auto engines = enginesWith(figure);
        if (engines.empty()) {
            return;
        }
        std::string table = "| Tags |";
        std::string rule = "|---:|";
        for (const std::string_view engine : engines) {
            table.append(" ").append(engine).append(" |");
            rule += "---:|";
        }
        table += '\n' + rule + '\n';
        for (const Size& size : sizes) {
            std::string row = "| " + std::to_string(size.tags) + " |";
            bool hasFigures = false;
            for (const std::string_view engine : engines) {
                const auto own = value(figure, size.tags, engine);
                const bool isSearch = figure == Figure::SearchMedian || figure == Figure::SearchTail;
                const auto like = isSearch && engine.ends_with("tags only") ? oursTagsOnly : ours;
                const auto reference = value(figure, size.tags, like);
                hasFigures = hasFigures || own;
                row += ' ' + (own ? number(*own / unit) + ' ' + unitName : std::string("–"));
                if (own && reference && engine != like) {
                    row += ", " + number(*own / *reference) + "×";
                }
                row += " |";
            }
            if (hasFigures) {
                table += row + '\n';
            }
        }
        std::printf("\n%s\n\n%s", title, table.c_str());
    }

    std::map<std::tuple<Figure, int, std::string_view>, double> _values;
};

void measureSearch(benchmark::State& state, const Size& size, const EngineKind& kind, Report& report)
{
    const Workload& workload = workloadOf(size);
    const auto engine = kind.make(workload);
    engine->settle();
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        times.clear();
        for (std::size_t query = 0; query < workload.queryWords.size(); ++query) {
            times.push_back(medianTimeOf(size.repetitions, [&] { benchmark::DoNotOptimize(engine->search(query)); }));
        }
        state.SetIterationTime(quantile(times, 0.5) / 1e9);
    }
    report.set(Figure::SearchMedian, size.tags, kind.name, quantile(times, 0.5));
    report.set(Figure::SearchTail, size.tags, kind.name, quantile(times, 0.95));
    state.counters["p95_us"] = quantile(times, 0.95) / 1e3;
    state.counters["queries"] = static_cast<double>(times.size());
}

void measureBuild(benchmark::State& state, const Size& size, const EngineKind& kind, Report& report)
{
    const Workload& workload = workloadOf(size);
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        std::unique_ptr<Engine> engine;
        times.push_back(timeOf([&] { engine = kind.make(workload); }));
        state.SetIterationTime(times.back() / 1e9);
    }
    report.set(Figure::Build, size.tags, kind.name, quantile(times, 0.5));
}

void measureMemory(benchmark::State& state, const Size& size, const EngineKind& kind, Report& report)
{
    const Workload& workload = workloadOf(size);
    std::size_t growth = 0;
    for ([[maybe_unused]] auto _ : state) {
        const auto before = heapInUse();
        const auto engine = kind.make(workload);
        growth = heapInUse().value_or(0) - before.value_or(0);
    }
    report.set(Figure::Memory, size.tags, kind.name, static_cast<double>(growth));
    state.counters["bytes"] = static_cast<double>(growth);
}

using Measure = void(benchmark::State&, const Size&, const EngineKind&, Report&);

benchmark::internal::Benchmark* registerMeasure(const std::string& name, Measure* measure, const Size& size,
                                                const EngineKind& kind, Report& report)
{
    const std::string full = name + '/' + std::to_string(size.tags) + '/' + std::string(kind.name);
    return benchmark::RegisterBenchmark(full.c_str(),
                                        [=, &report](benchmark::State& state) { measure(state, size, kind, report); });
}

void registerMeasures(const Size& size, Report& report)
{
    benchmark::RegisterBenchmark(("verify/" + std::to_string(size.tags)).c_str(),
                                 [size](benchmark::State& state) {
                                     for ([[maybe_unused]] auto _ : state) {
                                         verify(state, size);
                                     }
                                 })
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
    for (const EngineKind& kind : engineKinds()) {
        registerMeasure("search", measureSearch, size, kind, report)
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
    }
    for (const EngineKind& kind : engineKinds()) {
        if (kind.name == oursTagsOnly) {
            continue; // builds what ours builds
        }
        registerMeasure("build", measureBuild, size, kind, report)
            ->Iterations(size.repetitions)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        const bool hasHeap = kind.name == ours || kind.name == plain; // the others' also hold the content
        if (hasHeap && heapInUse()) {
            registerMeasure("memory", measureMemory, size, kind, report)->Iterations(1);
        }
    }
}

} // namespace

} // namespace kovalin::bench

int main(int argc, char** argv)
{
    using namespace kovalin::bench;

    bool isQuick = false;
    const auto end = std::remove_if(argv + 1, argv + argc, [&isQuick](std::string_view argument) {
        const bool isOurs = argument == "--quick";
        isQuick = isQuick || isOurs;
        return isOurs;
    });
    argc = static_cast<int>(end - argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }

    // Shared pointers and the heap are cheaper in a process that never had a second thread; every host has some.
    std::thread([] {}).join();

    const std::vector<Size> sizes =
        isQuick ? std::vector<Size>{{2'000, 1, 3}} : std::vector<Size>{{2'000, 1, 7}, {20'000, 1, 5}, {200'000, 6, 3}};
    Report report;
    for (const Size& size : sizes) {
        registerMeasures(size, report);
    }
    benchmark::RunSpecifiedBenchmarks();
    report.print(sizes);
    benchmark::Shutdown();
    return 0;
}
