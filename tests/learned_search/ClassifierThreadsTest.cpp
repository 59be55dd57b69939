#include "learned_search/LearnedSearchClassifierImpl.h"
#include "support/GeneratedModels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <thread>

using namespace vole::learned_search;
using namespace vole::learned_search::test;
using testing::ElementsAre;

namespace {

constexpr std::size_t threadCount = 8;

/// All that a classifier answers to one query.
struct Answer {
    bool initialized;
    std::vector<std::int32_t> comics;
    std::vector<std::string> suggestions;
    std::vector<std::string> words;
    std::vector<std::string> ngrams;

    friend bool operator==(const Answer&, const Answer&) = default;
};

Answer answerOf(const LearnedSearchClassifierImpl& classifier, const std::string& query)
{
    const auto words = LearnedSearchClassifierImpl::queryToPreprocessedWords(query);
    return {classifier.modelIsInitialized(), classifier.predict(query, 20),
            classifier.getAutocompleteSuggestions(query), words, classifier.generateWordNgrams(words, 5)};
}

std::vector<std::string> queriesFor(const ModelContent& model, Random& random)
{
    std::vector<std::string> queries;
    for (int query = 0; query < 40; ++query) {
        queries.push_back(generateQuery(random, model, 5));
    }
    return queries;
}

/// Calls `work` with the number of each thread, all of which begin together.
template <typename Work>
void onEightThreads(Work work)
{
    std::barrier start(static_cast<std::ptrdiff_t>(threadCount));
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&start, work, thread] {
            start.arrive_and_wait();
            work(thread);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

/// Eight threads ask a fresh classifier from its first use on, each beginning with another query.
void expectSameAnswersOnManyThreads(const ModelShape& shape)
{
    Random random(61);
    for (int round = 0; round < 5; ++round) {
        const ModelContent model = generateModel(random, shape);
        const auto queries = queriesFor(model, random);
        const Bytes file = model.toFile();
        std::vector<Answer> wanted;
        const LearnedSearchClassifierImpl alone(bufferOf(file));
        for (const std::string& query : queries) {
            wanted.push_back(answerOf(alone, query));
        }

        const LearnedSearchClassifierImpl shared(bufferOf(file));
        std::atomic<int> differences = 0;
        onEightThreads([&](std::size_t thread) {
            for (std::size_t turn = 0; turn < queries.size(); ++turn) {
                const std::size_t query = (turn + thread * 5) % queries.size();
                differences += answerOf(shared, queries[query]) == wanted[query] ? 0 : 1;
            }
        });

        EXPECT_EQ(differences, 0);
    }
}

} // namespace

TEST(ClassifierThreads, AnswerAsOneThreadDoes)
{
    expectSameAnswersOnManyThreads({.comics = 200, .keys = 200, .rowsPerKey = 30});
}

TEST(ClassifierThreads, AnswerAsOneThreadDoesOfUnsortedDictionaries)
{
    expectSameAnswersOnManyThreads({.sorted = false});
}

TEST(ClassifierThreads, AnswerAsOneThreadDoesOfOddModels)
{
    expectSameAnswersOnManyThreads({.repeatedComics = 0.1, .oddProbs = 0.05});
}

TEST(ClassifierThreads, AnswerNothingWithoutAModel)
{
    const auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(nullptr);
    std::atomic<std::size_t> answers = 0;

    onEightThreads([&](std::size_t) {
        answers += classifier->predict("dog", 10).size() + classifier->getAutocompleteSuggestions("dog").size();
    });

    EXPECT_EQ(answers, 0U);
}

TEST(ClassifierThreads, FailOneByOneWithoutDisturbingOthers)
{
    const auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(
        bufferOf(ModelContent().list({7}).add("dog", {{7, 1}})));
    std::atomic<int> errors = 0;
    std::atomic<int> comics = 0;

    onEightThreads([&](std::size_t thread) {
        try {
            comics += static_cast<int>(classifier->predict("dog", thread % 2 == 0 ? -1 : 1).size());
        } catch (const std::length_error&) {
            ++errors;
        }
    });

    EXPECT_EQ(errors, 4);
    EXPECT_EQ(comics, 4);
}

TEST(ClassifierThreads, TheLastOneEndsTheClassifierAndTheMapping)
{
    const TemporaryFile file(ModelContent().list({7}).add("dog", {{7, 0.5F}}).toFile());
    auto buffer = ModelFileBuffer::modelFileBufferInstanceWithPath(file.path());
    const std::weak_ptr<ModelFileBuffer> alive = buffer;
    std::vector<std::shared_ptr<LearnedSearchClassifier>> classifiers(
        threadCount, LearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer));
    buffer.reset();
    std::atomic<std::size_t> answers = 0;

    onEightThreads([&](std::size_t thread) {
        const auto classifier = std::move(classifiers[thread]);
        answers += classifier->predict("dog", 10).size();
    });

    EXPECT_EQ(answers, threadCount);
    EXPECT_TRUE(alive.expired());
}

TEST(ClassifierThreads, AClassifierMayEndOnAThreadThatNeverAskedIt)
{
    auto buffer = bufferOf(ModelContent().list({7}).add("dog", {{7, 0.5F}}));
    const std::weak_ptr<ModelFileBuffer> alive = buffer;
    auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer);
    buffer.reset();
    EXPECT_THAT(classifier->predict("dog", 10), ElementsAre(7));

    std::thread([last = std::move(classifier)]() mutable { last.reset(); }).join();

    EXPECT_TRUE(alive.expired());
}
