// The classifier held against the plain one, over models and queries of all kinds.
#include "learned_search/LearnedSearchClassifier.h"
#include "support/GeneratedModels.h"
#include "support/PlainClassifier.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

using namespace vole::learned_search;
using namespace vole::learned_search::test;

namespace {

/// The suggestions in an order that doesn't depend on that of equally popular ones, which is free.
std::vector<std::pair<float, std::string>> ordered(std::vector<std::pair<float, std::string>> suggestions)
{
    std::stable_sort(suggestions.begin(), suggestions.end(), [](const auto& a, const auto& b) {
        return a.first > b.first || (a.first == b.first && a.second < b.second);
    });
    return suggestions;
}

void expectEqualAnswers(const ModelContent& content, const std::vector<std::string>& queries)
{
    const auto buffer = bufferOf(content);
    const auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer);
    ASSERT_TRUE(classifier->modelIsInitialized());
    const PlainClassifier plain(buffer);
    for (const std::string& query : queries) {
        SCOPED_TRACE(query);
        for (const std::int32_t topN : {1000, 0, 1, 2, 7, 25}) {
            ASSERT_EQ(classifier->predict(query, topN), plain.predict(query, topN)) << topN;
        }
        const auto suggestions = classifier->getAutocompleteSuggestions(query);
        std::vector<std::pair<float, std::string>> wanted;
        for (auto [key, popularity] : plain.completions(query)) {
            std::replace(key.begin(), key.end(), '|', ' ');
            wanted.emplace_back(popularity, key);
        }
        wanted = ordered(wanted);
        ASSERT_EQ(suggestions.size(), wanted.size());
        std::vector<std::pair<float, std::string>> found;
        for (std::size_t at = 0; at < suggestions.size(); ++at) {
            found.emplace_back(wanted[at].first, suggestions[at]); // the popularity that must stand at this place
        }
        ASSERT_EQ(ordered(found), wanted);
    }
}

void expectEqualAnswers(std::uint64_t seed, const ModelShape& shape, std::size_t models, std::size_t queries,
                        std::size_t mostWords = 5)
{
    Random random(seed);
    for (std::size_t model = 0; model < models; ++model) {
        SCOPED_TRACE(model);
        const auto content = generateModel(random, shape);
        std::vector<std::string> texts;
        for (std::size_t query = 0; query < queries; ++query) {
            texts.push_back(generateQuery(random, content, mostWords));
        }
        expectEqualAnswers(content, texts);
        if (testing::Test::HasFatalFailure()) {
            return;
        }
    }
}

TEST(PredictionEquality, OfModelsAsTheyShouldBe)
{
    expectEqualAnswers(1, {}, 400, 12);
}

TEST(PredictionEquality, OfModelsWithManyTies)
{
    expectEqualAnswers(2, {.comics = 60, .rowsPerKey = 20, .distinctProbs = 3}, 300, 10);
    expectEqualAnswers(3, {.comics = 300, .rowsPerKey = 100, .distinctProbs = 20}, 60, 8);
    expectEqualAnswers(4, {.comics = 60, .rowsPerKey = 20, .distinctProbs = 1}, 100, 8);
}

TEST(PredictionEquality, OfRowsThatRepeatTheirComic)
{
    expectEqualAnswers(5, {.repeatedRows = 0.1}, 200, 10);
}

TEST(PredictionEquality, OfComicsListedTwice)
{
    expectEqualAnswers(6, {.repeatedComics = 0.1}, 200, 10);
}

TEST(PredictionEquality, OfRowsForUnlistedComics)
{
    expectEqualAnswers(7, {.unlistedComics = 0.3}, 200, 10);
}

TEST(PredictionEquality, OfInfiniteAndOtherOddProbs)
{
    expectEqualAnswers(8, {.unlistedComics = 0.2, .oddProbs = 0.05}, 300, 10);
    expectEqualAnswers(9, {.greatestProb = 1e30F}, 200, 10);
}

TEST(PredictionEquality, OfKeysWithoutUsableSlices)
{
    expectEqualAnswers(10, {.oddSlices = 0.3}, 200, 10);
}

TEST(PredictionEquality, OfUnsortedDictionaries)
{
    expectEqualAnswers(11, {.sorted = false}, 200, 10);
}

TEST(PredictionEquality, OfLongQueriesWhoseScoresUnderflow)
{
    expectEqualAnswers(12, {.words = 60, .keys = 300, .rowsPerKey = 30}, 30, 6, 60);
}

TEST(PredictionEquality, OfLongNgramsThatLetComicsWithoutRowsPass)
{
    expectEqualAnswers(13, {.words = 3, .keys = 200}, 200, 10, 30);
    expectEqualAnswers(14, {.words = 3, .keys = 200, .distinctProbs = 2}, 200, 10, 30);
}

TEST(PredictionEquality, OfSlicesThatAreStoredBestFirst)
{
    expectEqualAnswers(15, {.comics = 300, .rowsPerKey = 50, .bestFirst = true}, 60, 10);
}

TEST(PredictionEquality, OfModelsTooLargeForAnIndexOfTheirComics)
{
    expectEqualAnswers(17, {.comics = 44'000, .keys = 20, .rowsPerKey = 300}, 1, 4);
}

TEST(PredictionEquality, OfSlicesWithThousandsOfRows)
{
    expectEqualAnswers(18, {.comics = 5'000, .keys = 20, .rowsPerKey = 3'000}, 2, 6);
    expectEqualAnswers(19, {.comics = 5'000, .keys = 20, .rowsPerKey = 3'000, .distinctProbs = 200}, 2, 6);
}

TEST(PredictionEquality, OfScoresThatOverflow)
{
    // 1e-12 times 1e35 three times over is infinite, which is a tie, and times a row of zero it is no number.
    ModelContent content;
    content.list({3, 1, 2, 0});
    content.add("a", {{1, 1e35F}, {2, 1e35F}, {3, 1e30F}});
    content.add("b", {{1, 1e35F}, {2, 1e35F}, {3, 1e30F}});
    content.add("c", {{1, 1e35F}, {2, 1e35F}, {3, 1e30F}});
    content.add("d", {{1, 0.0F}, {3, 0.5F}});
    expectEqualAnswers(content, {"a", "a b", "a b c", "a b c d", "d c b a", "d"});
}

TEST(PredictionEquality, OfTheRowsOfZerosMetByAnInfiniteFactor)
{
    // Comic 0 isn't listed, but the rows of zeros are comic 0: they become no number, and stay.
    ModelContent content;
    content.list({5, 6});
    content.add("a", {{0, std::numeric_limits<float>::infinity()}, {5, 0.5F}});
    expectEqualAnswers(content, {"a"});
    const auto classifier = LearnedSearchClassifier::learnedSearchClassifierWithBuffer(bufferOf(content));
    EXPECT_EQ(classifier->predict("a", 10).size(), 3U);
}

TEST(PredictionEquality, OfModelsWithNothingInThem)
{
    expectEqualAnswers(ModelContent(), {"a", "a b", "", "?"});
    expectEqualAnswers(16, {.keys = 0}, 3, 5);
    ModelContent withoutComics;
    withoutComics.add("a", {{7, 0.5F}}, 1, 1);
    expectEqualAnswers(withoutComics, {"a", "a a"});
}

} // namespace
