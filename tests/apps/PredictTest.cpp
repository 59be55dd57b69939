#include "apps/KovalinProgram.h"
#include "apps/ModelWriting.h"
#include "support/PlainClassifier.h"

#include <QtCore/QJsonArray>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

using namespace kovalin::test;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using vole::learned_search::test::PlainClassifier;

namespace {

const QString json = QStringLiteral("--json");
const QString top = QStringLiteral("--top");

QStringList predict(const QString& model, const QStringList& more)
{
    return QStringList{QStringLiteral("predict"), QStringLiteral("--model"), model} + more;
}

QJsonArray jsonOf(const std::vector<std::int32_t>& comics)
{
    QJsonArray list;
    for (const std::int32_t comic : comics) {
        list.append(comic);
    }
    return list;
}

class KovalinPredict : public testing::Test {
protected:
    QByteArray outputOf(const QStringList& more, const QByteArray& input = {})
    {
        const auto result = runKovalin(predict(model, more), input);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        return result.output;
    }

    Files files;
    QString model = writeModel(files, smallModel());
};

TEST_F(KovalinPredict, PrintsOneCompactObjectALine)
{
    EXPECT_EQ(outputOf({json, QStringLiteral("good"), QStringLiteral("GOOD morning!"), QStringLiteral("nothing")}),
              "{\"query\":\"good\",\"comics\":[7,9]}\n"
              "{\"query\":\"GOOD morning!\",\"comics\":[9,3,7]}\n"
              "{\"query\":\"nothing\",\"comics\":[]}\n");
}

TEST_F(KovalinPredict, FindsAtMostAsManyComicsAsWanted)
{
    const auto found = [this](const char16_t* count) {
        return outputOf({json, top, QString::fromUtf16(count), QStringLiteral("good morning")});
    };
    EXPECT_EQ(found(u"0"), "{\"query\":\"good morning\",\"comics\":[]}\n");
    EXPECT_EQ(found(u"1"), "{\"query\":\"good morning\",\"comics\":[9]}\n");
    EXPECT_EQ(found(u"1000"), "{\"query\":\"good morning\",\"comics\":[9,3,7]}\n");
    EXPECT_EQ(found(u"2147483647"), "{\"query\":\"good morning\",\"comics\":[9,3,7]}\n");
}

TEST_F(KovalinPredict, TakesTheFirstListedOfEquallyGoodComics)
{
    EXPECT_EQ(outputOf({json, top, QStringLiteral("1"), QStringLiteral("tie")}),
              "{\"query\":\"tie\",\"comics\":[7]}\n");
    const PlainClassifier plain(vole::learned_search::test::bufferOf(smallModel()));
    for (const std::int32_t count : {2, 3, 1000}) {
        const auto answers = runKovalin(predict(model, {json, top, QString::number(count), QStringLiteral("tie")}));
        ASSERT_EQ(answers.objects().size(), 1);
        EXPECT_EQ(answers.objects()[0][u"comics"], jsonOf(plain.predict("tie", count))) << count;
    }
}

TEST_F(KovalinPredict, KeepsTheSmallestAndGreatestIds)
{
    ModelContent extremes;
    extremes.list({-2147483647 - 1, 0, 2147483647});
    extremes.add("x", {{-2147483647 - 1, 0.25F}, {0, 0.5F}, {2147483647, 0.75F}});
    model = writeModel(files, extremes);
    EXPECT_EQ(outputOf({json, QStringLiteral("x")}), "{\"query\":\"x\",\"comics\":[2147483647,0,-2147483648]}\n");
}

TEST_F(KovalinPredict, ReadsQueriesLineByLineWithoutArguments)
{
    EXPECT_EQ(outputOf({json}, "good\r\n\nlast good"), "{\"query\":\"good\",\"comics\":[7,9]}\n"
                                                       "{\"query\":\"\",\"comics\":[]}\n"
                                                       "{\"query\":\"last good\",\"comics\":[7,9]}\n");
    EXPECT_EQ(outputOf({json}), "");
}

TEST_F(KovalinPredict, AnswersEachLineAtOnce)
{
    RunningKovalin kovalin(predict(model, {json}));
    EXPECT_EQ(kovalin.ask("good"), "{\"query\":\"good\",\"comics\":[7,9]}\n");
    EXPECT_EQ(kovalin.ask("?"), "{\"query\":\"?\",\"comics\":[]}\n");
}

TEST_F(KovalinPredict, TakesQueriesAsTheyAreGiven)
{
    const QStringList queries{QString(),
                              QStringLiteral("model"),
                              QStringLiteral("predict"),
                              QStringLiteral("++"),
                              QStringLiteral("[a,b]"),
                              QStringLiteral("naïve 😀 \"\\"),
                              QStringLiteral("-"),
                              QStringLiteral("--top")};
    const auto result = runKovalin(predict(model, QStringList{json, QStringLiteral("--")} + queries));
    QStringList answered;
    for (const auto& answer : result.objects()) {
        answered.append(answer[u"query"].toString());
    }
    EXPECT_EQ(answered, queries);
}

TEST_F(KovalinPredict, SurvivesQueriesThatAreNoText)
{
    const auto result = runKovalin(predict(model, {json}), QByteArray("\xFF\xFE go\xC3od\ngo\0od\n\xED\xA0\x80\n", 19));
    EXPECT_EQ(result.exitCode, 0);
    const auto answers = result.objects();
    ASSERT_EQ(answers.size(), 3);
    EXPECT_EQ(answers[0][u"query"], QStringLiteral("\uFFFD\uFFFD go\uFFFDod"));
    EXPECT_EQ(answers[0][u"comics"], (QJsonArray{7, 9})) << "the query itself isn't to be mended";
    EXPECT_EQ(answers[1][u"query"].toString(), QStringLiteral("go") + QChar(0) + QStringLiteral("od"));
    EXPECT_TRUE(answers[2][u"query"].toString().startsWith(QChar::ReplacementCharacter));
    EXPECT_TRUE(QString::fromUtf8(result.output).toUtf8() == result.output);
}

TEST_F(KovalinPredict, ShowsPeopleATable)
{
    EXPECT_EQ(outputOf({QStringLiteral("good morning"), QStringLiteral("no\x1b")}).toStdString(),
              "\"good morning\": 3 comics\n\n"
              "  #  Comic\n"
              "  1  9\n"
              "  2  3\n"
              "  3  7\n\n"
              "\"no\uFFFD\": 0 comics\n\n");
    EXPECT_THAT(outputOf({QStringLiteral("--limit"), QStringLiteral("2"), QStringLiteral("tie")}).toStdString(),
                AllOf(HasSubstr("\"tie\": 3 comics\n"), HasSubstr("\n  … and 1 more\n")));
    EXPECT_THAT(outputOf({QStringLiteral("--limit"), QStringLiteral("0"), QStringLiteral("tie")}).toStdString(),
                Not(HasSubstr("more")));
}

TEST_F(KovalinPredict, StopsAtRowsThatAreNotThere)
{
    ModelContent wrong = smallModel();
    wrong.keys->front().count = 1000;
    const auto result = runKovalin(predict(writeModel(files, wrong), {json, QStringLiteral("good")}));
    EXPECT_EQ(result.exitCode, -1);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors.toStdString(), HasSubstr("i < size()"));
}

TEST_F(KovalinPredict, FindsNothingInAModelThatLacksSomething)
{
    ModelContent incomplete = smallModel();
    incomplete.rows.reset();
    model = writeModel(files, incomplete);
    EXPECT_EQ(outputOf({json, QStringLiteral("good")}), "{\"query\":\"good\",\"comics\":[]}\n");
}

TEST(KovalinPredictFromTheExample, AnswersLikeThePlainClassifier)
{
    const PlainClassifier plain(exampleModelBuffer());
    const auto queries = exampleQueries();
    std::size_t found = 0;
    for (const std::int32_t count : {0, 1, 7, 1000, 2147483647}) {
        const auto result = runKovalin(predict(exampleModel(), {json, top, QString::number(count)}), asLines(queries));
        EXPECT_EQ(result.exitCode, 0);
        const auto answers = result.objects();
        ASSERT_EQ(answers.size(), static_cast<qsizetype>(queries.size()));
        for (std::size_t i = 0; i < queries.size(); ++i) {
            const auto wanted = plain.predict(queries[i], count);
            ASSERT_EQ(answers[static_cast<qsizetype>(i)][u"comics"], jsonOf(wanted)) << queries[i] << ", " << count;
            found += wanted.empty() ? 0 : 1;
        }
    }
    EXPECT_GT(found, queries.size()); // most queries have answers
}

} // namespace
