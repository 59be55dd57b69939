#include "apps/KovalinProgram.h"
#include "apps/ModelWriting.h"
#include "support/PlainClassifier.h"

#include <QtCore/QJsonArray>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

using namespace kovalin::test;
using testing::HasSubstr;
using vole::learned_search::test::PlainClassifier;

namespace {

const QString json = QStringLiteral("--json");

QStringList suggest(const QString& model, const QStringList& more)
{
    return QStringList{QStringLiteral("suggest"), QStringLiteral("--model"), model} + more;
}

class KovalinSuggest : public testing::Test {
protected:
    QByteArray outputOf(const QStringList& more, const QByteArray& input = {})
    {
        const auto result = runKovalin(suggest(model, more), input);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        return result.output;
    }

    Files files;
    QString model = writeModel(files, smallModel());
};

TEST_F(KovalinSuggest, PrintsOneCompactObjectALine)
{
    EXPECT_EQ(outputOf({json, QStringLiteral("goo"), QStringLiteral("Good  MOR!"), QStringLiteral("ti"),
                        QStringLiteral("?")}),
              "{\"query\":\"goo\",\"suggestions\":[\"good morning\",\"good\"]}\n"
              "{\"query\":\"Good  MOR!\",\"suggestions\":[\"good morning\"]}\n"
              "{\"query\":\"ti\",\"suggestions\":[\"tie\"]}\n"
              "{\"query\":\"?\",\"suggestions\":[]}\n");
}

TEST_F(KovalinSuggest, AnswersEachLineAtOnce)
{
    RunningKovalin kovalin(suggest(model, {json}));
    EXPECT_EQ(kovalin.ask("tie"), "{\"query\":\"tie\",\"suggestions\":[\"tie\"]}\n");
    EXPECT_EQ(kovalin.ask("no"), "{\"query\":\"no\",\"suggestions\":[]}\n");
}

TEST_F(KovalinSuggest, ShowsPeopleOneSuggestionALine)
{
    EXPECT_EQ(outputOf({QStringLiteral("g"), QStringLiteral("x")}), "\"g\": 2 suggestions\n\n"
                                                                    "  Suggestion\n"
                                                                    "  good morning\n"
                                                                    "  good\n\n"
                                                                    "\"x\": 0 suggestions\n\n");
    EXPECT_THAT(outputOf({QStringLiteral("--limit"), QStringLiteral("1"), QStringLiteral("g")}).toStdString(),
                HasSubstr("  good morning\n  … and 1 more\n"));
}

TEST_F(KovalinSuggest, SurvivesQueriesAndKeysThatAreNoText)
{
    ModelContent odd;
    odd.add("a\xFF\x1b|b", {}, 0.5F, 1);
    model = writeModel(files, odd);
    EXPECT_EQ(outputOf({json}, "\xC3 A\n"), "{\"query\":\"\uFFFD A\",\"suggestions\":[\"a\uFFFD\\u001b b\"]}\n");
    EXPECT_THAT(outputOf({}, "a\n").toStdString(), HasSubstr("\n  a\uFFFD\uFFFD b\n"));
}

TEST(KovalinSuggestFromTheExample, AnswersLikeThePlainClassifier)
{
    const PlainClassifier plain(exampleModelBuffer());
    auto queries = exampleQueries();
    for (char first = 'a'; first <= 'z'; ++first) {
        queries.push_back({first});
    }
    const auto answers = runKovalin(suggest(exampleModel(), {json}), asLines(queries)).objects();
    ASSERT_EQ(answers.size(), static_cast<qsizetype>(queries.size()));
    const auto popularFirst = [](const auto& a, const auto& b) {
        return a.first > b.first || (a.first == b.first && a.second < b.second);
    };
    for (std::size_t i = 0; i < queries.size(); ++i) {
        std::vector<std::pair<float, std::string>> wanted;
        for (auto [key, popularity] : plain.completions(queries[i])) {
            std::ranges::replace(key, '|', ' ');
            wanted.emplace_back(popularity, key);
        }
        std::ranges::sort(wanted, popularFirst);
        // The order of equally popular ones is free: what stands in a place must have the popularity due there.
        const QJsonArray suggestions = answers[static_cast<qsizetype>(i)][u"suggestions"].toArray();
        ASSERT_EQ(suggestions.size(), static_cast<qsizetype>(wanted.size())) << queries[i];
        std::vector<std::pair<float, std::string>> found;
        for (const QJsonValue suggestion : suggestions) {
            found.emplace_back(wanted[found.size()].first, suggestion.toString().toStdString());
        }
        std::ranges::sort(found, popularFirst);
        ASSERT_EQ(found, wanted) << queries[i];
    }
}

} // namespace
