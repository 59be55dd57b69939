#include "apps/KovalinProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kovalin::test;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

ProgramResult runSequenceAsJson(const QByteArray& input)
{
    return runKovalin({QStringLiteral("sequence"), QStringLiteral("--json")}, input);
}

TEST(KovalinSequence, AnswersEachLineWithWhatAFreshSequenceKeeps)
{
    const auto result = runSequenceAsJson("[[\"h\",1],[\"he\",1],[\"hey\",1],[\"hug\",2],[\"hey \",1]]\n"
                                          "[[\"he\",1]]\n"
                                          "[]\n"
                                          " [ [ \"gone\" , 0 ] , [\"\",1] ] \r\n"
                                          "[[\"no line end\",4]]");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "{\"terms\":[[\"hey\",1],[\"hug\",2],[\"hey \",1]]}\n"
                             "{\"terms\":[[\"he\",1]]}\n"
                             "{\"terms\":[]}\n"
                             "{\"terms\":[]}\n"
                             "{\"terms\":[[\"no line end\",4]]}\n");
}

TEST(KovalinSequence, PassesUnknownCategoriesOn)
{
    const auto result = runSequenceAsJson("[[\"a\",5],[\"ab\",-1],[\"abc\",2147483647]]\n");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "{\"terms\":[[\"a\",5],[\"ab\",-1],[\"abc\",2147483647]]}\n");
}

TEST(KovalinSequence, KeepsTextOfAnyKind)
{
    const auto result = runSequenceAsJson("[[\"\xF0\x9F\x98\x80 \\\"\\n\\u0000\xC3\xA9\",3]]\n");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "{\"terms\":[[\"\xF0\x9F\x98\x80 \\\"\\n\\u0000\xC3\xA9\",3]]}\n");
}

TEST(KovalinSequence, TellsPeopleTheCategoryInWords)
{
    const auto result = runKovalin({QStringLiteral("sequence")},
                                   "[[\"hey\",1],[\"hug\",2],[\"kiss\",3],[\"host\",4],[\"odd\",9]]\n[]\n");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "\"hey\" (typed text), \"hug\" (suggested tag), \"kiss\" (default tag), "
                             "\"host\" (host term), \"odd\" (category 9)\n"
                             "no terms\n");
}

TEST(KovalinSequence, NamesTheLineThatIsNoListOfPushes)
{
    const QList<QByteArray> faulty{"",
                                   "x",
                                   "{}",
                                   "3",
                                   "\"text\"",
                                   "[",
                                   "[[\"a\",1]",
                                   "[[\"a\"]]",
                                   "[[\"a\",1,2]]",
                                   "[[1,\"a\"]]",
                                   "[[\"a\",\"1\"]]",
                                   "[[\"a\",1.5]]",
                                   "[[\"a\",null]]",
                                   "[[\"a\",true]]",
                                   "[[\"a\",1e10]]",
                                   "[\"a\",1]",
                                   "[null]",
                                   "[[\"a\xFF\",1]]",
                                   "[[\"a\",1]] []",
                                   QByteArray(1'000'000, '[')};
    for (const QByteArray& line : faulty) {
        SCOPED_TRACE(line.left(40).toStdString());
        const auto result = runSequenceAsJson("[[\"good\",1]]\n" + line + "\n[[\"never read\",1]]\n");
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "{\"terms\":[[\"good\",1]]}\n");
        EXPECT_THAT(result.errors.toStdString(), StartsWith("kovalin: standard input, line 2: "));
        EXPECT_EQ(result.errors.count('\n'), 1);
        EXPECT_TRUE(result.errors.endsWith('\n'));
    }
}

TEST(KovalinSequence, AnswersEachLineAtOnce)
{
    RunningKovalin kovalin({QStringLiteral("sequence"), QStringLiteral("--json")});
    EXPECT_EQ(kovalin.ask("[[\"a\",1]]"), "{\"terms\":[[\"a\",1]]}\n");
    EXPECT_EQ(kovalin.ask("[]"), "{\"terms\":[]}\n");
}

TEST(KovalinSequence, HasNothingToSayToNoInput)
{
    const auto result = runSequenceAsJson("");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
}

} // namespace
