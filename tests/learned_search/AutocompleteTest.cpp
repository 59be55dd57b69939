#include "learned_search/LearnedSearchClassifierImpl.h"
#include "support/ModelContent.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace vole::learned_search;
using namespace vole::learned_search::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

std::vector<std::string> suggestionsOf(const std::string& query, const ModelContent& model)
{
    return LearnedSearchClassifierImpl(bufferOf(model)).getAutocompleteSuggestions(query);
}

ModelContent greetings()
{
    return ModelContent()
        .add("good", {}, 0.2F, 1)
        .add("goodness", {}, 0.9F, 0)
        .add("good|morning", {}, 0.5F, 1)
        .sortKeys();
}

/// Keys that differ in what makes them a fit ending, each as popular as it stands late.
ModelContent endings(const std::vector<float>& endWordScores)
{
    ModelContent model;
    for (const float score : endWordScores) {
        const auto place = model.keys->size();
        model.add(fmt::format("a{}", place), {}, static_cast<float>(place), score);
    }
    return model;
}

} // namespace

TEST(Autocomplete, OffersKeysThatGoOnTheMostPopularFirst)
{
    EXPECT_THAT(suggestionsOf("goo", greetings()), ElementsAre("good morning", "good"));
    EXPECT_THAT(suggestionsOf("g", greetings()), ElementsAre("good morning", "good"));
}

TEST(Autocomplete, AKeyGoesOnWithItself)
{
    EXPECT_THAT(suggestionsOf("good", greetings()), ElementsAre("good morning", "good"));
    EXPECT_THAT(suggestionsOf("good morning", greetings()), ElementsAre("good morning"));
}

TEST(Autocomplete, TakesTheQueryInItsNormalForm)
{
    EXPECT_THAT(suggestionsOf("good mor", greetings()), ElementsAre("good morning"));
    EXPECT_THAT(suggestionsOf("Good  MOR!", greetings()), ElementsAre("good morning"));
    EXPECT_THAT(suggestionsOf("\tgood\nmor ", greetings()), ElementsAre("good morning"));
    EXPECT_THAT(suggestionsOf("good ", greetings()), ElementsAre("good morning", "good")) << "a blank changes nothing";
}

TEST(Autocomplete, WithoutAWordOffersNothing)
{
    for (const char* query : {"", " ", "?!", "é", "|"}) {
        EXPECT_THAT(suggestionsOf(query, greetings()), IsEmpty()) << query;
    }
}

TEST(Autocomplete, OffersNothingForKeysShorterThanTheQuery)
{
    EXPECT_THAT(suggestionsOf("goods", greetings()), IsEmpty());
    EXPECT_THAT(suggestionsOf("good morning world", greetings()), IsEmpty());
    EXPECT_THAT(suggestionsOf("goodm", greetings()), IsEmpty()) << "the words are apart in the key";
}

TEST(Autocomplete, OffersNothingForKeysThatOnlyHoldTheQuery)
{
    EXPECT_THAT(suggestionsOf("morning", greetings()), IsEmpty());
    EXPECT_THAT(suggestionsOf("ood", greetings()), IsEmpty());
}

TEST(Autocomplete, AZeroAloneIsNoFitEnding)
{
    const ModelContent model =
        endings({0.0F, -0.5F, -0.0F, 1e-45F, notANumber, infinity, 1.0F, 0.0F}); // the file leaves out a field of 0.0

    EXPECT_THAT(suggestionsOf("a", model), ElementsAre("a6", "a5", "a4", "a3", "a1"));
}

TEST(Autocomplete, OrdersAllPopularities)
{
    const ModelContent model = ModelContent()
                                   .add("a1", {}, -0.5F, 1)
                                   .add("a2", {}, infinity, 1)
                                   .add("a3", {}, 0, 1)
                                   .add("a4", {}, -infinity, 1)
                                   .add("a5", {}, 1e-45F, 1)
                                   .add("a6", {}, 2, 1);

    EXPECT_THAT(suggestionsOf("a", model), ElementsAre("a2", "a6", "a5", "a3", "a1", "a4"));
}

TEST(Autocomplete, OffersEquallyPopularKeysInAnyOrder)
{
    const ModelContent model =
        ModelContent().add("a", {}, 1, 1).add("b", {}, 1, 1).add("bc", {}, 1, 1).add("bd", {}, 2, 1);

    const auto suggestions = suggestionsOf("b", model);

    ASSERT_THAT(suggestions, UnorderedElementsAre("b", "bc", "bd"));
    EXPECT_EQ(suggestions.front(), "bd");
}

TEST(Autocomplete, KeysOfNoPopularityAtAllDontDisturbTheOthers)
{
    ModelContent model;
    for (int key = 100; key < 200; ++key) {
        model.add(fmt::format("a{}", key), {}, key % 3 == 0 ? notANumber : static_cast<float>(key), 1);
    }

    const auto suggestions = suggestionsOf("a", model);

    ASSERT_THAT(suggestions, SizeIs(100));
    EXPECT_EQ(suggestions[0], "a199");
    EXPECT_EQ(suggestions[1], "a197");
    EXPECT_EQ(suggestions[66], "a100");
}

TEST(Autocomplete, OffersWithoutALimit)
{
    ModelContent model;
    for (int key = 0; key < 5000; ++key) {
        model.add(fmt::format("key{}", key), {}, static_cast<float>(key), 1);
    }
    model.sortKeys();

    const auto suggestions = suggestionsOf("key", model);

    ASSERT_THAT(suggestions, SizeIs(5000));
    EXPECT_EQ(suggestions.front(), "key4999");
    EXPECT_EQ(suggestions.back(), "key0");
}

TEST(Autocomplete, FindsTheKeysOfAnUnsortedDictionaryToo)
{
    const ModelContent model = ModelContent()
                                   .add("good|morning", {}, 0.5F, 1)
                                   .add("zebra", {}, 1, 1)
                                   .add("good", {}, 0.2F, 1)
                                   .add("good", {}, 0.1F, 1);

    EXPECT_THAT(suggestionsOf("goo", model), ElementsAre("good morning", "good", "good"));
    EXPECT_THAT(suggestionsOf("z", model), ElementsAre("zebra"));
}

TEST(Autocomplete, FindsKeysAroundTheEndsOfTheDictionary)
{
    const ModelContent model = ModelContent()
                                   .add("", {}, 1, 1)
                                   .add("0", {}, 2, 1)
                                   .add("longlonglong", {}, 3, 1)
                                   .add("longlonglonger", {}, 4, 1)
                                   .add("zz", {}, 5, 1)
                                   .add("z\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", {}, 6, 1);

    EXPECT_THAT(suggestionsOf("0", model), ElementsAre("0"));
    EXPECT_THAT(suggestionsOf("longlonglon", model), ElementsAre("longlonglonger", "longlonglong"));
    EXPECT_THAT(suggestionsOf("longlonglonge", model), ElementsAre("longlonglonger"));
    EXPECT_THAT(suggestionsOf("z", model), ElementsAre("z\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "zz"));
}

TEST(Autocomplete, ShowsOddKeysWithBlanksForDelimiters)
{
    EXPECT_THAT(suggestionsOf("a", ModelContent().add("a||b|", {}, 1, 1)), ElementsAre("a  b "));
}

TEST(Autocomplete, WithoutAModelOffersNothing)
{
    EXPECT_THAT(LearnedSearchClassifierImpl(nullptr).getAutocompleteSuggestions("good"), IsEmpty());
    EXPECT_THAT(suggestionsOf("good", ModelContent()), IsEmpty());
}
