#include "learned_search/Ngrams.h"

#include "learned_search/LearnedSearchClassifierImpl.h"
#include "learned_search/search_model_generated.h"
#include "support/GeneratedModels.h"
#include "support/PlainClassifier.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace vole::learned_search;
using namespace vole::learned_search::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

using Words = std::vector<std::string>;

constexpr std::int32_t longest = 5; // as predictions use it
constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();

/// A model with a dictionary of these keys.
ModelContent dictionary(const Words& keys)
{
    ModelContent model;
    for (const std::string& key : keys) {
        model.add(key, {});
    }
    return model.sortKeys();
}

/// The n-grams of a query in a dictionary of these keys.
Words ngramsOf(const std::string& query, const Words& keys, std::int32_t maxN = longest)
{
    const LearnedSearchClassifierImpl classifier(bufferOf(dictionary(keys)));
    return classifier.generateWordNgrams(LearnedSearchClassifierImpl::queryToPreprocessedWords(query), maxN);
}

} // namespace

TEST(Ngrams, OfUnknownWordsAreNone)
{
    EXPECT_THAT(ngramsOf("good morning", {"dog", "good|evening"}), IsEmpty());
    EXPECT_THAT(ngramsOf("good morning", {}), IsEmpty());
    EXPECT_THAT(ngramsOf("", {"dog"}), IsEmpty());
}

TEST(Ngrams, ALongOneCoversItsWords)
{
    EXPECT_THAT(ngramsOf("good morning", {"good", "morning", "good|morning"}), ElementsAre("good|morning"));
    EXPECT_THAT(ngramsOf("a b c", {"a", "b", "c", "a|b", "b|c", "a|b|c"}), ElementsAre("a|b|c"));
}

TEST(Ngrams, OfEqualLengthMayOverlap)
{
    EXPECT_THAT(ngramsOf("a b c", {"a", "b", "c", "a|b", "b|c"}), ElementsAre("a|b", "b|c"));
}

TEST(Ngrams, ComeLongestFirstAndThenFromLeftToRight)
{
    EXPECT_THAT(ngramsOf("zoo yak xenon wolf vole", {"zoo", "yak|xenon", "wolf", "vole"}),
                ElementsAre("yak|xenon", "zoo", "wolf", "vole"));
}

TEST(Ngrams, ARepeatedWordCountsOnce)
{
    EXPECT_THAT(ngramsOf("dog dog", {"dog"}), ElementsAre("dog"));
    EXPECT_THAT(ngramsOf("dog dog", {"dog", "dog|dog"}), ElementsAre("dog|dog"));
    EXPECT_THAT(ngramsOf("dog dog dog", {"dog", "dog|dog"}), ElementsAre("dog|dog"));
    EXPECT_THAT(ngramsOf("dog cat dog cat", {"dog|cat", "cat|dog"}), ElementsAre("dog|cat", "cat|dog"));
}

TEST(Ngrams, AnAcceptedOneCoversEveryPieceOfItsText)
{
    EXPECT_THAT(ngramsOf("smart phone art", {"smart|phone", "art"}), ElementsAre("smart|phone"));
    EXPECT_THAT(ngramsOf("art smart phone", {"smart|phone", "art"}), ElementsAre("smart|phone"));
    EXPECT_THAT(ngramsOf("kittens kit", {"kit", "kittens"}), ElementsAre("kittens"));
    EXPECT_THAT(ngramsOf("kit kittens", {"kit", "kittens"}), ElementsAre("kit", "kittens"))
        << "the earlier one was first";
    EXPECT_THAT(ngramsOf("bat at", {"at"}), ElementsAre("at")) << "only what is a key covers";
    EXPECT_THAT(ngramsOf("ba na bana nab", {"ba|na|bana", "a|na", "nab"}), ElementsAre("ba|na|bana", "nab"));
}

TEST(Ngrams, AreNoLongerThanAsked)
{
    const Words keys{"a|b|c|d|e|f", "a|b|c|d|e", "b|c|d|e|f", "a|b", "c"};

    EXPECT_THAT(ngramsOf("a b c d e f", keys, 5), ElementsAre("a|b|c|d|e", "b|c|d|e|f"));
    EXPECT_THAT(ngramsOf("a b c d e f", keys, 6), ElementsAre("a|b|c|d|e|f"));
    EXPECT_THAT(ngramsOf("a b c d e f", keys, 4), ElementsAre("a|b", "c"));
    EXPECT_THAT(ngramsOf("a b c d e f", keys, 2), ElementsAre("a|b", "c"));
}

TEST(Ngrams, OfALengthBeyondTheWordsAreNone)
{
    const Words keys{"good", "morning", "good|morning"};

    EXPECT_THAT(ngramsOf("good morning", keys, 3), ElementsAre("good|morning"));
    EXPECT_THAT(ngramsOf("good morning", keys, greatest), ElementsAre("good|morning"));
    EXPECT_THAT(ngramsOf("good", keys, greatest), ElementsAre("good"));
    EXPECT_THAT(ngramsOf("", keys, greatest), IsEmpty());
}

TEST(Ngrams, OfOneWordOrLessAreTheWordsAsTheyAre)
{
    const LearnedSearchClassifierImpl classifier(bufferOf(dictionary({"dog", "dog|dog"})));
    const LearnedSearchClassifierImpl withoutModel(nullptr);
    const Words words{"dog", "unknown", "dog", "", "a|b", "DOG"};
    for (const std::int32_t maxN : {1, 0, -1, least}) {
        EXPECT_EQ(classifier.generateWordNgrams(words, maxN), words) << maxN;
        EXPECT_EQ(withoutModel.generateWordNgrams(words, maxN), words) << maxN;
        EXPECT_THAT(classifier.generateWordNgrams({}, maxN), IsEmpty()) << maxN;
    }
}

TEST(Ngrams, WithoutAModelAreNone)
{
    const LearnedSearchClassifierImpl classifier(nullptr);

    EXPECT_THAT(classifier.generateWordNgrams({"dog", "dog"}, 2), IsEmpty());
    EXPECT_THAT(classifier.generateWordNgrams({"dog"}, greatest), IsEmpty());
}

TEST(Ngrams, TakeWordsOfOddContentAsTheyAre)
{
    const LearnedSearchClassifierImpl classifier(bufferOf(dictionary({"", "a", "a|", "a|b|c", "|", "||", "\xC3\xA9"})));

    EXPECT_THAT(classifier.generateWordNgrams({""}, longest), ElementsAre(""));
    EXPECT_THAT(classifier.generateWordNgrams({"", ""}, longest), ElementsAre("|"));
    EXPECT_THAT(classifier.generateWordNgrams({"a", ""}, longest), ElementsAre("a|"));
    EXPECT_THAT(classifier.generateWordNgrams({"a|b", "c"}, longest), ElementsAre("a|b|c"));
    EXPECT_THAT(classifier.generateWordNgrams({"a", "b|c", "\xC3\xA9"}, longest), ElementsAre("a|b|c", "\xC3\xA9"));
    EXPECT_THAT(classifier.generateWordNgrams({"A"}, longest), IsEmpty());
}

TEST(Ngrams, AZeroEndsTheKeyThatIsLookedUp)
{
    const LearnedSearchClassifierImpl classifier(bufferOf(dictionary({"dog"})));
    const std::string word("dog\0s", 5);

    EXPECT_THAT(classifier.generateWordNgrams({word}, longest), ElementsAre(word));
}

TEST(Ngrams, OfAnyWordsAreAsByTheBook)
{
    Random random(51);
    for (int round = 0; round < 300; ++round) {
        const ModelContent model = generateModel(random, {.words = 6, .keys = 60, .sorted = !random.chance(0.2)});
        const auto buffer = bufferOf(model);
        const LearnedSearchClassifierImpl classifier(buffer);
        const PlainClassifier plain(buffer);
        Words words = PlainClassifier::queryToPreprocessedWords(generateQuery(random, model, 9));
        const Words odd{"", "|", "a|b", std::string("a\0b", 3), "\xFF"};
        words.insert(words.begin() + static_cast<std::ptrdiff_t>(random.below(words.size() + 1)),
                     odd[random.below(odd.size())]);
        for (const std::int32_t maxN : {-1, 0, 1, 2, 3, 5, 8, 20}) {
            ASSERT_EQ(classifier.generateWordNgrams(words, maxN), plain.generateWordNgrams(words, maxN)) << maxN;
        }
    }
}

TEST(Ngrams, OfTenThousandWordsAreFound)
{
    std::string query;
    for (int word = 0; word < 9'999; ++word) {
        query += fmt::format("w{} ", word);
    }

    EXPECT_THAT(ngramsOf(query + "dog", {"dog", "w1|w2", "w9998|dog"}, longest), ElementsAre("w1|w2", "w9998|dog"));
}

TEST(Ngrams, ViewTheWordsThatTheyAreOf)
{
    const auto words = QueryWords::ofWords({"good", "morning"});

    const auto found = findNgrams(words, 2, [](std::string_view) { return true; });

    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].text.data(), words.joined().data());
    EXPECT_EQ(found[0].text, "good|morning");
}

TEST(DictionaryLookup, FindsAKeyWithItsSlice)
{
    const LearnedSearchClassifierImpl classifier(
        bufferOf(ModelContent().add("cat", {{7, 1}, {9, 1}}).add("dog", {{7, 1}})));

    ASSERT_TRUE(classifier.getEntryForWord("dog"));
    EXPECT_EQ(classifier.getEntryForWord("dog")->word()->str(), "dog");
    EXPECT_THAT(classifier.getEntriesStartIndexAndSize("cat"), Pair(0, 2));
    EXPECT_THAT(classifier.getEntriesStartIndexAndSize("dog"), Pair(2, 1));
    EXPECT_TRUE(classifier.wordExistsInDict("cat"));
}

TEST(DictionaryLookup, FindsOnlyWholeKeys)
{
    const LearnedSearchClassifierImpl classifier(bufferOf(dictionary({"dog", "dog|days"})));
    for (const char* key : {"", "d", "do", "dogs", "Dog", "dog|", "dog|day", "dog|dayss", "zebra"}) {
        EXPECT_FALSE(classifier.getEntryForWord(key)) << key;
        EXPECT_FALSE(classifier.wordExistsInDict(key)) << key;
        EXPECT_THAT(classifier.getEntriesStartIndexAndSize(key), Pair(-1, -1)) << key;
    }
}

TEST(DictionaryLookup, GivesASliceAsTheFileTellsIt)
{
    ModelContent model;
    model.keys->push_back({"bad", -7, 3, 0, 0});
    model.keys->push_back({"worse", 1 << 30, -1, 0, 0});
    const LearnedSearchClassifierImpl classifier(bufferOf(model));

    EXPECT_THAT(classifier.getEntriesStartIndexAndSize("bad"), Pair(-7, 3));
    EXPECT_THAT(classifier.getEntriesStartIndexAndSize("worse"), Pair(1 << 30, -1));
}

TEST(DictionaryLookup, WithoutAModelFindsNothing)
{
    const LearnedSearchClassifierImpl classifier(nullptr);

    EXPECT_FALSE(classifier.getEntryForWord("dog"));
    EXPECT_FALSE(classifier.wordExistsInDict("dog"));
    EXPECT_THAT(classifier.getEntriesStartIndexAndSize("dog"), Pair(-1, -1));
}
