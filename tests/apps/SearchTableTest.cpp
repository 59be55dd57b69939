#include "apps/KovalinProgram.h"

#include <QtCore/QRegularExpression>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kovalin::test;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

/// Tags of every rank, of different widths, and more stickers than are shown.
QByteArray document()
{
    QByteArray stickers;
    for (int i = 1; i <= 12; ++i) {
        stickers += "{\"comic_id\": \"" + QByteArray::number(1000 + i) + "\", \"template_id\": \"template" +
                    QByteArray::number(i) + "\", \"tags\": [\"cat\"]},";
    }
    return "{\"packs\": [{\"title\": \"Cats\", \"visible\": true, \"stickers\": [" + stickers +
           "{\"comic_id\": \"1\", \"url\": \"https://stickers.example/1\", \"tags\": [\"cat face\", \"big cat\", "
           "\"cat: no\", \"catalogue\", \"cat facade\"]},"
           "{\"tags\": [\"日本 cat\", \"cafe\u0301 cat\", \"\\u001b[31m cat\\n\", \"cat face\"]},"
           "{\"tags\": [\"wide cat " +
           QByteArray("\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7").repeated(40) + "\"]}]}]}";
}

class KovalinSearchTable : public testing::Test {
protected:
    std::string table(const QStringList& more)
    {
        const auto result = runKovalin(QStringList{QStringLiteral("search"), QStringLiteral("--packs"), packs} + more);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        EXPECT_TRUE(QString::fromUtf8(result.output).toUtf8() == result.output) << "characters were split";
        return result.output.toStdString();
    }

    Files files;
    QString packs = files.write(QStringLiteral("packs.json"), document());
};

TEST_F(KovalinSearchTable, CountsAndNumbersWhatItFound)
{
    EXPECT_THAT(table({QStringLiteral("face")}),
                AllOf(HasSubstr("\"face\": 1 tag, 2 stickers\n"), HasSubstr("\n  Tag\n  cat face\n"),
                      HasSubstr("\n  #  Comic  Template or URL\n"
                                "  1  1      https://stickers.example/1\n"
                                "  2  -      -\n")));
}

TEST_F(KovalinSearchTable, CutsLongListsAndSaysHowMuchIsLeft)
{
    const auto cut = table({QStringLiteral("cat")});
    EXPECT_THAT(cut, AllOf(HasSubstr("\n   1  1001   template1\n"), HasSubstr("\n  10  1010   template10\n"),
                           HasSubstr("\n  … and 5 more\n"), Not(HasSubstr("template11"))));
    EXPECT_THAT(table({QStringLiteral("--limit"), QStringLiteral("0"), QStringLiteral("cat")}),
                AllOf(HasSubstr("template12"), Not(HasSubstr("more\n"))));
    EXPECT_THAT(table({QStringLiteral("--limit"), QStringLiteral("2"), QStringLiteral("cat")}),
                AllOf(HasSubstr("template2\n  … and 13 more\n"), Not(HasSubstr("template3"))));
}

TEST_F(KovalinSearchTable, TellsRanksInWordsWhenExplaining)
{
    // 12 stickers under the most frequent tag: a score is 12 times the rank, plus 12, minus the tag's own count.
    const auto explained = table({QStringLiteral("--explain"), QStringLiteral("--limit"), QStringLiteral("0"),
                                  QStringLiteral("cat"), QStringLiteral("cat f")});
    const auto hasRow = [&explained](const char* row) {
        return QRegularExpression(QString::fromUtf8(row), QRegularExpression::MultilineOption)
            .match(QString::fromStdString(explained))
            .hasMatch();
    };
    EXPECT_TRUE(hasRow("^  Tag +Rank +Score$"));
    EXPECT_TRUE(hasRow("^  cat +exact +0$"));
    EXPECT_TRUE(hasRow("^  cat face +words, leading +22$"));
    EXPECT_TRUE(hasRow("^  big cat +words +35$"));
    EXPECT_TRUE(hasRow("^  catalogue +prefix +59$"));
    EXPECT_TRUE(hasRow("^  cat facade +prefix, leading +47$"));
    EXPECT_THAT(table({QStringLiteral("cat")}), Not(HasSubstr("Rank")));
}

TEST_F(KovalinSearchTable, AlignsByWhatIsSeen)
{
    const auto explained =
        table({QStringLiteral("--explain"), QStringLiteral("--limit"), QStringLiteral("0"), QStringLiteral("cat")});
    // The longest tag is cut to 60 columns; "日本" takes four of them, the "e" with its accent one.
    const auto padded = [](const char* tag, std::size_t width, const char* rank) {
        return std::string(tag).append(60 - width, ' ').append(rank);
    };
    EXPECT_THAT(explained, HasSubstr(padded("\n  big cat", 7, "  words ")));
    EXPECT_THAT(explained, HasSubstr(padded("\n  日本 cat", 8, "  words ")));
    EXPECT_THAT(explained, HasSubstr(padded("\n  cafe\u0301 cat", 8, "  words ")));
}

TEST_F(KovalinSearchTable, CutsLongCellsBetweenCharacters)
{
    const std::string family = "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7";
    const auto explained = table({QStringLiteral("wide")});
    std::string shown;
    for (int i = 0; i < 25; ++i) { // 9 columns of "wide cat ", 25 times 2, and the sign that something is missing
        shown += family;
    }
    EXPECT_THAT(explained, HasSubstr("\n  wide cat " + shown + "…\n"));
}

TEST_F(KovalinSearchTable, ShowsNothingThatWouldMoveTheCursor)
{
    const auto shown = table({QStringLiteral("--limit"), QStringLiteral("0"), QStringLiteral("cat")});
    EXPECT_THAT(shown, AllOf(Not(HasSubstr("\x1b")), HasSubstr("\uFFFD[31m cat\uFFFD\n")));
}

TEST_F(KovalinSearchTable, AnswersAnExactSearchWithStickersAlone)
{
    EXPECT_THAT(table({QStringLiteral("--exact"), QStringLiteral("--explain"), QStringLiteral("Cats")}),
                AllOf(HasSubstr("\"Cats\": 0 tags, 15 stickers\n"), Not(HasSubstr("Tag"))));
}

} // namespace
