// Predictions whose order hangs on the last bit of a score. The same test runs over the library as it is built, and over one
// whose compiler was asked to take liberties with float arithmetic.
#include "learned_search/LearnedSearchClassifier.h"
#include "support/ModelContent.h"

#include <gtest/gtest.h>

using namespace vole::learned_search;
using namespace vole::learned_search::test;

namespace {

using Comics = std::vector<std::int32_t>;

// Comic 2 always has the slightly greater factor. Where the scores are equal, the comics stay in the model's order, 1 and 2.
const Comics equalScores{1, 2};
const Comics differentScores{2, 1};

/// What a query gives where one key has these factors and another has the same one for both comics.
Comics predict(const std::string& query, const std::string& key, float ofComic1, float ofComic2,
               float ofBothForOtherKey = 0.7F)
{
    ModelContent content;
    content.list({1, 2}).add(key, {{1, ofComic1}, {2, ofComic2}});
    content.add("other", {{1, ofBothForOtherKey}, {2, ofBothForOtherKey}}).sortKeys();
    return LearnedSearchClassifier::learnedSearchClassifierWithBuffer(bufferOf(content))->predict(query, 10);
}

TEST(ExactArithmetic, MultipliesTheWeightIntoTheFactorBeforeTheScore)
{
    // Equal only if 10001 times the factor is rounded first; equal only if 10001 times the score is.
    EXPECT_EQ(predict("good morning", "good|morning", 0x1.7d6e7cp-2F, 0x1.7d6e7ep-2F), equalScores);
    EXPECT_EQ(predict("good morning", "good|morning", 0x1.7d6e7ep-2F, 0x1.7d6e8p-2F), differentScores);
    EXPECT_EQ(predict("a b c", "a|b|c", 0x1.7d735ep-2F, 0x1.7d736p-2F), equalScores);
    EXPECT_EQ(predict("a b c", "a|b|c", 0x1.7d736p-2F, 0x1.7d7362p-2F), differentScores);
}

TEST(ExactArithmetic, RoundsTheScoreAfterEachNgram)
{
    // With scores kept in double precision between two n-grams it would be the other way round.
    EXPECT_EQ(predict("word other", "word", 0.324819833F, 0.324819863F), equalScores);
    EXPECT_EQ(predict("word other", "word", 0.324819803F, 0.324819833F), differentScores);
}

} // namespace
