#include "apps/KovalinProgram.h"
#include "apps/events/EncodedBatch.h"

#include <QtCore/QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kovalin::test;
using testing::HasSubstr;

namespace {

class KovalinEvents : public testing::Test {
protected:
    static ProgramResult decode(const QString& path, const QStringList& more = {}, const QByteArray& input = {})
    {
        return runKovalin(QStringList{QStringLiteral("events"), QStringLiteral("--decode"), path} + more, input);
    }

    void expectRefused(const QString& path, const QByteArray& fault)
    {
        for (const QStringList& more : {QStringList(), QStringList{QStringLiteral("--json")}}) {
            const auto result = decode(path, more);
            EXPECT_EQ(result.exitCode, 1);
            EXPECT_EQ(result.output, "");
            EXPECT_EQ(result.errors.toStdString(),
                      QByteArray("kovalin: " + path.toUtf8() + ": " + fault + '\n').toStdString());
        }
    }

    void expectContentRefused(const QByteArray& content, const QByteArray& fault)
    {
        expectRefused(files.write(QStringLiteral("batch.bin"), content), fault);
    }

    Files files;
};

/// A share, a change of the preview icon, an event whose id and time are absent.
QByteArray threeEvents()
{
    return encodedLaterBatch(batchText("dropped: 2 events { event_id: \"a\" time_millis: 1700000000123 data { " +
                                       shareText("4711").replace("share_category: 1", "") + " } } " +
                                       eventText("b", "preview_sticker_id: \"é\"") + "events {}"));
}

TEST_F(KovalinEvents, AreALineEachBehindOneOnTheBatch)
{
    const auto result = decode(files.write(QStringLiteral("batch.bin"), threeEvents()));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output.toStdString(),
              std::string("batch ") + kBatchId +
                  ": 3 events, 2 dropped\n"
                  "2023-11-14T22:13:20.123Z a kovalin_kit_share {\"sticker_id\":\"4711\"}\n"
                  "1970-01-01T00:00:00.017Z b (none) {} "
                  "unknown [{\"in\":\"data\",\"number\":2,\"value\":\"é\",\"wire_type\":2}]\n"
                  "1970-01-01T00:00:00.000Z (no id) (none)\n");
}

TEST_F(KovalinEvents, AreJsonObjectsOnRequest)
{
    const auto result = decode(files.write(QStringLiteral("batch.bin"), threeEvents()), {QStringLiteral("--json")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    const std::string id = std::string("{\"batch_id\":\"") + kBatchId + "\",";
    EXPECT_EQ(result.output.toStdString(),
              id + "\"count\":3,\"dropped\":2}\n" + //
                  id +
                  R"("event":"kovalin_kit_share","event_id":"a","fields":{"sticker_id":"4711"},)"
                  "\"time_millis\":1700000000123}\n" +
                  id +
                  R"("event":null,"event_id":"b","fields":{},"time_millis":17,)"
                  R"("unknown":[{"in":"data","number":2,"value":"é","wire_type":2}]})"
                  "\n" +
                  id + "\"event\":null,\"event_id\":\"\",\"fields\":null,\"time_millis\":0}\n");
}

TEST_F(KovalinEvents, AreReadFromStandardInputToo)
{
    const QByteArray batch = encodedBatch(batchText(eventText("e", shareText("9"))));
    for (const QStringList& more : {QStringList(), QStringList{QStringLiteral("--json")}}) {
        const auto fromFile = decode(files.write(QStringLiteral("batch.bin"), batch), more);
        const auto fromInput = decode(QStringLiteral("-"), more, batch);
        EXPECT_EQ(fromInput.exitCode, 0);
        EXPECT_EQ(fromInput.output, fromFile.output);
        EXPECT_EQ(fromInput.output.count('\n'), 2);
    }
    const auto result = decode(QStringLiteral("-"), {}, "x");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors,
              "kovalin: standard input: is no batch of events: field 15: ends within a number, at byte 1\n");
}

TEST_F(KovalinEvents, MayBeNone)
{
    const auto result = decode(files.write(QStringLiteral("[a,b]"), encodedBatch("batch_id: \"b\"")));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "batch b: 0 events, 0 dropped\n");
}

TEST_F(KovalinEvents, StayOnTheirLinesWhateverIsInThem)
{
    const QByteArray batch =
        encodedLaterBatch("batch_id: \"two\\nlines\" region: \"r\" events { event_id: \"\\x1b[31m\" time_millis: "
                          "9223372036854775807 data { kovalin_kit_share { sticker_id: \"\\n\\x00\" } } }");
    const auto result = decode(files.write(QStringLiteral("batch.bin"), batch));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(
        result.output.toStdString(),
        "batch two�lines: 1 event, 0 dropped unknown [{\"in\":\"\",\"number\":9,\"value\":\"r\",\"wire_type\":2}]\n"
        "9223372036854775807 �[31m kovalin_kit_share {\"sticker_id\":\"\\n\\u0000\"}\n");
}

TEST_F(KovalinEvents, OfAFileThatCannotBeReadAreRefused)
{
    expectRefused(files.path(QStringLiteral("missing.bin")), "No such file or directory");
    expectRefused(files.path(QStringLiteral(".")), "Is a directory");
    const QString locked = files.write(QStringLiteral("locked.bin"), threeEvents());
    QFile::setPermissions(locked, {});
    if (!QFile(locked).open(QIODevice::ReadOnly)) { // whoever may read everything can't be refused
        expectRefused(locked, "Permission denied");
    }
}

TEST_F(KovalinEvents, OfAFileThatIsNoBatchAreRefused)
{
    expectContentRefused("", "is empty");
    expectContentRefused("\n", "is no batch of events: batch_id: ends within a number, at byte 1");
    expectContentRefused(R"({"packs":[]})",
                         "is no batch of events: field 15.field 4: a length of 112 goes beyond the end, at byte 3");
    expectContentRefused(encodedBatch(batchText(eventText("e", ""))).chopped(1),
                         "is no batch of events: events#1: a length of 7 goes beyond the end, at byte 40");
    expectContentRefused(encodedBatch(eventText("e", "")), "is no batch of events: no \"batch_id\"");
}

TEST_F(KovalinEvents, OfAnEndlessFileAreRefused)
{
    expectRefused(QStringLiteral("/dev/zero"), "is no batch of events: longer than 67108864 bytes");
}

TEST_F(KovalinEvents, AreRefusedInOneLineWhateverTheNameOfTheFile)
{
    const auto result = decode(files.path(QStringLiteral("two\nlines\x1b[31m")));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors.count('\n'), 1);
    EXPECT_THAT(result.errors.toStdString(), HasSubstr("two?lines?[31m: No such file or directory\n"));
}

TEST_F(KovalinEvents, HelpTellsTheOptions)
{
    const auto result = runKovalin({QStringLiteral("events"), QStringLiteral("--help")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output.toStdString(), testing::AllOf(HasSubstr("--decode FILE"), HasSubstr("--json")));
}

} // namespace
