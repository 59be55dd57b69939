#include "apps/KovalinProgram.h"
#include "apps/ModelBuilding.h"
#include "kovalin/model_build/ModelLimits.h"
#include "learned_search/LearnedSearchClassifier.h"

#include <QtCore/QByteArrayList>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace kovalin::test;
using testing::AllOf;
using testing::ElementsAre;
using testing::FloatEq;
using testing::HasSubstr;
using testing::Pair;

namespace {

const QString json = QStringLiteral("--json");
const QString minCount = QStringLiteral("--min-count");

class KovalinModelBuild : public testing::Test {
protected:
    QString out() const { return files.path(QStringLiteral("model.bin")); }

    /// What is made of the pairs.
    BuiltModel built(const QByteArray& pairs, const QStringList& more = {})
    {
        const auto result = buildModel(pairs, out(), more);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        return readModel(out());
    }

    /// Nothing is written for these pairs, and the file that was there before stays alone.
    void expectRefused(const QByteArray& pairs, const std::string& fault, const QStringList& more = {})
    {
        SCOPED_TRACE(pairs.left(60).toStdString());
        files.write(QStringLiteral("model.bin"), "old");
        const auto result = buildModel(pairs, out(), more);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors.toStdString(), "kovalin: standard input: " + fault + '\n');
        expectOldFileAlone();
    }

    void expectOldFileAlone() const
    {
        EXPECT_EQ(contentOf(out()), "old");
        EXPECT_EQ(QFileInfo(out()).dir().entryList(QDir::Files | QDir::Hidden),
                  QStringList{QStringLiteral("model.bin")});
    }

    Files files;
};

TEST_F(KovalinModelBuild, MakesAKeyOfEachRunOfOneToFiveWords)
{
    EXPECT_THAT(built("A b, C! d e f\t1\t1\n").words(),
                ElementsAre("a", "a|b", "a|b|c", "a|b|c|d", "a|b|c|d|e", "b", "b|c", "b|c|d", "b|c|d|e", "b|c|d|e|f",
                            "c", "c|d", "c|d|e", "c|d|e|f", "d", "d|e", "d|e|f", "e", "e|f", "f"));
}

TEST_F(KovalinModelBuild, OrdersKeysByteByByte)
{
    EXPECT_THAT(built("b a\t1\t1\nb0\t1\t1\nbz\t1\t1\n9\t1\t1\n").words(),
                ElementsAre("9", "a", "b", "b0", "bz", "b|a")); // "|" comes after all letters
}

TEST_F(KovalinModelBuild, MakesFactorsOfSmoothedShares)
{
    // Of 8 choices comic 7 has 5 and comic 9 has 3; of the 6 after "hi" comic 7 has 4 and comic 9 has 2. One choice more is
    // imagined, spread like all, and everything is scaled by 1 000.
    const auto model = built("hi\t7\t4\nhi\t9\t2\nho\t9\t1\nho ho\t7\t1\n");
    EXPECT_THAT(model.key("hi").rows, ElementsAre(Pair(7, FloatEq(1e3F * (4 + 5.0F / 8) / (6 + 1))),
                                                  Pair(9, FloatEq(1e3F * (2 + 3.0F / 8) / (6 + 1)))));
    EXPECT_THAT(model.key("ho").rows, ElementsAre(Pair(7, FloatEq(1e3F * (1 + 5.0F / 8) / (2 + 1))),
                                                  Pair(9, FloatEq(1e3F * (1 + 3.0F / 8) / (2 + 1)))));
    EXPECT_THAT(model.comics, ElementsAre(Pair(7, FloatEq(5.0F / 8)), Pair(9, FloatEq(3.0F / 8))));
}

TEST_F(KovalinModelBuild, AddsUpEqualLines)
{
    EXPECT_EQ(built("hi\t7\t2\nhi\t9\t2\nHI!\t7\t2\n").key("hi").rows, built("hi\t7\t4\nhi\t9\t2\n").key("hi").rows);
}

TEST_F(KovalinModelBuild, CountsAKeyOnceForATextThatRepeatsIt)
{
    const auto model = built("ho ho ho\t7\t1\nhi\t7\t3\n");
    EXPECT_THAT(model.words(), ElementsAre("hi", "ho", "ho|ho", "ho|ho|ho"));
    EXPECT_FLOAT_EQ(model.key("ho").wordPrior, 0.25F);
    EXPECT_FLOAT_EQ(model.key("ho").endWordScore, 1);
    EXPECT_FLOAT_EQ(model.key("ho|ho").wordPrior, 0.25F);
}

TEST_F(KovalinModelBuild, TellsAKeysPopularityAndHowOftenItEndsAText)
{
    const auto model = built("good morning\t7\t3\ngood\t7\t1\nnight\t9\t4\n");
    EXPECT_FLOAT_EQ(model.key("good").wordPrior, 4.0F / 8);
    EXPECT_FLOAT_EQ(model.key("good").endWordScore, 1.0F / 4);
    EXPECT_FLOAT_EQ(model.key("good|morning").wordPrior, 3.0F / 8);
    EXPECT_FLOAT_EQ(model.key("good|morning").endWordScore, 1);
    EXPECT_THAT(classifierOn(out())->getAutocompleteSuggestions("go"), ElementsAre("good", "good morning"));
}

TEST_F(KovalinModelBuild, MakesNoCompletionOfAKeyThatNeverEndsAText)
{
    const auto model = built("good morning\t7\t3\n");
    EXPECT_EQ(model.key("good").endWordScore, 0.0F);
    EXPECT_THAT(classifierOn(out())->getAutocompleteSuggestions("go"), ElementsAre("good morning"));
}

TEST_F(KovalinModelBuild, OrdersComicsByCountAndThenById)
{
    EXPECT_THAT(built("a\t5\t2\nb\t-3\t2\nc\t9\t7\nd\t2147483647\t2\ne\t-2147483648\t2\n").comicIds(),
                ElementsAre(9, std::numeric_limits<std::int32_t>::min(), -3, 5, 2147483647));
}

TEST_F(KovalinModelBuild, OrdersRowsByFactorAndThenAsTheComics)
{
    // After "a" comics 1, 2 and 3 were chosen equally often, but comic 3 more often elsewhere.
    const auto model = built("a\t1\t1\na\t2\t1\na\t3\t1\na\t4\t2\nb\t3\t5\n");
    EXPECT_THAT(model.comicIds(), ElementsAre(3, 4, 1, 2));
    EXPECT_THAT(model.comicsOf("a"), ElementsAre(4, 3, 1, 2));
}

TEST_F(KovalinModelBuild, LaysRowsOutInTheOrderOfTheKeys)
{
    std::int32_t next = 0;
    for (const auto& key : built("a b c\t1\t1\nb\t2\t1\nc d\t3\t2\n").keys) {
        EXPECT_EQ(key.start, next) << key.word;
        next += static_cast<std::int32_t>(key.rows.size());
    }
    EXPECT_EQ(next, 10);
}

TEST_F(KovalinModelBuild, LeavesRareKeysOut)
{
    const auto model = built("good morning\t7\t2\ngood night\t9\t1\nrare\t5\t2\n", {minCount, QStringLiteral("3")});
    EXPECT_THAT(model.words(), ElementsAre("good"));
    EXPECT_THAT(model.comics, ElementsAre(Pair(7, FloatEq(0.4F)), Pair(9, FloatEq(0.2F)))); // 5 has no row
    EXPECT_THAT(model.key("good").rows, ElementsAre(Pair(7, FloatEq(1e3F * (2 + 0.4F) / (3 + 1))),
                                                    Pair(9, FloatEq(1e3F * (1 + 0.2F) / (3 + 1)))));
    EXPECT_FLOAT_EQ(model.key("good").wordPrior, 0.6F);
    EXPECT_EQ(built("once\t7\t1\n").words().size(), 1U);
    expectRefused("good morning\t7\t2\n", "no key was counted 3 times", {minCount, QStringLiteral("3")});
}

TEST_F(KovalinModelBuild, KeepsTheMostChosenOfThousandsOfComics)
{
    QByteArray pairs;
    for (int comic = 1; comic <= 5000; ++comic) {
        pairs += "love\t" + QByteArray::number(comic) + (comic == 4321 ? "\t3\n" : "\t1\n");
    }
    built(pairs);
    EXPECT_THAT(classifierOn(out())->predict("love", 1), ElementsAre(4321));
    EXPECT_EQ(classifierOn(out())->predict("love", 5000).size(), 5000U);
}

TEST_F(KovalinModelBuild, PredictsWhatWasChosen)
{
    built("good morning\t7\t3\ngood night\t9\t3\nmorning run\t5\t1\n");
    EXPECT_THAT(classifierOn(out())->predict("Good morning!", 10), ElementsAre(7));
    EXPECT_THAT(classifierOn(out())->predict("run good", 10), ElementsAre(5, 7, 9));
}

TEST_F(KovalinModelBuild, DoesNotDependOnTheOrderOfTheLines)
{
    std::mt19937 random(1);
    QByteArrayList lines;
    for (int i = 0; i < 3000; ++i) {
        lines.append("w" + QByteArray::number(static_cast<int>(random() % 50)) + " w" +
                     QByteArray::number(static_cast<int>(random() % 50)) + '\t' +
                     QByteArray::number(static_cast<int>(random() % 40)) + '\t' +
                     QByteArray::number(1 + static_cast<int>(random() % 3)) + '\n');
    }
    built(lines.join());
    const QByteArray first = contentOf(out());
    for (int round = 0; round < 3; ++round) {
        for (qsizetype i = lines.size() - 1; i > 0; --i) {
            lines.swapItemsAt(i, static_cast<qsizetype>(random() % static_cast<unsigned>(i + 1)));
        }
        built(lines.join());
        EXPECT_TRUE(contentOf(out()) == first);
    }
}

TEST_F(KovalinModelBuild, ReadsLinesOfBothKindsAndALastOneWithoutEnd)
{
    const auto model = built("a\t1\t1\r\nb\t2\t1\nc\t3\t1");
    EXPECT_THAT(model.words(), ElementsAre("a", "b", "c"));
    EXPECT_EQ(built("c\t3\t1\r\nb\t2\t1\na\t1\t1\r\n").words(), model.words());
}

TEST_F(KovalinModelBuild, ReadsAFile)
{
    const auto result =
        runKovalin({QStringLiteral("model"), QStringLiteral("build"), QStringLiteral("--pairs"),
                    files.write(QStringLiteral("pairs.tsv"), "hi\t7\t1\n"), QStringLiteral("--out"), out()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(readModel(out()).words(), ElementsAre("hi"));
}

TEST_F(KovalinModelBuild, ReadsLinesAcrossItsBuffer)
{
    QByteArray pairs;
    for (int i = 0; i < 30; ++i) {
        pairs += QByteArray(10'007, ' ') + "word" + QByteArray::number(i) + "\t1\t1\n";
    }
    EXPECT_EQ(built(pairs).keys.size(), 30U);
}

TEST_F(KovalinModelBuild, SkipsTextsWithoutAWordAndTellsSo)
{
    const auto result =
        buildModel("hi\t7\t2\n\t7\t1\n!?\t8\t5\n\xF0\x9F\x98\x80\t9\t1\nhi there\t7\t1\n", out(), {json});
    ASSERT_EQ(result.objects().size(), 1);
    const auto bytes = QFileInfo(out()).size();
    EXPECT_EQ(result.output.toStdString(),
              R"({"keys":3,"comics":1,"rows":3,"bytes":)" + std::to_string(bytes) + ",\"skipped_texts\":3}\n");
    EXPECT_THAT(readModel(out()).comics, ElementsAre(Pair(7, FloatEq(1)))); // skipped counts count nowhere
}

TEST_F(KovalinModelBuild, TellsPeopleWhatItMade)
{
    const auto result = buildModel("hi\t7\t2\n!\t7\t1\n", out());
    EXPECT_EQ(result.output.toStdString(),
              "keys: 1, comics: 1, rows: 1, bytes: " + std::to_string(QFileInfo(out()).size()) +
                  ", texts skipped for having no word: 1\n");
    EXPECT_EQ(result.errors, ""); // no terminal, no progress
}

TEST_F(KovalinModelBuild, NamesTheLineThatIsNoPair)
{
    const std::string fields = "must have three fields, text, comic id and count, with a tab between them";
    const std::string id = "the comic id is no 32-bit signed integer";
    const std::string count = "the count is no positive integer";
    const std::vector<std::pair<QByteArray, std::string>> faulty{
        {"", fields},
        {"\r", fields},
        {"hi", fields},
        {"hi\t1", fields},
        {"hi\t1\t1\t", fields},
        {"hi\t1\t1\t1", fields},
        {"hi 1 1", fields},
        {"hi\t\t1", id},
        {"hi\tx\t1", id},
        {"hi\t1x\t1", id},
        {"hi\t 1\t1", id},
        {"hi\t+1\t1", id},
        {"hi\t1.0\t1", id},
        {"hi\t2147483648\t1", id},
        {"hi\t-2147483649\t1", id},
        {"hi\t1\t", count},
        {"hi\t1\t0", count},
        {"hi\t1\t-1", count},
        {"hi\t1\t-9223372036854775809", count},
        {"hi\t1\t1.5", count},
        {"hi\t1\t1 ", count},
        {"hi\t1\tmany", count},
        {"!\t1\t0", count},
        {"hi\t1\t9223372036854775808", "the count is too large"},
        {"hi\t1\t9223372036854775807", "the counts add up to more than 9223372036854775807"},
        {QByteArray(2'000'000, 'a'), "is longer than 1048576 bytes"},
    };
    for (const auto& [line, fault] : faulty) {
        expectRefused("good\t1\t1\n" + line + "\nnever read\n", "line 2: " + fault);
    }
}

TEST_F(KovalinModelBuild, TakesTheGreatestCounts)
{
    const auto model = built("hi\t7\t9223372036854775806\nho\t9\t1\n!\t7\t9223372036854775807\n");
    EXPECT_THAT(model.key("ho").rows, ElementsAre(Pair(9, FloatEq(500))));
    EXPECT_GT(model.key("ho").wordPrior, 0.0F);
    EXPECT_GT(model.comics[1].second, 0.0F);
}

TEST_F(KovalinModelBuild, RefusesPairsThatTeachNothing)
{
    expectRefused("", "is empty");
    expectRefused("!\t1\t1\n", "no text has a word to learn");
}

TEST_F(KovalinModelBuild, NamesAPairsFileThatCannotBeRead)
{
    const auto expectFault = [this](const QString& path, const std::string& fault) {
        const auto result = runKovalin({QStringLiteral("model"), QStringLiteral("build"), QStringLiteral("--pairs"),
                                        path, QStringLiteral("--out"), out()});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.errors.toStdString(), "kovalin: " + path.toStdString() + ": " + fault + '\n');
        EXPECT_FALSE(QFileInfo::exists(out()));
    };
    expectFault(files.path(QStringLiteral("absent.tsv")), "No such file or directory");
    expectFault(QDir::tempPath(), "Is a directory");
}

TEST_F(KovalinModelBuild, NamesAModelFileThatCannotBeWritten)
{
    const auto expectFault = [](const QString& path, const std::string& fault) {
        const auto result = buildModel("hi\t7\t1\n", path);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors.toStdString(), "kovalin: " + path.toStdString() + ": " + fault + '\n');
    };
    expectFault(files.path(QStringLiteral("absent/model.bin")), "No such file or directory");
    expectFault(files.write(QStringLiteral("file"), "") + QStringLiteral("/model.bin"), "Not a directory");
    expectFault(QDir::tempPath(), "Is a directory");
    expectFault(QStringLiteral("/dev/null"), "is no regular file");
    expectFault(QString(), "No such file or directory");
}

TEST_F(KovalinModelBuild, KeepsTheOldFileWhenWritingFails)
{
    files.write(QStringLiteral("model.bin"), "old");
    const auto result = runShell(QStringLiteral("trap '' XFSZ; ulimit -f 1; seq 1 500 | sed 's/$/\\t7\\t1/' | "
                                                "$KOVALIN model build --pairs - --out '%1'")
                                     .arg(out()));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors.toStdString(), "kovalin: " + out().toStdString() + ": File too large\n");
    expectOldFileAlone();
}

TEST_F(KovalinModelBuild, ReplacesAFileAndKeepsItsPermissionsAndLinks)
{
    QFile file(files.write(QStringLiteral("target.bin"), "old"));
    const auto permissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
    ASSERT_TRUE(file.setPermissions(permissions));
    ASSERT_TRUE(QFile::link(file.fileName(), out()));
    EXPECT_THAT(built("hi\t7\t1\n").words(), ElementsAre("hi"));
    EXPECT_TRUE(QFileInfo(out()).isSymLink());
    EXPECT_EQ(QFileInfo(file).permissions() & ~QFile::Permissions(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser),
              permissions);
    EXPECT_THAT(readModel(file.fileName()).words(), ElementsAre("hi"));
}

/// Texts with so many keys: runs of one to five words, none of them in two texts.
QByteArray pairsWithKeys(const std::vector<int>& wordsOfTexts)
{
    QByteArray pairs;
    int word = 0;
    for (const int words : wordsOfTexts) {
        for (int i = 0; i < words; ++i) {
            pairs += QByteArray::number(++word, 36) + ' ';
        }
        pairs += "\t7\t1\n";
    }
    return pairs;
}

TEST_F(KovalinModelBuild, FillsAModelToItsLimitAndNotBeyond)
{
    // A text of n different words has 5 n - 10 keys, from four words on.
    const QByteArray full = pairsWithKeys({50'000, 50'000, 50'000, 50'000, 9, 2});
    const auto result = buildModel(full, out(), {json});
    ASSERT_EQ(result.objects().size(), 1);
    EXPECT_EQ(result.objects()[0][u"keys"].toInt(), 999'998);
    EXPECT_TRUE(classifierOn(out())->modelIsInitialized());
    expectRefused(full + "another\t7\t2\n",
                  "999999 keys and 1 comics are more than the 999999 that a model can hold together; leave rare keys "
                  "out with --min-count");
}

TEST(KovalinModelLimits, HoldForRowsAndBytesToo)
{
    using kovalin::cli::limitFault;
    EXPECT_EQ(limitFault({1, 1, 200'000'000, 1}), "");
    EXPECT_EQ(
        limitFault({1, 1, 2'147'483'648, 1}),
        "2147483648 rows are more than the 2147483647 that a model can hold; leave rare keys out with --min-count");
    EXPECT_THAT(limitFault({1, 1, 270'000'000, 1}),
                AllOf(HasSubstr("bytes is too large, it must stay under 2147483647; leave"), HasSubstr("--min-count")));
    EXPECT_NE(limitFault({100'000, 1, 200'000'000, 600'000'000}), "");
}

TEST_F(KovalinModelBuild, EstimatesTheSizeOfAFileFromAboveAndClosely)
{
    const auto result = buildModel(pairsWithKeys({1000, 3}), out(), {json});
    ASSERT_EQ(result.objects().size(), 1);
    const auto summary = result.objects()[0];
    std::uint64_t keyBytes = 0;
    for (const auto& key : readModel(out()).keys) {
        keyBytes += key.word.size();
    }
    const auto estimate = kovalin::cli::mostFileBytes({static_cast<std::uint64_t>(summary[u"keys"].toInt()),
                                                       static_cast<std::uint64_t>(summary[u"comics"].toInt()),
                                                       static_cast<std::uint64_t>(summary[u"rows"].toInt()), keyBytes});
    const auto bytes = static_cast<std::uint64_t>(summary[u"bytes"].toInt());
    EXPECT_GE(estimate, bytes);
    EXPECT_LE(estimate, bytes + bytes / 5);
}

TEST_F(KovalinModelBuild, WantsItsArguments)
{
    const auto expectUsageError = [](const QStringList& arguments, const std::string& message) {
        const auto result = runKovalin(QStringList{QStringLiteral("model"), QStringLiteral("build")} + arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_THAT(result.errors.toStdString(), HasSubstr(message));
    };
    expectUsageError({QStringLiteral("--out"), out()}, "--pairs");
    expectUsageError({QStringLiteral("--pairs"), QStringLiteral("-")}, "--out");
    for (const char16_t* count : {u"0", u"-1", u"many", u"1.5", u"9223372036854775808"}) {
        expectUsageError({QStringLiteral("--pairs"), QStringLiteral("-"), QStringLiteral("--out"), out(), minCount,
                          QString::fromUtf16(count)},
                         "--min-count");
    }
    EXPECT_FALSE(QFileInfo::exists(out()));
}

} // namespace
