// What `kovalin search` answers with a model, held against what the other subcommands say of the same files.
#include "apps/KovalinProgram.h"
#include "apps/ModelWriting.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace kovalin::test;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

const QString json = QStringLiteral("--json");
const QString exact = QStringLiteral("--exact");
const QString explain = QStringLiteral("--explain");
const QString fusion = QStringLiteral("fusion");
const QString learned = QStringLiteral("learned");
const QString prefix = QStringLiteral("prefix");

QString catchAll(const QString& query)
{
    return QChar(0x200E) + query + QStringLiteral("...");
}

QStringList searchExamples(const QStringList& more)
{
    return QStringList{QStringLiteral("search"), QStringLiteral("--packs"), examplePacks(), json} + more;
}

QStringList withModel(const QStringList& more)
{
    return searchExamples(QStringList{QStringLiteral("--model"), exampleModel()} + more);
}

QList<QJsonObject> answersTo(const QStringList& arguments, const std::vector<std::string>& queries)
{
    const auto result = runKovalin(arguments, asLines(queries));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.objects().size(), static_cast<qsizetype>(queries.size()));
    return result.objects();
}

QStringList textsIn(const QJsonValue& list)
{
    QStringList texts;
    for (const QJsonValue text : list.toArray()) {
        texts.append(text.toString());
    }
    return texts;
}

QJsonArray readPacks()
{
    QFile file(examplePacks());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QJsonDocument::fromJson(file.readAll())[u"packs"].toArray();
}

/// Tags from all over the example packs.
QStringList tagsOfThePacks()
{
    constexpr qsizetype step = 20;
    QStringList tags;
    for (const QJsonValue pack : readPacks()) {
        const auto stickers = pack[u"stickers"].toArray();
        for (qsizetype place = 0; place < stickers.size(); place += step) {
            tags.append(stickers[place][u"tags"][0].toString());
        }
    }
    return tags;
}

/// Several hundred texts, of one word and of several, known to packs and model or not.
std::vector<std::string> queries()
{
    std::vector<std::string> texts{"happy",         "happy birthday cake", "red heart", "Red  HEART!",        "a",
                                   "Popular",       "\xF0\x9F\x98\x80",    "?",         "na\xC3\xAFve \"x\\", "",
                                   "love love love"};
    for (const QString& tag : tagsOfThePacks()) {
        texts.push_back(tag.toStdString());
        texts.push_back(tag.first(std::min<qsizetype>(3, tag.size())).toStdString());
    }
    for (std::string& text : exampleQueries()) {
        if (QString::fromStdString(text).toStdString() == text) { // what isn't UTF-8 is mended before it is looked for
            texts.push_back(std::move(text));
        }
    }
    return texts;
}

/// The stickers of the example packs, read without the library: the last one of each comic id.
class StickersByComic final {
public:
    StickersByComic()
    {
        for (const QJsonValue pack : readPacks()) {
            for (const QJsonValue sticker : pack[u"stickers"].toArray()) {
                if (const QString comic = sticker[u"comic_id"].toString(); !comic.isEmpty()) {
                    _stickers.insert(comic, sticker.toObject());
                }
            }
        }
    }

    /// As the program prints them; `types` as it takes them.
    [[nodiscard]] QJsonArray of(const QJsonValue& comics, const QString& types) const
    {
        QJsonArray found;
        for (const QJsonValue comic : comics.toArray()) {
            const auto sticker = _stickers.constFind(QString::number(comic.toInt()));
            if (sticker == _stickers.constEnd()) {
                continue;
            }
            const bool isForTwo =
                sticker->value(u"capabilities").toArray().contains(QJsonValue(QStringLiteral("FRIENDS")));
            if (types.contains(isForTwo ? u'1' : u'0')) {
                found.append(QJsonObject{{QStringLiteral("comic_id"), sticker->value(u"comic_id")},
                                         {QStringLiteral("url"), sticker->value(u"url")}});
            }
        }
        return found;
    }

private:
    QHash<QString, QJsonObject> _stickers;
};

/// The prefix results without the learned ones, and then the learned ones.
QJsonArray fused(const QJsonArray& prefixResults, const QJsonArray& learnedResults)
{
    QJsonArray results;
    for (const QJsonValue result : prefixResults) {
        if (!learnedResults.contains(result)) {
            results.append(result);
        }
    }
    for (const QJsonValue result : learnedResults) {
        results.append(result);
    }
    return results;
}

class KovalinSearchEngines : public testing::TestWithParam<std::string> {
protected:
    struct Parts {
        QJsonArray prefixStickers;
        QJsonArray prefixTags;
        QJsonArray learnedStickers;
        QJsonArray learnedTags;
    };

    /// What both engines have to find for each query, by asking the prefix engine and the classifier.
    static std::vector<Parts> partsOf(const std::vector<std::string>& queries, bool isExact)
    {
        const QString types = QString::fromStdString(GetParam());
        const StickersByComic stickers;
        const QStringList model{json, QStringLiteral("--model"), exampleModel()};
        const auto found =
            answersTo(searchExamples(options(prefix) + (isExact ? QStringList{exact} : QStringList())), queries);
        const auto comics = answersTo(QStringList{QStringLiteral("predict")} + model, queries);
        const auto suggestions = answersTo(QStringList{QStringLiteral("suggest")} + model, queries);
        std::vector<Parts> all;
        for (qsizetype i = 0; i < found.size(); ++i) {
            Parts parts{found[i][u"stickers"].toArray(), found[i][u"tags"].toArray(),
                        stickers.of(comics[i][u"comics"], types), suggestions[i][u"suggestions"].toArray()};
            if (!parts.learnedStickers.isEmpty()) {
                parts.learnedTags.append(catchAll(QString::fromStdString(queries[static_cast<std::size_t>(i)])));
            }
            all.push_back(parts);
        }
        return all;
    }

    static QStringList options(const QString& engine)
    {
        return {QStringLiteral("--engine"), engine, QStringLiteral("--types"), QString::fromStdString(GetParam())};
    }
};

TEST_P(KovalinSearchEngines, FuseWhatThePrefixEngineAndTheModelFind)
{
    const auto texts = queries();
    const auto parts = partsOf(texts, false);
    const auto fusedAnswers = answersTo(withModel(options(fusion)), texts);
    const auto learnedAnswers = answersTo(withModel(options(learned)), texts);
    std::size_t differing = 0;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        SCOPED_TRACE(texts[i]);
        const auto& part = parts[i];
        const QString query = QString::fromStdString(texts[i]);
        const auto place = static_cast<qsizetype>(i);
        const QJsonArray stickers = fused(part.prefixStickers, part.learnedStickers);
        EXPECT_EQ(fusedAnswers[place],
                  (QJsonObject{{QStringLiteral("query"), query},
                               {QStringLiteral("stickers"), stickers},
                               {QStringLiteral("tags"), fused(part.prefixTags, part.learnedTags)}}));
        EXPECT_EQ(learnedAnswers[place], (QJsonObject{{QStringLiteral("query"), query},
                                                      {QStringLiteral("stickers"), part.learnedStickers},
                                                      {QStringLiteral("tags"), part.learnedTags}}));
        differing += stickers != part.prefixStickers && stickers != part.learnedStickers;
    }
    EXPECT_GT(differing, 15U) << "else there was little to fuse";
}

TEST_P(KovalinSearchEngines, FuseExactMatchesWithoutTags)
{
    const auto texts = queries();
    const auto parts = partsOf(texts, true);
    const auto fusedAnswers = answersTo(withModel(options(fusion) + QStringList{exact}), texts);
    const auto learnedAnswers = answersTo(withModel(options(learned) + QStringList{exact}), texts);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        SCOPED_TRACE(texts[i]);
        const auto place = static_cast<qsizetype>(i);
        EXPECT_EQ(fusedAnswers[place][u"stickers"], fused(parts[i].prefixStickers, parts[i].learnedStickers));
        EXPECT_EQ(learnedAnswers[place][u"stickers"], parts[i].learnedStickers);
        for (const auto& answer : {fusedAnswers[place], learnedAnswers[place]}) {
            EXPECT_TRUE(answer.contains(u"tags"));
            EXPECT_EQ(answer[u"tags"], QJsonArray());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(ForStickers, KovalinSearchEngines, testing::Values("0", "1", "0,1"), [](const auto& types) {
    return types.param == "0" ? "OfOne" : types.param == "1" ? "OfTwo" : "OfBoth";
});

TEST(KovalinSearchWithAModel, EndsTheTagsWithTheQueryBehindAnInvisibleMark)
{
    const auto result = runKovalin(withModel({QStringLiteral(" Happy,"), QStringLiteral("zzzz")}));
    ASSERT_EQ(result.objects().size(), 2);
    EXPECT_EQ(result.objects()[0][u"tags"].toArray().last(), catchAll(QStringLiteral(" Happy,")));
    EXPECT_THAT(result.output.toStdString(), HasSubstr("\"\xE2\x80\x8E Happy,...\"]}\n"));
    EXPECT_EQ(result.objects()[1][u"tags"], QJsonArray()) << "without a sticker there is no such tag";
    EXPECT_EQ(result.objects()[1][u"stickers"], QJsonArray());
}

TEST(KovalinSearchWithAModel, FindsTheQueryAgainByItsLastTag)
{
    const auto answers = answersTo(withModel({QStringLiteral("--engine"), learned}), {"happy"});
    ASSERT_EQ(answers.size(), 1);
    const QString last = textsIn(answers[0][u"tags"]).last();
    const auto again = runKovalin(withModel({exact, last}));
    ASSERT_EQ(again.objects().size(), 1);
    EXPECT_EQ(again.objects()[0][u"stickers"], answers[0][u"stickers"]);
}

TEST(KovalinSearchWithAModel, FusesUnlessToldOtherwise)
{
    const std::vector<std::string> texts{"happy", "red h", "love"};
    const auto byDefault = answersTo(withModel({}), texts);
    EXPECT_EQ(byDefault, answersTo(withModel({QStringLiteral("--engine"), fusion}), texts));
    EXPECT_NE(byDefault, answersTo(withModel({QStringLiteral("--engine"), learned}), texts));
    EXPECT_NE(byDefault, answersTo(searchExamples({}), texts));
}

TEST(KovalinSearchWithAModel, LeavesItAloneWithThePrefixEngine)
{
    const std::vector<std::string> texts{"happy", "red h", "love"};
    const QStringList byPrefix{QStringLiteral("--engine"), prefix};
    EXPECT_EQ(answersTo(withModel(byPrefix), texts), answersTo(searchExamples({}), texts));
    const QStringList missing{QStringLiteral("--model"), QStringLiteral("/no/such/model")};
    EXPECT_EQ(answersTo(searchExamples(byPrefix + missing), texts), answersTo(searchExamples({}), texts));
}

TEST(KovalinSearchWithAModel, ExplainsTheTagsThatThePrefixEngineFinds)
{
    const QStringList texts{QStringLiteral("red h"), QStringLiteral("hap")};
    const auto byPrefix = runKovalin(searchExamples(QStringList{explain} + texts)).objects();
    const auto byBoth = runKovalin(withModel(QStringList{explain} + texts)).objects();
    ASSERT_EQ(byPrefix.size(), texts.size());
    ASSERT_EQ(byBoth.size(), texts.size());
    for (qsizetype i = 0; i < texts.size(); ++i) {
        QHash<QString, QJsonObject> known;
        for (const QJsonValue tag : byPrefix[i][u"explain"].toArray()) {
            known.insert(tag[u"tag"].toString(), tag.toObject());
        }
        QStringList explained;
        qsizetype ranked = 0;
        for (const QJsonValue tag : byBoth[i][u"explain"].toArray()) {
            const QString text = tag[u"tag"].toString();
            explained.append(text);
            ranked += known.contains(text);
            const QJsonObject unranked{{QStringLiteral("tag"), text},
                                       {QStringLiteral("rank"), QJsonValue()},
                                       {QStringLiteral("score"), QJsonValue()}};
            EXPECT_EQ(tag.toObject(), known.value(text, unranked)) << text.toStdString();
        }
        EXPECT_EQ(explained, textsIn(byBoth[i][u"tags"]));
        EXPECT_EQ(ranked, known.size()) << "what both find keeps its rank";
        EXPECT_LT(ranked, explained.size()) << "the last tag is the model's alone";
    }
}

TEST(KovalinSearchWithAModel, HasNoRanksFromTheModelAlone)
{
    const auto result = runKovalin(withModel({QStringLiteral("--engine"), learned, explain, QStringLiteral("red h")}));
    ASSERT_EQ(result.objects().size(), 1);
    const auto explained = result.objects()[0][u"explain"].toArray();
    EXPECT_GE(explained.size(), 2);
    for (const QJsonValue tag : explained) {
        EXPECT_TRUE(tag[u"rank"].isNull());
        EXPECT_TRUE(tag[u"score"].isNull());
    }
}

TEST(KovalinSearchWithAModel, ShowsPeopleWhichTagsAreTheModels)
{
    const auto result = runKovalin({QStringLiteral("search"), QStringLiteral("--packs"), examplePacks(),
                                    QStringLiteral("--model"), exampleModel(), explain, QStringLiteral("red h")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output.toStdString(), AllOf(HasSubstr("\n  red heart "), HasSubstr("  prefix, leading  "),
                                                   HasSubstr("  learned  "), HasSubstr("\xE2\x80\x8Ered h...")));
}

TEST(KovalinSearchWithAModel, AnswersEachLineAtOnce)
{
    RunningKovalin kovalin(withModel({}));
    EXPECT_THAT(kovalin.ask("happy").toStdString(), StartsWith("{\"query\":\"happy\",\"stickers\":[{"));
    EXPECT_EQ(kovalin.ask("zzzz"), "{\"query\":\"zzzz\",\"stickers\":[],\"tags\":[]}\n");
    EXPECT_EQ(kovalin.ask(""), "{\"query\":\"\",\"stickers\":[],\"tags\":[]}\n");
}

TEST(KovalinSearchWithAModel, NamesTheFileThatIsNone)
{
    Files files;
    const QString broken = files.write(QStringLiteral("broken.bin"), "no model at all");
    for (const QString& engine : {fusion, learned}) {
        const auto result = runKovalin(searchExamples(
            {QStringLiteral("--model"), broken, QStringLiteral("--engine"), engine, QStringLiteral("happy")}));
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors.toStdString(),
                  "kovalin: " + broken.toStdString() + ": is no search model, or a damaged one\n");
    }
}

TEST(KovalinSearchWithAModel, StoresNothingAndNeedsNoEnvironment)
{
    Files files;
    const QString home = files.path(QStringLiteral("home"));
    ASSERT_TRUE(QDir().mkpath(home));
    // But what a sanitizer is told: without it, it reports on libraries that it can't see into.
    const QString command = QStringLiteral(
        "env -i TSAN_OPTIONS=\"$TSAN_OPTIONS\" %1 \"$KOVALIN\" search --packs \"$PACKS\" --model '%2' --json happy");
    const auto atHome = runShell(command.arg(
        QStringLiteral("HOME='%1' XDG_CACHE_HOME='%1' XDG_DATA_HOME='%1' TMPDIR='%1'").arg(home), exampleModel()));
    EXPECT_EQ(atHome.exitCode, 0);
    EXPECT_EQ(atHome.errors, "");
    EXPECT_EQ(QDir(home).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
    const auto nowhere = runShell(command.arg(QString(), exampleModel()));
    EXPECT_EQ(nowhere.exitCode, 0);
    EXPECT_EQ(nowhere.output, atHome.output);
    EXPECT_EQ(nowhere.output, runKovalin(withModel({QStringLiteral("happy")})).output);
}

} // namespace
