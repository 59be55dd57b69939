// Measures predictions and suggestions against the plain method and against a classifier at large, and prints the ratios.
//
// learned_search_bench [--quick]

#include "LearnedSearchWorkload.h"
#include "Measure.h"
#include "QuickOption.h"
#include "learned_search/LearnedSearchClassifier.h"
#include "support/PlainClassifier.h"
#ifdef KOVALIN_BENCH_HAS_FASTTEXT
#include "FastTextClassifier.h"
#endif

#include <fmt/format.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace kovalin::bench {

namespace {

using namespace vole::learned_search;
using namespace vole::learned_search::test;

constexpr std::int32_t asMany = 1000; // what the picker asks for

struct Options {
    ModelSize size{100'000, 10'000, 1'500'000};
    std::size_t queries = 400;
    int repetitions = 7;
};

/// Keeps the compiler from leaving out the work whose result nobody needs.
template <typename Value>
void keep(const Value& value)
{
    asm volatile("" : : "g"(&value) : "memory");
}

/// A model with both classifiers on it.
struct Subject {
    explicit Subject(ModelContent made)
        : content(std::move(made))
        , file(content.toFile())
        , buffer(ModelFileBuffer::modelFileBufferInstanceWithPath(file.path()))
        , ours(LearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer))
        , plain(buffer)
    {
    }

    ModelContent content;
    TemporaryFile file;
    std::shared_ptr<ModelFileBuffer> buffer;
    std::shared_ptr<LearnedSearchClassifier> ours;
    PlainClassifier plain;
};

using Ask = std::function<void(const std::string& query)>;

struct Times {
    double median;
    double tail; // 95th percentile
};

Times timesOf(const std::vector<std::string>& queries, int repetitions, const Ask& ask)
{
    std::vector<double> times;
    for (const std::string& query : queries) {
        times.push_back(medianTimeOf(repetitions, [&] { ask(query); }));
    }
    return {quantile(times, 0.5), quantile(times, 0.95)};
}

/// By the wall clock: asking for a thread's own time goes through the kernel, which after this is as cold as everything else.
double wallTimeOf(const std::function<void()>& work)
{
    using Clock = std::chrono::steady_clock;
    static_cast<void>(Clock::now());
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count();
}

/// Each query once, after everything else was thrown out of the caches.
Times coldTimesOf(const std::vector<std::string>& queries, const Ask& ask)
{
    std::vector<char> everything(std::size_t{160} << 20);
    std::vector<double> times;
    for (const std::string& query : queries) {
        for (std::size_t at = 0; at < everything.size(); at += 64) {
            ++everything[at];
        }
        keep(everything);
        times.push_back(wallTimeOf([&] { ask(query); }));
    }
    return {quantile(times, 0.5), quantile(times, 0.95)};
}

void printRow(std::string_view what, const Times& ours, std::string_view other, const Times& others)
{
    fmt::print("| {} | {:.3g} µs | {:.3g} µs | {} | {:.3g} µs | {:.3g} µs | {:.3g}× | {:.3g}× |\n", what,
               ours.median / 1e3, ours.tail / 1e3, other, others.median / 1e3, others.tail / 1e3,
               others.median / ours.median, others.tail / ours.tail);
    std::fflush(stdout);
}

Ask predictOurs(const Subject& subject, std::int32_t count)
{
    return [&subject, count](const std::string& query) {
        keep(subject.ours->predict(query, count));
    };
}

Ask predictPlainly(const Subject& subject, std::int32_t count)
{
    return [&subject, count](const std::string& query) {
        keep(subject.plain.predict(query, count));
    };
}

/// Ends the program where the two don't agree.
void verify(const Subject& subject, const std::vector<std::string>& queries)
{
    for (const std::string& query : queries) {
        if (subject.ours->predict(query, asMany) != subject.plain.predict(query, asMany) ||
            subject.ours->predict(query, 10) != subject.plain.predict(query, 10)) {
            fmt::print(stderr, "The answers to \"{}\" differ.\n", query);
            std::exit(1);
        }
    }
}

void comparePredictions(const Subject& subject, std::string_view what, const std::vector<std::string>& queries,
                        const Options& options)
{
    verify(subject, queries);
    printRow(what, timesOf(queries, options.repetitions, predictOurs(subject, asMany)), "plain",
             timesOf(queries, 1, predictPlainly(subject, asMany)));
}

void compareWithFastText(const Subject& subject, const std::vector<std::string>& queries, const Options& options)
{
    const auto ours = timesOf(queries, options.repetitions, predictOurs(subject, 10));
    printRow("10 comics", ours, "plain", timesOf(queries, 1, predictPlainly(subject, 10)));
#ifdef KOVALIN_BENCH_HAS_FASTTEXT
    using Loss = FastTextClassifier::Loss;
    for (const auto& [loss, name] :
         {std::pair(Loss::Softmax, "fastText"), std::pair(Loss::HierarchicalSoftmax, "fastText, hierarchical")}) {
        const FastTextClassifier fastText(subject.content, loss);
        printRow("10 comics", ours, name,
                 timesOf(queries, 1, [&](const std::string& query) { keep(fastText.predict(query, 10)); }));
    }
#else
    fmt::print("(fastText is not installed)\n");
#endif
}

void compareSuggestions(const Subject& subject, const std::vector<std::string>& queries, const Options& options)
{
    const auto ours = timesOf(queries, options.repetitions,
                              [&](const std::string& query) { keep(subject.ours->getAutocompleteSuggestions(query)); });
    const auto plain =
        timesOf(queries, 1, [&](const std::string& query) { keep(subject.plain.getAutocompleteSuggestions(query)); });
    printRow("suggestions", ours, "walk", plain);
}

void compareCold(const Subject& subject, const std::vector<std::string>& all, const Options& options)
{
    const std::vector<std::string> queries(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(options.queries / 4));
    printRow("1 000 comics, cold caches", coldTimesOf(queries, predictOurs(subject, asMany)), "plain",
             coldTimesOf(queries, predictPlainly(subject, asMany)));
}

void measureOpening(const Subject& subject, const Options& options)
{
    const std::string query = typedWords(subject.content, 1).front();
    std::vector<double> opening;
    std::vector<double> firstQuery;
    std::optional<std::size_t> memory;
    for (int repetition = 0; repetition < options.repetitions * 3; ++repetition) {
        std::shared_ptr<LearnedSearchClassifier> classifier;
        opening.push_back(timeOf([&] {
            classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(
                ModelFileBuffer::modelFileBufferInstanceWithPath(subject.file.path()));
        }));
        const auto before = heapInUse();
        firstQuery.push_back(timeOf([&] { keep(classifier->predict(query, asMany)); }));
        if (before) {
            memory = *heapInUse() - *before;
        }
    }
    fmt::print("\nOpening and verifying {:.1f} MB: {:.2f} ms; first prediction {:.2f} ms",
               static_cast<double>(subject.buffer->getSize()) / 1e6, quantile(opening, 0.5) / 1e6,
               quantile(firstQuery, 0.5) / 1e6);
    if (memory) {
        fmt::print("; memory beside the file {:.2f} MiB", static_cast<double>(*memory) / (1 << 20));
    }
    fmt::print("\n");
}

void run(const Options& options)
{
    fmt::print("{} keys, {} comics, {} rows\n\n"
               "| what | ours, median | ours, 95 % | beside | its median | its 95 % | ratio | ratio, 95 % |\n"
               "|---|---:|---:|---|---:|---:|---:|---:|\n",
               options.size.keys, options.size.comics, options.size.rows);
    const Subject anyOrder(generateLargeModel(options.size, SliceOrder::AnyOrder, Probs::AllDifferent));
    const auto texts = typedTexts(anyOrder.content, options.queries);
    const auto words = typedWords(anyOrder.content, options.queries);
    comparePredictions(anyOrder, "1 000 comics", texts, options);
    comparePredictions(anyOrder, "1 000 comics, one word", words, options);
    {
        const Subject bestFirst(generateLargeModel(options.size, SliceOrder::BestFirst, Probs::AllDifferent));
        comparePredictions(bestFirst, "1 000 comics, slices best first", texts, options);
        comparePredictions(bestFirst, "1 000 comics, slices best first, one word", words, options);
    }
    {
        const Subject tied(generateLargeModel(options.size, SliceOrder::AnyOrder, Probs::AsCounted));
        comparePredictions(tied, "1 000 comics, few different factors", texts, options);
    }
    compareWithFastText(anyOrder, texts, options);
    compareSuggestions(anyOrder, typedBeginnings(anyOrder.content, options.queries), options);
    compareCold(anyOrder, texts, options);
    measureOpening(anyOrder, options);
}

} // namespace

} // namespace kovalin::bench

int main(int argc, char** argv)
{
    using namespace kovalin::bench;

    Options options;
    if (isQuick(argc, argv)) {
        options = {{3'000, 500, 30'000}, 40, 1};
    }
    // Shared pointers and the heap are cheaper in a process that never had a second thread; every host has some.
    std::thread([] {}).join();
    run(options);
    return 0;
}
