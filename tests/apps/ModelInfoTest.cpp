#include "apps/KovalinProgram.h"
#include "apps/ModelWriting.h"
#include "support/GeneratedModels.h"

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace kovalin::test;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using namespace vole::learned_search::test;

namespace {

const QString json = QStringLiteral("--json");
const QString top = QStringLiteral("--top");
constexpr auto noNumber = std::numeric_limits<float>::quiet_NaN();
constexpr auto infinite = std::numeric_limits<float>::infinity();

ProgramResult info(const QString& path, const QStringList& more = {})
{
    return runKovalin(QStringList{QStringLiteral("model"), QStringLiteral("info"), path} + more);
}

struct Finding {
    const char16_t* name;
    int count;
    const char16_t* example;
};

/// Changes a word of four bytes somewhere. What was aligned stays so: the format doesn't ask for it, but sanitizers do.
void damageWord(QByteArray& bytes, Random& random)
{
    const std::size_t at = random.below(static_cast<std::size_t>(bytes.size()) / 4) * 4;
    for (std::size_t i = 0; i < 4; ++i) {
        const auto kept = i % 2 == 0 ? 0x03U : 0x00U; // offsets are of two or four bytes
        char& byte = bytes[static_cast<qsizetype>(at + i)];
        byte = static_cast<char>(static_cast<unsigned>(byte) ^ (random.below(256) & ~kept));
    }
}

class KovalinModelInfo : public testing::Test {
protected:
    QJsonObject factsOf(const ModelContent& model, const QStringList& more = {})
    {
        const auto result = info(writeModel(files, model), QStringList{json} + more);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(result.objects().size(), 1);
        return result.objects().value(0);
    }

    void expectFindings(const ModelContent& model, const QList<Finding>& findings)
    {
        QJsonArray wanted;
        for (const auto& finding : findings) {
            wanted.append(QJsonObject{{QStringLiteral("name"), QString::fromUtf16(finding.name)},
                                      {QStringLiteral("count"), finding.count},
                                      {QStringLiteral("example"), QString::fromUtf16(finding.example)}});
        }
        EXPECT_EQ(factsOf(model)[u"invariants"], wanted);
    }

    void expectFinding(const ModelContent& model, const char16_t* name, int count, const char16_t* example)
    {
        expectFindings(model, {{name, count, example}});
    }

    Files files;
};

TEST_F(KovalinModelInfo, PrintsOneCompactObject)
{
    const QString path = writeModel(files, smallModel());
    const auto result = info(path, {json, top, QStringLiteral("2")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    const auto wanted = QStringLiteral("{\"file\":\"%1\",\"size\":%2,\"tables\":8,\"table_limit\":1000000,\"depth\":2,"
                                       "\"comics\":3,\"keys\":4,"
                                       "\"keys_by_words\":{\"1\":3,\"2\":1,\"3\":0,\"4\":0,\"5\":0,\"more\":0},"
                                       "\"suggested_keys\":3,\"rows\":9,\"rows_of_a_key\":{\"median\":2.5,\"most\":3},"
                                       "\"popular_keys\":[{\"key\":\"goodness\",\"word_prior\":0.75},"
                                       "{\"key\":\"good morning\",\"word_prior\":0.5}],\"invariants\":[]}\n")
                            .arg(path)
                            .arg(QFileInfo(path).size());
    EXPECT_EQ(result.output.toStdString(), wanted.toStdString());
}

TEST_F(KovalinModelInfo, ShowsPeopleAlignedText)
{
    const QString path = writeModel(files, smallModel());
    const auto wanted = QStringLiteral("%1\n\n"
                                       "  Size          %2 bytes\n"
                                       "  Tables        8 of at most 1000000, depth 2\n"
                                       "  Comics        3\n"
                                       "  Keys          4\n"
                                       "    of 1 word   3\n"
                                       "    of 2 words  1\n"
                                       "    of 3 words  0\n"
                                       "    of 4 words  0\n"
                                       "    of 5 words  0\n"
                                       "    of more     0\n"
                                       "    suggested   3\n"
                                       "  Rows          9\n"
                                       "    of a key    median 2.5, at most 3\n"
                                       "  Invariants    all hold\n\n"
                                       "  Popular key   Prior\n"
                                       "  goodness       0.75\n"
                                       "  good morning    0.5\n"
                                       "  good           0.25\n"
                                       "  tie           0.125\n\n")
                            .arg(path)
                            .arg(QFileInfo(path).size());
    EXPECT_EQ(info(path).output.toStdString(), wanted.toStdString());
}

TEST_F(KovalinModelInfo, ShowsPeopleWhatDoesNotHold)
{
    ModelContent model = smallModel();
    model.comics->push_back(9);
    model.rows->front().prob = -1;
    EXPECT_THAT(info(writeModel(files, model)).output.toStdString(),
                AllOf(HasSubstr("\n  Doesn't hold                   Count  First\n"
                                "  probs are positive and finite      1  row 0: comic 7, prob -1\n"
                                "  no comic is listed twice           1  comic 9\n"),
                      Not(HasSubstr("all hold"))));
}

TEST_F(KovalinModelInfo, TellsOfAnEmptyModelAndOfOneWithNothingInIt)
{
    const auto empty = factsOf(ModelContent());
    EXPECT_EQ(empty[u"tables"], 1);
    EXPECT_EQ(empty[u"depth"], 1);
    EXPECT_EQ(empty[u"rows_of_a_key"], (QJsonObject{{QStringLiteral("median"), 0}, {QStringLiteral("most"), 0}}));
    EXPECT_EQ(empty[u"popular_keys"], QJsonArray());
    EXPECT_EQ(empty[u"invariants"], QJsonArray());

    ModelContent bare;
    bare.comics.reset();
    bare.keys.reset();
    bare.rows.reset();
    expectFinding(bare, u"vectors-present", 3, u"comicProbs");
    EXPECT_EQ(info(writeModel(files, bare)).exitCode, 0);
}

TEST_F(KovalinModelInfo, CountsKeysByTheirWords)
{
    ModelContent model;
    for (const char* key : {"a", "a|b", "a|b|c", "a|b|c|d", "a|b|c|d|e", "a|b|c|d|e|f", "a|b|c|d|e|f|g", "b"}) {
        model.add(key, {});
    }
    EXPECT_EQ(factsOf(model)[u"keys_by_words"], (QJsonObject{{QStringLiteral("1"), 2},
                                                             {QStringLiteral("2"), 1},
                                                             {QStringLiteral("3"), 1},
                                                             {QStringLiteral("4"), 1},
                                                             {QStringLiteral("5"), 1},
                                                             {QStringLiteral("more"), 2}}));
}

TEST_F(KovalinModelInfo, ListsThePopularKeysAsManyAsWanted)
{
    ModelContent model;
    model.add("a", {}, noNumber).add("b", {}, 0.1F).add("c", {}, -infinite).add("d|e", {}, infinite);
    model.add("f", {}, 0.1F, noNumber).add("g", {}, -0.0F, -1);
    const auto keys = [this, &model](const char16_t* count) {
        QStringList list;
        const auto facts = factsOf(model, {top, QString::fromUtf16(count)});
        for (const QJsonValue key : facts[u"popular_keys"].toArray()) {
            list.append(key[u"key"].toString());
        }
        return list.join(u',');
    };
    EXPECT_EQ(keys(u"2147483647"), QStringLiteral("d e,b,f,g,c,a"));
    EXPECT_EQ(keys(u"3"), QStringLiteral("d e,b,f"));
    EXPECT_EQ(keys(u"0"), QString());
    const auto facts = factsOf(model);
    EXPECT_EQ(facts[u"popular_keys"][0][u"word_prior"], QJsonValue());
    EXPECT_EQ(facts[u"popular_keys"][1][u"word_prior"], 0.1);
    EXPECT_EQ(facts[u"suggested_keys"], 2);
    EXPECT_THAT(info(writeModel(files, model)).output.toStdString(),
                AllOf(HasSubstr("\n  d e            inf\n"), HasSubstr("\n  a              nan\n")));
}

TEST_F(KovalinModelInfo, FindsKeysThatAreOutOfOrder)
{
    ModelContent model;
    for (const char* key : {"a", "b", "ab", "c", "ca", "b1"}) {
        model.add(key, {});
    }
    expectFinding(model, u"keys-ascending", 2, u"\"ab\" after \"b\"");
}

TEST_F(KovalinModelInfo, OrdersKeysByBytesWithoutSign)
{
    ModelContent model;
    model.add("z", {}).add("\xC3\xA9", {});
    expectFinding(model, u"keys-normal", 1, u"\"é\"");
}

TEST_F(KovalinModelInfo, FindsKeysThatStandTwice)
{
    ModelContent model;
    for (const char* key : {"a", "b", "b", "b", "c"}) {
        model.add(key, {});
    }
    expectFinding(model, u"keys-unique", 2, u"\"b\"");
    model.add("a", {}); // not beside the other
    expectFindings(model, {{u"keys-ascending", 1, u"\"a\" after \"c\""}, {u"keys-unique", 3, u"\"b\""}});
}

TEST_F(KovalinModelInfo, FindsKeysThatNoQueryHas)
{
    ModelContent normal;
    normal.add("0", {}).add("a|b|c|d|e", {}).add("z9|9", {});
    expectFindings(normal, {});
    for (const char* key : {"", "|", "|a", "a|", "a||b", "A", "a b", "a-b", "a|b|c|d|e|f", "\xC3\xA9", "a\n"}) {
        ModelContent model;
        model.add(key, {});
        const auto example = QStringLiteral("\"%1\"").arg(QString::fromUtf8(key));
        expectFinding(model, u"keys-normal", 1, reinterpret_cast<const char16_t*>(example.utf16()));
    }
    ModelContent withZero;
    withZero.add(std::string("a\0b", 3), {});
    EXPECT_EQ(factsOf(withZero)[u"invariants"][0][u"name"], QStringLiteral("keys-normal"));
    ModelContent noText;
    noText.add("\xFF", {});
    expectFinding(noText, u"keys-normal", 1, u"\"\uFFFD\"");
}

TEST_F(KovalinModelInfo, FindsSlicesThatLeaveTheRows)
{
    constexpr auto greatest = std::numeric_limits<std::int32_t>::max();
    constexpr auto lowest = std::numeric_limits<std::int32_t>::min();
    ModelContent model;
    model.list({1, 2}).add("a", {{1, 0.5F}, {2, 0.5F}});
    model.keys->push_back({"b", 0, 3});
    model.keys->push_back({"c", 2, 0}); // empty, at the end
    model.keys->push_back({"d", 3, 0});
    model.keys->push_back({"e", -1, 1});
    model.keys->push_back({"f", greatest, greatest});
    model.keys->push_back({"g", 1, -1});
    model.keys->push_back({"h", lowest, lowest});
    expectFinding(model, u"slices-inside", 6, u"\"b\": start 0, count 3, of 2 rows");
    EXPECT_EQ(factsOf(model)[u"rows_of_a_key"],
              (QJsonObject{{QStringLiteral("median"), 0.5}, {QStringLiteral("most"), greatest}}));
    model.rows.reset();
    EXPECT_EQ(factsOf(model)[u"invariants"].toArray().size(), 2);
}

TEST_F(KovalinModelInfo, FindsComicsThatRepeatInASlice)
{
    ModelContent model;
    model.list({1, 2, 3});
    model.add("a", {{1, 0.5F}, {2, 0.5F}}).add("b", {{1, 0.5F}, {3, 0.5F}}); // only once in each
    expectFindings(model, {});
    model.add("c", {{2, 0.5F}, {3, 0.5F}, {1, 0.5F}, {3, 0.5F}}).add("d", {{2, 0.5F}, {2, 0.5F}, {2, 0.5F}});
    expectFinding(model, u"slice-comics-unique", 2, u"\"c\": comic 3");
    model.keys->push_back({"e", 1, 3}); // rows of two other keys: 2, 1, 3
    model.keys->push_back({"f", 0, 3}); // and 1, 2, 1
    expectFinding(model, u"slice-comics-unique", 3, u"\"c\": comic 3");
}

TEST_F(KovalinModelInfo, FindsProbsThatAreNoPositiveNumbers)
{
    ModelContent model;
    model.list({1}).add("a", {{1, 1e-45F}}).add("b", {{1, std::numeric_limits<float>::max()}});
    expectFindings(model, {});
    for (const float prob : {0.0F, -0.0F, -0.5F, infinite, -infinite, noNumber}) {
        model.add(fmt::format("c{}", model.keys->size()), {{1, prob}});
    }
    expectFinding(model, u"probs-positive", 6, u"row 2: comic 1, prob 0");
}

TEST_F(KovalinModelInfo, FindsComicsThatAreListedTwice)
{
    ModelContent model;
    model.list({-5, 7, 9, 7, -5, 7});
    expectFinding(model, u"comics-unique", 3, u"comic 7");
}

TEST_F(KovalinModelInfo, FindsRowsForComicsThatAreNotListed)
{
    ModelContent model;
    model.list({7}).add("a", {{7, 0.5F}, {-1, 0.5F}}).add("b", {{8, 0.5F}});
    expectFinding(model, u"row-comics-listed", 2, u"row 1: comic -1");
    model.comics.reset();
    expectFindings(model, {{u"vectors-present", 1, u"comicPriors"}, {u"row-comics-listed", 3, u"row 0: comic 7"}});
}

TEST_F(KovalinModelInfo, KnowsTheOddValuesOfTheExample)
{
    const auto result = info(exampleModel(), {json});
    EXPECT_EQ(result.exitCode, 0);
    ASSERT_EQ(result.objects().size(), 1);
    const auto facts = result.objects()[0];
    EXPECT_EQ(facts[u"size"], 1129084);
    EXPECT_EQ(facts[u"tables"], facts[u"comics"].toInt() + facts[u"keys"].toInt() + 1);
    QStringList names;
    for (const QJsonValue finding : facts[u"invariants"].toArray()) {
        names.append(finding[u"name"].toString());
        EXPECT_GT(finding[u"count"].toInt(), 0);
        EXPECT_NE(finding[u"example"].toString(), QString());
    }
    EXPECT_EQ(names, (QStringList{QStringLiteral("slices-inside"), QStringLiteral("slice-comics-unique"),
                                  QStringLiteral("probs-positive"), QStringLiteral("comics-unique"),
                                  QStringLiteral("row-comics-listed")}));
}

TEST_F(KovalinModelInfo, NeverStopsWhateverTheModelHolds)
{
    Random random(1);
    int damagedAndDescribed = 0;
    for (int round = 0; round < 120; ++round) {
        const ModelShape shape{.keys = 20,
                               .repeatedRows = 0.1,
                               .unlistedComics = 0.1,
                               .repeatedComics = 0.1,
                               .oddProbs = 0.1,
                               .oddSlices = 0.3,
                               .sorted = round % 2 == 0};
        QByteArray bytes = modelBytes(generateModel(random, shape));
        for (int words = round % 8; words > 0; --words) {
            damageWord(bytes, random);
        }
        const auto result =
            info(files.write(QStringLiteral("model.bin"), bytes), round % 3 == 0 ? QStringList() : QStringList{json});
        ASSERT_THAT(result.exitCode, testing::AnyOf(0, 1)) << round << ": " << result.errors.toStdString();
        ASSERT_EQ(result.errors.count('\n'), result.exitCode);
        damagedAndDescribed += result.exitCode == 0 && round % 8 != 0 ? 1 : 0;
    }
    EXPECT_GT(damagedAndDescribed, 20);
}

} // namespace
