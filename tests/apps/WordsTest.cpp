#include "apps/KovalinProgram.h"
#include "apps/ModelWriting.h"
#include "support/PlainClassifier.h"

#include <QtCore/QJsonArray>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace kovalin::test;
using vole::learned_search::test::PlainClassifier;

namespace {

const QString json = QStringLiteral("--json");

QStringList words(const QString& model, const QStringList& more)
{
    return QStringList{QStringLiteral("words"), QStringLiteral("--model"), model} + more;
}

QJsonArray jsonOf(const std::vector<std::string>& texts)
{
    QJsonArray list;
    for (const std::string& text : texts) {
        list.append(QString::fromStdString(text));
    }
    return list;
}

class KovalinWords : public testing::Test {
protected:
    QByteArray outputOf(const QStringList& more, const QByteArray& input = {})
    {
        const auto result = runKovalin(words(model, more), input);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        return result.output;
    }

    Files files;
    QString model = writeModel(files, smallModel());
};

TEST_F(KovalinWords, PrintsOneCompactObjectALine)
{
    EXPECT_EQ(outputOf({json, QStringLiteral("Tie, good MORNING, café"), QStringLiteral("!"), QStringLiteral("new")})
                  .toStdString(),
              "{\"query\":\"Tie, good MORNING, caf\u00e9\",\"words\":[\"tie\",\"good\",\"morning\",\"caf\"],"
              "\"ngrams\":[\"good|morning\",\"tie\"]}\n"
              "{\"query\":\"!\",\"words\":[],\"ngrams\":[]}\n"
              "{\"query\":\"new\",\"words\":[\"new\"],\"ngrams\":[]}\n");
}

TEST_F(KovalinWords, AnswersEachLineAtOnce)
{
    RunningKovalin kovalin(words(model, {json}));
    EXPECT_EQ(kovalin.ask("tie"), "{\"query\":\"tie\",\"words\":[\"tie\"],\"ngrams\":[\"tie\"]}\n");
    EXPECT_EQ(kovalin.ask("\xFF"), "{\"query\":\"\uFFFD\",\"words\":[],\"ngrams\":[]}\n");
}

TEST_F(KovalinWords, ShowsPeopleWordsWithBlanks)
{
    EXPECT_EQ(outputOf({QStringLiteral("good morning tie"), QStringLiteral("new"), QStringLiteral("!")}),
              "\"good morning tie\": 3 words, 2 n-grams\n\n"
              "  Words    good, morning, tie\n"
              "  N-grams  good morning, tie\n\n"
              "\"new\": 1 word, 0 n-grams\n\n"
              "  Words    new\n\n"
              "\"!\": 0 words, 0 n-grams\n\n");
}

TEST(KovalinWordsOfTheExample, AreThoseOfThePlainClassifier)
{
    const PlainClassifier plain(exampleModelBuffer());
    const auto queries = exampleQueries();
    const auto answers = runKovalin(words(exampleModel(), {json}), asLines(queries)).objects();
    ASSERT_EQ(answers.size(), static_cast<qsizetype>(queries.size()));
    for (std::size_t i = 0; i < queries.size(); ++i) {
        const auto wanted = PlainClassifier::queryToPreprocessedWords(queries[i]);
        const auto& answer = answers[static_cast<qsizetype>(i)];
        ASSERT_EQ(answer[u"words"], jsonOf(wanted)) << queries[i];
        ASSERT_EQ(answer[u"ngrams"], jsonOf(plain.generateWordNgrams(wanted, 5))) << queries[i];
    }
}

} // namespace
