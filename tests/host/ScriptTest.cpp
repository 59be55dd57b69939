// What the host program makes of scripts that it can't carry out.
#include "host/HostStory.h"

#include <QtCore/QFile>

namespace kovalin::test {
namespace {

class HostScript : public HostStory {
protected:
    /// What is said of a script that can't be carried out, without its name; empty if it can.
    QByteArray faultOf(const QByteArray& script)
    {
        const int exitCode = run(script);
        const QByteArray beginning = "kovalin-host: " + path(QStringLiteral("script.txt")).toUtf8();
        EXPECT_EQ(exitCode, errors.isEmpty() ? 0 : 1);
        EXPECT_LE(errors.count('\n'), 1) << errors.toStdString();
        return errors.startsWith(beginning) ? errors.sliced(beginning.size()).trimmed() : errors;
    }
};

TEST_F(HostScript, IsReadWholeBeforeAnythingBegins)
{
    EXPECT_EQ(faultOf("# a comment\n\nwait 1\ntree before\nfly away\n"), ":5: there is no command fly");
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("out/before.json"))));
}

TEST_F(HostScript, SaysHowACommandIsUsed)
{
    EXPECT_EQ(faultOf("wait\n"), ":1: usage: wait MS");
    EXPECT_EQ(faultOf("login now\n"), ":1: usage: login");
    EXPECT_EQ(faultOf("term replace\nterm sideways happy\n"), ":2: term: sideways is none of replace|blend");
    EXPECT_EQ(faultOf("wait -1\n"), ":1: wait: -1 is no number of milliseconds");
    EXPECT_EQ(faultOf("resize 10 wide\n"), ":1: resize: wide is no number of points");
    EXPECT_EQ(faultOf("key NoSuchKey\n"), ":1: key: there is no key NoSuchKey");
    EXPECT_EQ(faultOf("tree ../elsewhere\n"), ":1: tree: ../elsewhere is no name for a file");
    EXPECT_TRUE(faultOf("backend /api/configs sometimes\n").startsWith(":1: backend: "));
}

TEST_F(HostScript, EndsAtAStepThatCantBeDone)
{
    EXPECT_EQ(faultOf("wait 0\nwait-for nobody 0\ntree after\n"), ":2: wait-for: no nobody on screen within 0 ms");
    EXPECT_TRUE(files.has(QStringLiteral("failed"), QStringLiteral("host_field")));
    EXPECT_FALSE(files.picture(QStringLiteral("failed")).isEmpty());
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("out/after.json"))));
    EXPECT_EQ(faultOf("picker 2\n"), ":1: picker: there is no picker 2");
}

TEST_F(HostScript, IsOnlyReadWhereThereIsOne)
{
    EXPECT_EQ(run("", {QStringLiteral("--script"), path(QStringLiteral("none.txt"))}), 2) << "given twice";
    EXPECT_EQ(run("", {QStringLiteral("--pickers"), QStringLiteral("3")}), 2);
    EXPECT_EQ(run("", {QStringLiteral("--backend"), QStringLiteral("nowhere")}), 1);
}

} // namespace
} // namespace kovalin::test
