#include "learned_search/LearnedSearchClassifierImpl.h"
#include "support/ModelContent.h"
#include "support/PlainClassifier.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <stdexcept>

using namespace vole::learned_search;
using namespace vole::learned_search::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

using Comics = std::vector<std::int32_t>;

constexpr std::int32_t all = 1000;
constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

Comics predict(const ModelContent& model, const std::string& query, std::int32_t topN = all)
{
    return LearnedSearchClassifierImpl(bufferOf(model)).predict(query, topN);
}

/// The prediction, which must be the one by the book.
Comics predictByTheBook(const ModelContent& model, const std::string& query, std::int32_t topN = all)
{
    const auto buffer = bufferOf(model);
    const Comics comics = LearnedSearchClassifierImpl(buffer).predict(query, topN);
    EXPECT_EQ(comics, PlainClassifier(buffer).predict(query, topN)) << "of " << query << ", top " << topN;
    return comics;
}

/// A model of comics 7, 9, 11 in which each has its own word.
ModelContent threeAnimals()
{
    return ModelContent().list({7, 9, 11}).add("cat", {{7, 0.9F}}).add("dog", {{9, 0.8F}}).add("emu", {{11, 0.7F}});
}

/// A model of comic 7 with one row for "cat", and of a key "dog" whose slice is told by a test.
ModelContent modelWithSlice(std::int32_t start, std::int32_t count)
{
    ModelContent model = ModelContent().list({7}).add("cat", {{7, 0.9F}});
    model.keys->push_back({"dog", start, count, 0, 1});
    return model;
}

} // namespace

TEST(Prediction, KeepsComicsAboveTheFilterOnly)
{
    EXPECT_THAT(predictByTheBook(ModelContent().list({7, 9}).add("dog", {{7, 0.5F}, {9, 0.0005F}}), "dog"),
                ElementsAre(7));
    EXPECT_THAT(predictByTheBook(ModelContent().list({7, 9}).add("dog", {{7, 0.0011F}, {9, 0.00099F}}), "dog"),
                ElementsAre(7));
    predictByTheBook(ModelContent().list({7}).add("dog", {{7, 0.001F}}), "dog"); // by rounding alone
}

TEST(Prediction, OrdersComicsByFallingScore)
{
    const ModelContent model =
        ModelContent().list({1, 2, 3, 4}).add("dog", {{1, 0.3F}, {2, 0.9F}, {3, 0.1F}, {4, 0.5F}});

    EXPECT_THAT(predictByTheBook(model, "dog"), ElementsAre(2, 4, 1, 3));
}

TEST(Prediction, GivesAtMostTopNAndAllOfThemIfThereAreFewer)
{
    const ModelContent model = ModelContent().list({1, 2, 3}).add("dog", {{1, 0.3F}, {2, 0.9F}, {3, 0.1F}});

    EXPECT_THAT(predictByTheBook(model, "dog", 0), IsEmpty());
    EXPECT_THAT(predictByTheBook(model, "dog", 1), ElementsAre(2));
    EXPECT_THAT(predictByTheBook(model, "dog", 2), ElementsAre(2, 1));
    EXPECT_THAT(predictByTheBook(model, "dog", 3), ElementsAre(2, 1, 3));
    EXPECT_THAT(predictByTheBook(model, "dog", 4), ElementsAre(2, 1, 3));
    EXPECT_THAT(predictByTheBook(model, "dog", greatest), ElementsAre(2, 1, 3));
}

TEST(Prediction, ALaterComicOfEqualScoreDoesntDisplaceAnEarlierOne)
{
    const ModelContent model = ModelContent().list({7, 9}).add("dog", {{9, 0.5F}, {7, 0.5F}});

    EXPECT_THAT(predictByTheBook(model, "dog", 1), ElementsAre(7));
    EXPECT_THAT(predictByTheBook(model, "dog", 2), UnorderedElementsAre(7, 9));
    EXPECT_THAT(predictByTheBook(ModelContent().list({9, 7}).add("dog", {{7, 0.5F}, {9, 0.5F}}), "dog", 1),
                ElementsAre(9));
}

TEST(Prediction, EqualScoresComeAsThePartialSortLeavesThem)
{
    Comics comics(30);
    std::iota(comics.begin(), comics.end(), 100);
    std::vector<ModelContent::Row> rows;
    for (const std::int32_t comic : comics) {
        rows.push_back({comic, comic % 3 == 0 ? 0.9F : 0.5F});
    }
    const ModelContent model = ModelContent().list(comics).add("dog", rows);
    for (std::int32_t topN = 0; topN <= 31; ++topN) {
        EXPECT_EQ(predictByTheBook(model, "dog", topN).size(), static_cast<std::size_t>(std::min(topN, 30)));
    }
}

TEST(Prediction, AWordThatRepeatsCountsOnce)
{
    const ModelContent model = threeAnimals();

    EXPECT_EQ(predictByTheBook(model, "dog dog DOG"), predict(model, "dog"));
    EXPECT_THAT(predict(model, "dog dog"), ElementsAre(9));
}

TEST(Prediction, OfSeveralWordsGivesWhatHasARowForAny)
{
    EXPECT_THAT(predictByTheBook(threeAnimals(), "emu cat"), ElementsAre(7, 11));
    EXPECT_THAT(predictByTheBook(threeAnimals(), "emu unknown"), ElementsAre(11));
}

TEST(Prediction, OfUnknownWordsIsEmpty)
{
    EXPECT_THAT(predictByTheBook(threeAnimals(), "zebra"), IsEmpty());
    EXPECT_THAT(predictByTheBook(threeAnimals(), "ca dogs"), IsEmpty());
}

TEST(Prediction, WithoutAWordIsEmpty)
{
    for (const char* query : {"", "  ", "?!", "é"}) {
        EXPECT_THAT(predictByTheBook(threeAnimals(), query), IsEmpty()) << query;
    }
}

TEST(Prediction, NeverGivesAComicThatIsntListed)
{
    const ModelContent model = ModelContent().list({7}).add("dog", {{7, 0.5F}, {9, 0.9F}, {0, 0.9F}, {-1, 0.9F}});

    EXPECT_THAT(predictByTheBook(model, "dog"), ElementsAre(7));
    EXPECT_THAT(predictByTheBook(ModelContent().add("dog", {{7, 0.5F}}), "dog"), IsEmpty());
}

TEST(Prediction, GivesAComicAsOftenAsItIsListed)
{
    EXPECT_THAT(predictByTheBook(ModelContent().list({7, 9, 7}).add("dog", {{7, 0.5F}, {9, 0.9F}}), "dog"),
                ElementsAre(9, 7, 7));
}

TEST(Prediction, TakesAnyNumberForAComic)
{
    const ModelContent model = ModelContent()
                                   .list({0, -1, greatest, least})
                                   .add("dog", {{least, 0.6F}, {greatest, 0.7F}, {-1, 0.8F}, {0, 0.9F}});

    EXPECT_THAT(predictByTheBook(model, "dog"), ElementsAre(0, -1, greatest, least));
}

TEST(Prediction, TheLastRowOfAComicInASliceWins)
{
    const ModelContent model = ModelContent().list({7, 9}).add("dog", {{7, 0.9F}, {9, 0.5F}, {7, 0.0001F}});

    EXPECT_THAT(predictByTheBook(model, "dog"), ElementsAre(9));
}

TEST(Prediction, AProbOfZeroIsHarsherThanAMissingRow)
{
    const ModelContent model = ModelContent().list({7, 9}).add("cat", {{7, 0.9F}, {9, 0.8F}}).add("dog", {{7, 0.0F}});

    EXPECT_THAT(predictByTheBook(model, "cat dog"), ElementsAre(9));
}

TEST(Prediction, TheWeightOfALongNgramLiftsComicsAboveTheFilter)
{
    const struct {
        const char* key;
        const char* query;
        float weight;
    } ngrams[] = {{"a", "a", 1},
                  {"a|b", "a b", 10001},
                  {"a|b|c", "a b c", 20001},
                  {"a|b|c|d", "a b c d", 30001},
                  {"a|b|c|d|e", "a b c d e", 40001}};
    for (const auto& ngram : ngrams) {
        const ModelContent model =
            ModelContent().list({7, 9}).add(ngram.key, {{7, 0.00101F / ngram.weight}, {9, 0.00099F / ngram.weight}});
        EXPECT_THAT(predictByTheBook(model, ngram.query), ElementsAre(7));
    }
}

TEST(Prediction, TheWeightOfALongNgramLiftsAllComicsAlike)
{
    const ModelContent model = ModelContent().list({7, 9}).add("cat|dog", {{7, 0.002F}}).add("emu", {{9, 0.003F}});

    EXPECT_THAT(predictByTheBook(model, "emu cat dog"), ElementsAre(9, 7));
}

TEST(Prediction, AKeyWithoutRowsCountsAsMissingForAllComics)
{
    ModelContent model = ModelContent().list({7, 9}).add("cat", {{7, 0.9F}, {9, 0.002F}}).add("dog", {});

    EXPECT_THAT(predictByTheBook(model, "dog"), IsEmpty());
    EXPECT_THAT(predictByTheBook(model, "cat dog"), ElementsAre(7, 9));
    model.keys->back().count = -3;
    EXPECT_THAT(predictByTheBook(model, "cat dog"), ElementsAre(7, 9));
    model.keys->back().count = least;
    EXPECT_THAT(predictByTheBook(model, "dog"), IsEmpty());
}

TEST(Prediction, ASliceWithANegativeStartCountsAsNotFoundButCovers)
{
    ModelContent model = ModelContent().list({7}).add("cat", {{7, 0.9F}});
    model.keys->push_back({"cat|dog", -1, 1, 0, 0});

    EXPECT_THAT(predictByTheBook(model, "cat"), ElementsAre(7));
    EXPECT_THAT(predictByTheBook(model, "cat dog"), IsEmpty());
}

TEST(Prediction, ScoresThatUnderflowGo)
{
    EXPECT_THAT(predictByTheBook(ModelContent()
                                     .list({1, 2, 3, 4, 5})
                                     .add("a", {{1, 0.9F}})
                                     .add("b", {{2, 0.9F}})
                                     .add("c", {{3, 0.9F}})
                                     .add("d", {{4, 0.9F}})
                                     .add("e", {{5, 0.9F}}),
                                 "a b c d e"),
                IsEmpty());
}

TEST(Prediction, AScoreStaysAboveABoundThatUnderflows)
{
    ModelContent model = ModelContent().list({7, 9});
    std::string query;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        for (char second = 'a'; second <= 'b'; ++second) {
            const std::string word{letter, second};
            model.add(word, {{7, 0.9F}});
            query += word + ' ';
        }
    }

    EXPECT_THAT(predictByTheBook(model, query), ElementsAre(7)) << "of 52 words, whose bound is zero";
}

TEST(Prediction, TwoLongNgramsLetComicsWithoutRowsPass)
{
    const ModelContent model =
        ModelContent().list({1, 2, 3}).add("a|b|c|d|e", {{2, 0.5F}}).add("f|g|h|i|j", {{3, 0.4F}});

    EXPECT_THAT(predictByTheBook(model, "a b c d e f g h i j"), ElementsAre(2, 3, 1));
    EXPECT_THAT(predictByTheBook(model, "a b c d e"), ElementsAre(2));
}

TEST(Prediction, TakesInfiniteAndOtherOddProbsAsTheyMultiply)
{
    for (const float prob : {infinity, -infinity, notANumber, -0.5F, -0.0F, 1e38F, 1e-45F}) {
        for (const Comics& comics : {Comics{7, 9}, Comics{0, 5}, Comics{5, 0}, Comics{9, 7, 9}}) {
            SCOPED_TRACE(testing::Message() << prob << " for " << testing::PrintToString(comics));
            const ModelContent model =
                ModelContent().list(comics).add("cat", {{comics[0], prob}}).add("dog", {{7, 0.9F}, {0, prob}});
            for (const char* query : {"cat", "dog", "cat dog"}) {
                for (const std::int32_t topN : {0, 1, 2, 3, 1000}) {
                    predictByTheBook(model, query, topN);
                }
            }
        }
    }
}

TEST(Prediction, AnInfiniteFactorOfComicZeroBringsItsZeroRowsToLight)
{
    EXPECT_THAT(predictByTheBook(ModelContent().list({0, 5}).add("dog", {{0, infinity}}), "dog"), ElementsAre(0, 0, 0));
}

TEST(Prediction, AnswersALongQuery)
{
    std::string query;
    for (int word = 0; word < 10'000; ++word) {
        query += fmt::format("w{} ", word);
    }

    EXPECT_THAT(predict(threeAnimals(), query + "dog"), ElementsAre(9));
}

TEST(PredictionTopN, ANegativeOneIsALengthError)
{
    const LearnedSearchClassifierImpl classifier(bufferOf(threeAnimals()));
    for (const std::int32_t topN : {-1, -1000, least}) {
        EXPECT_THROW(static_cast<void>(classifier.predict("dog", topN)), std::length_error);
        EXPECT_THROW(static_cast<void>(classifier.predict("unknown", topN)), std::length_error) << "of nothing too";
    }
    EXPECT_THAT(classifier.predict("dog", 1), ElementsAre(9)) << "and all goes on";
}

TEST(PredictionTopN, IsntLookedAtWithoutWordsOrModel)
{
    EXPECT_THAT(predict(threeAnimals(), "", -1), IsEmpty());
    EXPECT_THAT(predict(threeAnimals(), "?!", least), IsEmpty());
    EXPECT_THAT(LearnedSearchClassifierImpl(nullptr).predict("dog", -1), IsEmpty());
}

TEST(PredictionOfBrokenSlices, AnswersWhatDoesntTouchThem)
{
    const LearnedSearchClassifierImpl classifier(bufferOf(modelWithSlice(5, greatest)));

    EXPECT_THAT(classifier.predict("cat", all), ElementsAre(7));
    EXPECT_THAT(classifier.predict("cat dogs", all), ElementsAre(7));
    EXPECT_THAT(classifier.getAutocompleteSuggestions("dog"), ElementsAre("dog")) << "rows aren't read for suggestions";
}

// A clean stop, in every build type, beats reading what lies behind the model.
TEST(PredictionOfBrokenSlicesDeathTest, StopsTheProgramAtARowOutsideOfTheModel)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const struct {
        const char* name;
        std::int32_t start;
        std::int32_t count;
    } slices[] = {
        {"one row too many", 0, 2},
        {"first row behind the last", 1, 1},
        {"more rows than there are numbers", 5, greatest},
        {"all rows, and all that there could be", 0, greatest},
        {"as far behind as can be", greatest, 1},
        {"as far behind as can be, as many as can be", greatest, greatest},
    };
    for (const auto& slice : slices) {
        SCOPED_TRACE(slice.name);
        EXPECT_DEATH(static_cast<void>(predict(modelWithSlice(slice.start, slice.count), "dog")),
                     HasSubstr("i < size()"));
    }
}

TEST(PredictionOfBrokenSlicesDeathTest, StopsTheProgramWhereThereAreNoRowsAtAll)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    ModelContent model = modelWithSlice(0, 1);
    model.rows->clear();

    EXPECT_DEATH(static_cast<void>(predict(model, "dog")), HasSubstr("i < size()"));
}

TEST(PredictionOfBrokenSlicesDeathTest, StopsTheProgramForTopNoneToo)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_DEATH(static_cast<void>(predict(modelWithSlice(0, 2), "dog", 0)), HasSubstr("i < size()"));
    EXPECT_DEATH(static_cast<void>(predict(modelWithSlice(0, 2), "dog cat unknown", -1)), HasSubstr("i < size()"));
}
