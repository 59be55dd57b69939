#include "apps/backend/BackendProgram.h"
#include "apps/backend/ContentFiles.h"
#include "apps/backend/RawClient.h"
#include "apps/events/EncodedBatch.h"

#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpServer>

#include <gtest/gtest.h>

#include <csignal>

namespace kovalin::test {
namespace {

struct HttpEnd {
    int status = 0; // 0 where the connection ended before
    QByteArray data;
};

/// Sends a request, up to where its connection header comes, and takes the answer.
HttpEnd ask(const QUrl& server, const QByteArray& request, const QByteArray& body = {})
{
    RawClient client(server);
    client.send(request + " HTTP/1.1\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) +
                "\r\n\r\n" + body);
    const QByteArray answer = client.readToEnd();
    const qsizetype headEnd = answer.indexOf("\r\n\r\n");
    return {.status = answer.split(' ').value(1).toInt(), .data = headEnd < 0 ? QByteArray() : answer.mid(headEnd + 4)};
}

HttpEnd get(const QUrl& server, const QByteArray& path)
{
    return ask(server, "GET " + path);
}

class Program : public testing::Test {
protected:
    [[nodiscard]] QStringList arguments(const QStringList& more = {}) const
    {
        return QStringList{QStringLiteral("--content"), content.path()} + more;
    }

    const ContentFiles content{};
};

constexpr const char* kConfigs = "/api/configs";

TEST_F(Program, ServesAFolderAndTellsOfEachRequest)
{
    content.write(QStringLiteral("models/LearnedSearch/4.bin"), "model");
    BackendProgram program(arguments());
    const QUrl server = program.readAddress();
    ASSERT_GT(server.port(), 0);
    EXPECT_EQ(get(server, "/content/models/LearnedSearch/4").data, "model");
    EXPECT_EQ(program.readLine(), "GET /content/models/LearnedSearch/4");
    EXPECT_EQ(get(server, "/content/models/x?client_cached_version=-1").status, 404);
    EXPECT_EQ(program.readLine(), "GET /content/models/x?client_cached_version=-1");
}

TEST_F(Program, ShowsMetricsALineAnEntry)
{
    BackendProgram program(arguments());
    const QUrl server = program.readAddress();
    const QByteArray body = R"({"client_id":"c","batch_id":"2f1e0ffb-2f83-4a6a-9d9c-3b6b5f7c0d11","entries":[
        {"id":"a","type":"count","name":"picker:open","value":3,"time":1},
        {"id":"b","type":"latency","name":"odd\nname","milliseconds":12.5,"time":2},
        {"id":"a","type":"count","name":"picker:open","value":3,"time":1}]})";
    EXPECT_EQ(ask(server, "POST /api/metrics", body).status, 204);
    EXPECT_EQ(program.readLine(), "POST /api/metrics");
    EXPECT_EQ(program.readLine(), "metrics count picker:open 3");
    EXPECT_EQ(program.readLine(), "metrics latency odd?name 12.5 ms");
    EXPECT_EQ(program.readLine(), "metrics count picker:open 3 (again)");
}

TEST_F(Program, ShowsAnalyticsEventsALineAnEvent)
{
    BackendProgram program(arguments());
    const QUrl server = program.readAddress();
    const QByteArray body =
        encodedLaterBatch(batchText(eventText("a", "kovalin_kit_share { sticker_id: \"odd\\nid\" }") +
                                    eventText("b", "preview_sticker_id: \"9\"") + eventText("a", "")));
    EXPECT_EQ(ask(server, "POST /api/events", body).status, 204);
    EXPECT_EQ(program.readLine(), "POST /api/events");
    EXPECT_EQ(program.readLine(), R"(event kovalin_kit_share {"sticker_id":"odd\nid"})");
    EXPECT_EQ(program.readLine(), R"(event (none) {} unknown [{"in":"data","number":2,"value":"9","wire_type":2}])");
    EXPECT_EQ(program.readLine(), "event (none) {} (again)");
}

TEST_F(Program, SaysNothingOfEventsThatCantBeRead)
{
    BackendProgram program(arguments({QStringLiteral("--until-eof")}));
    const QUrl server = program.readAddress();
    const HttpEnd end = ask(server, "POST /api/events", "\x0a\x02\xc3(");
    EXPECT_EQ(end.status, 400);
    EXPECT_EQ(end.data, "batch_id: no valid UTF-8, at byte 2\n");
    EXPECT_EQ(program.readLine(), "POST /api/events");
    program.closeInput();
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.output(), "");
    EXPECT_EQ(program.errors(), "");
}

TEST_F(Program, ObeysStandardInput)
{
    BackendProgram program(arguments());
    const QUrl server = program.readAddress();
    program.write("backend /api/configs 503 retry-after 2\n");
    EXPECT_EQ(program.readLine(), "ok");
    EXPECT_EQ(get(server, kConfigs).status, 503);
    EXPECT_EQ(program.readLine(), "GET /api/configs");
    program.write("backend /api/co");
    program.write("nfigs ok\r\n\nbackend /x cut\n");
    EXPECT_EQ(program.readLine(), "ok");
    EXPECT_EQ(program.readLine(), "ok");
    EXPECT_EQ(get(server, kConfigs).status, 200);
}

TEST_F(Program, SaysWhatIsWrongWithALineAndGoesOn)
{
    BackendProgram program(arguments({QStringLiteral("--answer"), QStringLiteral("/api/configs 503")}));
    const QUrl server = program.readAddress();
    program.write("backend /api/configs okay\nscreenshot x\n\xFF\n");
    EXPECT_TRUE(program.readErrorLine().startsWith("kovalin-backend: standard input: \"okay\" is no rule: "));
    EXPECT_EQ(program.readErrorLine(),
              "kovalin-backend: standard input: no such command: a line is \"backend PATH RULE\"");
    EXPECT_EQ(program.readErrorLine(),
              "kovalin-backend: standard input: no such command: a line is \"backend PATH RULE\"");
    EXPECT_EQ(get(server, kConfigs).status, 503);
    program.write("backend /api/configs ok\n");
    EXPECT_EQ(program.readLine(), "GET /api/configs");
    EXPECT_EQ(program.readLine(), "ok");
    EXPECT_EQ(get(server, kConfigs).status, 200);
}

TEST_F(Program, TakesRulesFromTheCommandLine)
{
    BackendProgram program(arguments({QStringLiteral("--answer"), QStringLiteral("/api/* 500"),
                                      QStringLiteral("--answer"), QStringLiteral("/api/configs garbage")}));
    const QUrl server = program.readAddress();
    EXPECT_EQ(get(server, "/api/other").status, 500);
    EXPECT_EQ(get(server, kConfigs).data.size(), 64);
}

TEST_F(Program, ServesTheExampleContentWithoutAWordOfComplaint)
{
    BackendProgram program(
        {QStringLiteral("--content"), QStringLiteral(KOVALIN_EXAMPLE_CONTENT), QStringLiteral("--until-eof")});
    const QUrl server = program.readAddress();
    for (const char* path : {"/api/configs", "/content/models/LearnedSearch", "/avatars/alex-1.png",
                             "/stickers/hello-wave/alex-1.png", "/stickers/big-hug/alex-1/bea-2.png"}) {
        EXPECT_EQ(get(server, QByteArray(path)).status, 200) << path;
    }
    program.closeInput();
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.errors(), "");
}

TEST_F(Program, TakesBodiesWithSpacesAndTheLifeOfTokens)
{
    BackendProgram program(arguments({QStringLiteral("--token-seconds"), QStringLiteral("5")}));
    const QUrl server = program.readAddress();
    program.write("backend /api/configs body { \"a\":  1 }\n");
    EXPECT_EQ(program.readLine(), "ok");
    EXPECT_EQ(get(server, kConfigs).data, "{ \"a\":  1 }");
}

TEST_F(Program, NamesContentThatCantBeUsedOnStandardError)
{
    content.write(QStringLiteral("configs.json"), "[]");
    BackendProgram program(arguments());
    EXPECT_EQ(get(program.readAddress(), kConfigs).status, 500);
    EXPECT_EQ(program.readErrorLine(),
              "kovalin-backend: " + content.path().toUtf8() + "/configs.json: \"ttlSeconds\" is no number");
}

TEST_F(Program, EndsCleanlyOnSignalsWhileAnswersHang)
{
    for (const int number : {SIGTERM, SIGINT}) {
        BackendProgram program(arguments({QStringLiteral("--answer"), QStringLiteral("/* nothing")}));
        const QUrl server = program.readAddress();
        RawClient client(server);
        client.send("GET /api/configs HTTP/1.1\r\n\r\n");
        EXPECT_EQ(program.readLine(), "GET /api/configs");
        ::kill(static_cast<pid_t>(program.processId()), number);
        EXPECT_EQ(program.exitCode(), 0);
        EXPECT_EQ(program.errors(), "");
        EXPECT_EQ(client.readToEnd(), "");
    }
}

TEST_F(Program, EndsWithStandardInputWhereThatIsWanted)
{
    BackendProgram program(arguments({QStringLiteral("--until-eof")}));
    ASSERT_GT(program.readAddress().port(), 0);
    program.write("backend /x ok");
    program.closeInput();
    EXPECT_EQ(program.readLine(), "ok");
    EXPECT_EQ(program.exitCode(), 0);
}

TEST_F(Program, GoesOnWithoutStandardInputElse)
{
    BackendProgram program(arguments());
    const QUrl server = program.readAddress();
    program.write("backend /x ok");
    program.closeInput();
    EXPECT_EQ(program.readLine(), "ok"); // which is told of at the end of the input
    EXPECT_EQ(get(server, kConfigs).status, 200);
    ::kill(static_cast<pid_t>(program.processId()), SIGTERM);
    EXPECT_EQ(program.exitCode(), 0);
}

TEST_F(Program, NamesAFolderThatIsMissing)
{
    const QString missing = content.path() + QStringLiteral("/none");
    BackendProgram program({QStringLiteral("--content"), missing});
    EXPECT_EQ(program.exitCode(), 1);
    EXPECT_EQ(program.output(), "");
    EXPECT_EQ(program.errors(), "kovalin-backend: " + missing.toUtf8() + ": no such folder\n");
}

TEST_F(Program, NamesAPortThatIsTaken)
{
    QTcpServer other;
    ASSERT_TRUE(other.listen(QHostAddress::LocalHost));
    const QByteArray port = QByteArray::number(other.serverPort());
    BackendProgram program(arguments({QStringLiteral("--port"), QString::fromLatin1(port)}));
    EXPECT_EQ(program.exitCode(), 1);
    EXPECT_EQ(program.output(), "");
    EXPECT_EQ(program.errors(), "kovalin-backend: port " + port + ": The bound address is already in use\n");
}

TEST_F(Program, RefusesWrongUsage)
{
    const QList<QStringList> wrong{{},
                                   {QStringLiteral("--content")},
                                   arguments({QStringLiteral("more")}),
                                   arguments({QStringLiteral("--port"), QStringLiteral("70000")}),
                                   arguments({QStringLiteral("--port"), QStringLiteral("x")}),
                                   arguments({QStringLiteral("--answer"), QStringLiteral("/x okay")}),
                                   arguments({QStringLiteral("--token-seconds"), QStringLiteral("0")}),
                                   arguments({QStringLiteral("--answer"), QStringLiteral("/x"), QStringLiteral("ok")})};
    for (const QStringList& each : wrong) {
        BackendProgram program(each);
        EXPECT_EQ(program.exitCode(), 2) << each.join(u' ').toStdString();
        EXPECT_EQ(program.output(), "");
        EXPECT_TRUE(program.errors().startsWith("kovalin-backend: "));
    }
}

TEST_F(Program, TellsHowItIsUsed)
{
    BackendProgram help({QStringLiteral("--help")});
    EXPECT_EQ(help.exitCode(), 0);
    EXPECT_TRUE(help.output().contains("--content"));
    BackendProgram version({QStringLiteral("--version")});
    EXPECT_EQ(version.exitCode(), 0);
    EXPECT_TRUE(version.output().startsWith("kovalin-backend "));
}

} // namespace
} // namespace kovalin::test
