#include "apps/KovalinProgram.h"
#include "search/KovalinPack.h"
#include "support/PlainPrefixSearch.h"

#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QSet>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace kovalin::test;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const QString json = QStringLiteral("--json");
const QString exact = QStringLiteral("--exact");
const QString explain = QStringLiteral("--explain");
const QString types = QStringLiteral("--types");

/// A solo sticker 1 and a two-person sticker 2 under "hug", and more tags around the word.
constexpr auto hugs = R"({"packs": [
    {"id": "a", "title": "Hugs", "visible": true, "stickers": [
        {"comic_id": "1", "url": "u1", "tags": ["hug", "big hug", "hug bear"]},
        {"comic_id": "2", "url": "u2", "tags": ["hug", "two of us"], "capabilities": ["FRIENDS"]},
        {"comic_id": "3", "tags": ["hug me hard", "hugging"]},
        {"url": "u4", "tags": ["hug", "my huggy"]}
    ]}]})";

QStringList search(const QString& packs, const QStringList& more)
{
    return QStringList{QStringLiteral("search"), QStringLiteral("--packs"), packs} + more;
}

QStringList comicIds(const QJsonObject& answer)
{
    QStringList ids;
    for (const QJsonValue sticker : answer[u"stickers"].toArray()) {
        ids.append(sticker[u"comic_id"].toString(QStringLiteral("-")));
    }
    return ids;
}

QJsonArray jsonOf(const KovalinStickerList& stickers)
{
    QJsonArray list;
    for (const auto& sticker : stickers) {
        const auto value = [](const std::optional<QString>& text) {
            return text ? QJsonValue(*text) : QJsonValue();
        };
        list.append(QJsonObject{{QStringLiteral("comic_id"), value(sticker->comicId())},
                                {QStringLiteral("url"), value(sticker->url())}});
    }
    return list;
}

class KovalinSearch : public testing::Test {
protected:
    QJsonObject answerTo(const QString& query, const QStringList& more = {})
    {
        const auto result =
            runKovalin(search(packs, QStringList{json} + more + QStringList{QStringLiteral("--"), query}));
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        const auto objects = result.objects();
        EXPECT_EQ(objects.size(), 1);
        return objects.value(0);
    }

    Files files;
    QString packs = files.write(QStringLiteral("packs.json"), hugs);
};

TEST_F(KovalinSearch, PrintsOneCompactObjectALine)
{
    const auto result = runKovalin(search(packs, {json, QStringLiteral("hug me"), QStringLiteral("nothing")}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "{\"query\":\"hug me\",\"stickers\":[{\"comic_id\":\"3\",\"url\":null}],\"tags\":[\"hug me hard\"]}\n"
              "{\"query\":\"nothing\",\"stickers\":[],\"tags\":[]}\n");
}

TEST_F(KovalinSearch, GivesNullForWhatAStickerLacks)
{
    const auto answer = answerTo(QStringLiteral("my huggy"));
    EXPECT_EQ(answer[u"stickers"], (QJsonArray{QJsonObject{{QStringLiteral("comic_id"), QJsonValue()},
                                                           {QStringLiteral("url"), QStringLiteral("u4")}}}));
}

TEST_F(KovalinSearch, FiltersByTypeWithOnePersonAsDefault)
{
    EXPECT_EQ(comicIds(answerTo(QStringLiteral("hug"), {exact})),
              (QStringList{QStringLiteral("1"), QStringLiteral("-")}));
    EXPECT_EQ(comicIds(answerTo(QStringLiteral("hug"), {exact, types, QStringLiteral("0")})),
              (QStringList{QStringLiteral("1"), QStringLiteral("-")}));
    EXPECT_EQ(comicIds(answerTo(QStringLiteral("hug"), {exact, types, QStringLiteral("1")})),
              QStringList{QStringLiteral("2")});
    EXPECT_EQ(comicIds(answerTo(QStringLiteral("hug"), {exact, types, QStringLiteral("0,1")})),
              (QStringList{QStringLiteral("2"), QStringLiteral("1"), QStringLiteral("-")}));
}

TEST_F(KovalinSearch, SuggestsTagsOfTwoPersonStickersOnRequest)
{
    EXPECT_EQ(answerTo(QStringLiteral("two"))[u"tags"], QJsonArray());
    EXPECT_EQ(answerTo(QStringLiteral("two"), {types, QStringLiteral("1")})[u"tags"],
              QJsonArray{QStringLiteral("two of us")});
}

TEST_F(KovalinSearch, ExactTakesTheQueryForATagOrTitle)
{
    const auto tag = answerTo(QStringLiteral("big hug"), {exact});
    EXPECT_EQ(comicIds(tag), QStringList{QStringLiteral("1")});
    EXPECT_EQ(tag[u"tags"], QJsonArray());
    EXPECT_EQ(comicIds(answerTo(QStringLiteral("Hugs"), {exact})),
              (QStringList{QStringLiteral("1"), QStringLiteral("3"), QStringLiteral("-")}));
    EXPECT_EQ(comicIds(answerTo(QStringLiteral("Big hug"), {exact})), QStringList());
}

TEST_F(KovalinSearch, ExplainsEachTagByRankAndScore)
{
    // The most frequent tag, "hug", has 3 stickers, all others have 1: a score is 3 times the rank plus 0 or 2.
    QHash<QString, QPair<int, int>> explained;
    const auto answer = answerTo(QStringLiteral("hug"), {explain});
    for (const QJsonValue tag : answer[u"explain"].toArray()) {
        explained.insert(tag[u"tag"].toString(), {tag[u"rank"].toInt(-1), tag[u"score"].toInt(-1)});
    }
    EXPECT_EQ(explained, (QHash<QString, QPair<int, int>>{{QStringLiteral("hug"), {0, 0}},
                                                          {QStringLiteral("hug bear"), {1, 5}},
                                                          {QStringLiteral("hug me hard"), {1, 5}},
                                                          {QStringLiteral("big hug"), {2, 8}},
                                                          {QStringLiteral("hugging"), {4, 14}},
                                                          {QStringLiteral("my huggy"), {4, 14}}}));
    EXPECT_EQ(answer[u"explain"].toArray().size(), answer[u"tags"].toArray().size());
    for (qsizetype i = 0; i < answer[u"tags"].toArray().size(); ++i) {
        EXPECT_EQ(answer[u"explain"][i][u"tag"], answer[u"tags"][i]);
    }
}

TEST_F(KovalinSearch, ExplainsAWordThatLeadsAndAnotherThatOnlyBegins)
{
    const auto first = answerTo(QStringLiteral("hug m"), {explain})[u"explain"][0];
    EXPECT_EQ(first[u"tag"], QStringLiteral("hug me hard"));
    EXPECT_EQ(first[u"rank"], 3);
    EXPECT_EQ(first[u"score"], 11);
}

TEST_F(KovalinSearch, HasNothingToExplainAboutAnExactSearch)
{
    const auto answer = answerTo(QStringLiteral("hug"), {explain, exact});
    EXPECT_TRUE(answer.contains(u"explain"));
    EXPECT_EQ(answer[u"explain"], QJsonArray());
    EXPECT_FALSE(answerTo(QStringLiteral("hug"), {exact}).contains(u"explain"));
}

TEST_F(KovalinSearch, NeverCutsJsonShort)
{
    EXPECT_EQ(
        answerTo(QStringLiteral("hug"), {QStringLiteral("--limit"), QStringLiteral("1")})[u"tags"].toArray().size(), 6);
}

TEST_F(KovalinSearch, TakesQueriesAsTheyAreGiven)
{
    const QStringList queries{QString(),
                              QStringLiteral("search"),
                              QStringLiteral("sequence"),
                              QStringLiteral("[hug,me]"),
                              QStringLiteral("{}"),
                              QStringLiteral("%%"),
                              QStringLiteral("++"),
                              QStringLiteral("a,b"),
                              QStringLiteral("\"quoted\\\""),
                              QStringLiteral(" hug\t"),
                              QStringLiteral("naïve 😀 日本")};
    const auto result = runKovalin(search(packs, QStringList{json} + queries));
    EXPECT_EQ(result.exitCode, 0);
    QStringList answered;
    for (const auto& answer : result.objects()) {
        answered.append(answer[u"query"].toString());
    }
    EXPECT_EQ(answered, queries);
}

TEST_F(KovalinSearch, TakesQueriesWithALeadingDashBehindTwo)
{
    EXPECT_EQ(answerTo(QStringLiteral("--hug"))[u"query"], QStringLiteral("--hug"));
    EXPECT_EQ(answerTo(QStringLiteral("-"))[u"query"], QStringLiteral("-"));
}

TEST_F(KovalinSearch, ReadsQueriesLineByLineWithoutArguments)
{
    const auto result = runKovalin(search(packs, {json}), "hug\r\n\nbig\r\r\nna\xC3\xAFve\nlast");
    EXPECT_EQ(result.exitCode, 0);
    QStringList queries;
    for (const auto& answer : result.objects()) {
        queries.append(answer[u"query"].toString());
    }
    EXPECT_EQ(queries, (QStringList{QStringLiteral("hug"), QString(), QStringLiteral("big\r"), QStringLiteral("naïve"),
                                    QStringLiteral("last")}));
    EXPECT_EQ(result.objects()[1][u"tags"], QJsonArray());
}

TEST_F(KovalinSearch, SurvivesQueriesThatAreNoText)
{
    const auto result = runKovalin(search(packs, {json}), QByteArray("\xFF\xFE hug\nnul\0nul\n", 15));
    EXPECT_EQ(result.exitCode, 0);
    ASSERT_EQ(result.objects().size(), 2);
    EXPECT_EQ(result.objects()[0][u"query"], QStringLiteral("\uFFFD\uFFFD hug"));
    EXPECT_EQ(result.objects()[1][u"query"].toString().size(), 7);
}

TEST_F(KovalinSearch, ReadsNoInputWhenQueriesAreArguments)
{
    const auto result = runKovalin(search(packs, {json, QStringLiteral("hug")}), "big\n");
    EXPECT_EQ(result.objects().size(), 1);
}

TEST_F(KovalinSearch, AnswersEachLineAtOnce)
{
    RunningKovalin kovalin(search(packs, {json}));
    EXPECT_THAT(kovalin.ask("hug").toStdString(), StartsWith("{\"query\":\"hug\",\"stickers\":[{"));
    EXPECT_EQ(kovalin.ask("nothing"), "{\"query\":\"nothing\",\"stickers\":[],\"tags\":[]}\n");
}

TEST_F(KovalinSearch, KnowsThePrefixEngineByName)
{
    EXPECT_EQ(answerTo(QStringLiteral("big"), {QStringLiteral("--engine"), QStringLiteral("prefix")})[u"tags"],
              QJsonArray{QStringLiteral("big hug")});
}

TEST(KovalinSearchOfTheExamples, AnswersLikeAPlainSearchOfTheWholeDocument)
{
    QFile file(examplePacks());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto document = QJsonDocument::fromJson(file.readAll());
    PlainPrefixSearch plain;
    plain.processPacks(KovalinPack::packsFromJson(document[u"packs"].toArray()));

    const QXSDKKovalinSearchResultTypes both{QXSDKKovalinSearchResultTypeSolovalin,
                                             QXSDKKovalinSearchResultTypeFriendvalin};
    const QStringList queries{QStringLiteral("smile"), QStringLiteral("a"),    QStringLiteral("happy b"),
                              QStringLiteral("cat"),   QStringLiteral("love"), QStringLiteral("Popular"),
                              QStringLiteral("best"),  QStringLiteral("s")};
    const QStringList options{json, types, QStringLiteral("0,1")};
    const auto answers = runKovalin(search(examplePacks(), options + queries)).objects();
    const auto exactAnswers = runKovalin(search(examplePacks(), options + QStringList{exact} + queries)).objects();
    ASSERT_EQ(answers.size(), queries.size());
    ASSERT_EQ(exactAnswers.size(), queries.size());
    for (qsizetype i = 0; i < queries.size(); ++i) {
        SCOPED_TRACE(queries[i].toStdString());
        QHash<QString, qint64> scores;
        for (const auto& tag : plain.tagsForSearchTerm(queries[i], both)) {
            scores.insert(tag.tag, tag.score);
        }
        // The order of tags of equal scores is open, so the stickers are held against the order that was given.
        QStringList tags;
        QList<qint64> givenScores;
        for (const QJsonValue tag : answers[i][u"tags"].toArray()) {
            tags.append(tag.toString());
            givenScores.append(scores.value(tag.toString(), -1));
        }
        EXPECT_EQ(QSet<QString>(tags.cbegin(), tags.cend()), QSet<QString>(scores.keyBegin(), scores.keyEnd()));
        EXPECT_EQ(tags.size(), scores.size());
        EXPECT_TRUE(std::is_sorted(givenScores.cbegin(), givenScores.cend()));
        EXPECT_EQ(answers[i][u"stickers"], jsonOf(plain.stickersForTags(tags, both)));
        EXPECT_EQ(exactAnswers[i][u"stickers"], jsonOf(plain.searchWithExactMatch(queries[i], both)));
    }
}

TEST(KovalinStreams, EndsQuietlyWhenNobodyReadsTheOutput)
{
    Files files;
    const QString status = files.path(QStringLiteral("status"));
    const auto result =
        runShell(QStringLiteral("yes smile | { \"$KOVALIN\" search --packs \"$PACKS\" --json; echo $? > '%1'; }"
                                " | head -n 1")
                     .arg(status));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output.count('\n'), 1);
    EXPECT_EQ(result.errors, "");
    QFile file(status);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "0\n");
}

TEST(KovalinStreams, SaysSoWhenTheOutputIsClosedOrFull)
{
    const auto closed = runShell(QStringLiteral("\"$KOVALIN\" search --packs \"$PACKS\" --json smile >&-"));
    EXPECT_EQ(closed.exitCode, 1);
    EXPECT_THAT(closed.errors.toStdString(), StartsWith("kovalin: standard output: "));
    EXPECT_EQ(closed.errors.count('\n'), 1);
    if (QFile::exists(QStringLiteral("/dev/full"))) {
        const auto full = runShell(QStringLiteral("\"$KOVALIN\" sequence --help > /dev/full"));
        EXPECT_EQ(full.exitCode, 1);
        EXPECT_THAT(full.errors.toStdString(), StartsWith("kovalin: standard output: "));
    }
}

TEST(KovalinStreams, TakesClosedOrUnreadableInputForWhatItIs)
{
    const auto closed = runShell(QStringLiteral("\"$KOVALIN\" search --packs \"$PACKS\" --json <&-"));
    EXPECT_EQ(closed.exitCode, 1);
    EXPECT_EQ(closed.output, "");
    EXPECT_THAT(closed.errors.toStdString(), StartsWith("kovalin: standard input: "));
    const auto folder = runShell(QStringLiteral("\"$KOVALIN\" search --packs \"$PACKS\" --json < /"));
    EXPECT_EQ(folder.exitCode, 1);
    EXPECT_THAT(folder.errors.toStdString(), StartsWith("kovalin: standard input: "));
}

TEST(KovalinStreams, AreUtf8WhateverTheLocale)
{
    for (const char16_t* locale : {u"C", u"POSIX", u"xx_YY.ISO-8859-1"}) {
        const auto result = runShell(QStringLiteral("LC_ALL=%1; LANG=%1; export LC_ALL LANG; echo 'naïve 😀' | "
                                                    "\"$KOVALIN\" search --packs \"$PACKS\" --json - 'é'")
                                         .arg(QString::fromUtf16(locale)));
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        ASSERT_EQ(result.objects().size(), 2);
        EXPECT_EQ(result.objects()[1][u"query"], QStringLiteral("é"));
    }
}

} // namespace
