#include "apps/KovalinProgram.h"
#include "apps/ModelBuilding.h"
#include "learned_search/LearnedSearchClassifier.h"

#include <QtCore/QByteArrayList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

using namespace kovalin::test;
using testing::ElementsAre;
using testing::FloatEq;
using testing::Pair;

namespace {

class KovalinModelBackoff : public testing::Test {
protected:
    QString out() const { return files.path(QStringLiteral("model.bin")); }

    /// What is made of the pairs.
    BuiltModel built(const QByteArray& pairs) const
    {
        EXPECT_EQ(buildModel(pairs, out()).exitCode, 0);
        return readModel(out());
    }

    Files files;
};

TEST_F(KovalinModelBackoff, SpreadsTheImaginedChoiceAfterARunAsItsWordsSuggest)
{
    // Comics 1, 2 and 3 have 2, 4 and 2 of 8 choices. After "red" they were chosen 2, 1 and 2 times, after "cat" 2, 3 and 0
    // times, so comic 3 lacks a word.
    const auto model = built("red cat\t1\t2\nred\t2\t1\ncat\t2\t3\nred\t3\t2\n");
    const float ofOne = std::sqrt((2 + 0.25F) / 6 * (2 + 0.25F) / 6);
    const float ofTwo = std::sqrt((1 + 0.5F) / 6 * (3 + 0.5F) / 6);
    EXPECT_THAT(model.key("red|cat").rows,
                ElementsAre(Pair(1, FloatEq(1e3F * (2 + ofOne / (ofOne + ofTwo)) / (2 + 1))),
                            Pair(2, FloatEq(1e3F * (0 + ofTwo / (ofOne + ofTwo)) / (2 + 1)))));
}

TEST_F(KovalinModelBackoff, CountsARepeatedWordOfARunOnceWhereItSuggests)
{
    // "ho" was chosen once for each of two equally popular comics.
    EXPECT_THAT(built("ho ho\t7\t1\nho\t9\t1\n").key("ho|ho").rows,
                ElementsAre(Pair(7, FloatEq(1e3F * (1 + 0.5F) / 2)), Pair(9, FloatEq(1e3F * 0.5F / 2))));
}

TEST_F(KovalinModelBackoff, PutsWhatWasNeverChosenAfterARunLastAndLimitsIt)
{
    // Comic 1 is what its words suggest least of all, and chosen after it.
    QByteArray pairs = "red cat\t1\t1\n";
    std::vector<std::int32_t> expected{1};
    for (int comic = 2; comic <= 50; ++comic) {
        const QByteArray end = '\t' + QByteArray::number(comic) + '\t' + QByteArray::number(comic) + '\n';
        pairs += "red" + end + "cat" + end;
    }
    for (int comic = 50; comic > 20; --comic) {
        expected.push_back(comic);
    }
    EXPECT_EQ(built(pairs).comicsOf("red|cat"), expected);
}

TEST_F(KovalinModelBackoff, FindsTheBestOfARunOfCommonWords)
{
    // Each word has more comics than are looked at. Comic 2500 is the best of both but for that of the run itself.
    QByteArray pairs = "red cat\t1\t1\n";
    for (int comic = 2; comic <= 3000; ++comic) {
        const QByteArray end = '\t' + QByteArray::number(comic) + (comic == 2500 ? "\t5\n" : "\t1\n");
        pairs += "red" + end + "cat" + end;
    }
    const auto comics = built(pairs).comicsOf("red|cat");
    ASSERT_EQ(comics.size(), 31U);
    EXPECT_EQ(comics[0], 1);
    EXPECT_EQ(comics[1], 2500);
    EXPECT_EQ(comics[2], 1 + 1); // of equals those that come first among the comics
}

TEST_F(KovalinModelBackoff, PredictsWhatTheWordsOfARunIndicateWithoutIt)
{
    built("red\t5\t1\ncat\t5\t1\nred cat\t7\t1\nred\t9\t1\n");
    EXPECT_THAT(classifierOn(out())->predict("red cat", 10), ElementsAre(7, 5));
}

TEST_F(KovalinModelBackoff, TellsComicsApartAfterALongQuery)
{
    // Comic 1 is the more popular one, and comic 2 was chosen more often after each run: eight words with runs of two, and ten
    // with runs of five.
    const QByteArray text = "k l m n o p q r s t";
    QByteArray pairs = "else\t1\t900\n";
    for (const QByteArray& typed : QByteArrayList{"a b", "b c", "c d", "d e", "e f", "f g", "g h", text}) {
        pairs += typed + "\t1\t40\n" + typed + "\t2\t60\n";
    }
    built(pairs);
    EXPECT_THAT(classifierOn(out())->predict("a b c d e f g h", 10), ElementsAre(2, 1));
    EXPECT_THAT(classifierOn(out())->predict(text.toStdString(), 10), ElementsAre(2, 1));
}

TEST_F(KovalinModelBackoff, FindsWhatLacksThreeWordsOfAQuery)
{
    built("red\t7\t1\ncat\t7\t1\nrun\t7\t1\none\t1\t1\ntwo\t2\t1\nsix\t6\t1\n");
    EXPECT_THAT(classifierOn(out())->predict("one red two cat six run", 10), ElementsAre(7));
}

TEST_F(KovalinModelBackoff, DoesNotDependOnTheOrderOfTheLines)
{
    // Equal counts everywhere, so that many comics are equally good, and more than get a row.
    QByteArrayList lines;
    for (int comic = 1; comic <= 200; ++comic) {
        for (const char* text : {"red cat", "red", "cat", "sun red", "cat sun"}) {
            if ((comic * 7 + text[0] + text[2]) % 5 != 0) {
                lines.append(QByteArray(text) + '\t' + QByteArray::number(comic * 37 % 211) + "\t1\n");
            }
        }
    }
    EXPECT_EQ(built(lines.join() + "red sun\t1\t1\n").comicsOf("red|sun").size(), 31U);
    const QByteArray first = contentOf(out());
    std::ranges::reverse(lines);
    built("red sun\t1\t1\n" + lines.join());
    EXPECT_TRUE(contentOf(out()) == first);
}

} // namespace
