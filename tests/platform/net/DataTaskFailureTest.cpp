#include "platform/net/DataTask.h"
#include "platform/net/Fetching.h"
#include "platform/net/UrlSession.h"
#include "support/LoopbackServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace kovalin::platform {
namespace {

using namespace std::chrono_literals;
using test::fetch;
using test::LoopbackServer;
using test::ScriptedAnswer;
using test::TaskEnd;
using test::withoutProxy;

class DataTaskFailures : public testing::Test {
protected:
    [[nodiscard]] TaskEnd get(const QString& path) { return fetch(session, {.url = server.url(path)}); }

    LoopbackServer server;
    UrlSession session{withoutProxy()};
};

TEST_F(DataTaskFailures, TellsACutBody)
{
    for (const qsizetype sent : {0, 1, 999, 0, 1, 999, 0, 1, 999}) {
        server.script("/", ScriptedAnswer::cut(QByteArray(1000, 'x'), sent));
        const TaskEnd end = get(QStringLiteral("/"));
        EXPECT_EQ(end.kind(), "ConnectionLost") << sent;
        EXPECT_FALSE(end.response);
        EXPECT_EQ(end.data, "");
    }
}

TEST_F(DataTaskFailures, TellsACutBodyOfABadStatusToo)
{
    ScriptedAnswer answer = ScriptedAnswer::cut("not found, since", 3);
    answer.status = 404;
    server.script("/", answer);
    EXPECT_EQ(get(QStringLiteral("/")).kind(), "ConnectionLost");
}

// Qt tells a cut among chunks unless the end of the connection arrives together with the last bytes.
TEST_F(DataTaskFailures, EndsOnABodyCutAmongItsChunks)
{
    for (const QByteArray& body : {QByteArray("5\r\nabc"), QByteArray("3\r\nabc\r\n"), QByteArray("3\r\nabc\r\n1")}) {
        server.script("/", ScriptedAnswer::garbage("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + body));
        const TaskEnd end = get(QStringLiteral("/"));
        EXPECT_THAT(end.kind(), testing::AnyOf("ConnectionLost", ""));
        EXPECT_TRUE(end.data == "abc" || end.error);
    }
}

TEST_F(DataTaskFailures, TellsAConnectionClosedWithoutAnswer)
{
    server.script("/", ScriptedAnswer::closed());
    EXPECT_EQ(get(QStringLiteral("/")).kind(), "ConnectionLost");
}

TEST_F(DataTaskFailures, TellsAHeadThatIsCut)
{
    server.script("/", ScriptedAnswer::garbage("HTTP/1.1 200 OK\r\nContent-Le"));
    EXPECT_EQ(get(QStringLiteral("/")).kind(), "ConnectionLost");
}

TEST_F(DataTaskFailures, FailsOnWhatIsNoHttp)
{
    for (const QByteArray& bytes : {QByteArray("SSH-2.0-x\r\n\r\n"), QByteArray("\0\1\2\3\r\n\r\n", 8),
                                    QByteArray("HTTP/1.1 two\r\n\r\n"), QByteArray(70'000, 'x')}) {
        server.script("/", ScriptedAnswer::garbage(bytes));
        const TaskEnd end = get(QStringLiteral("/"));
        EXPECT_NE(end.kind(), "") << bytes.left(20).toStdString();
        EXPECT_FALSE(end.response);
    }
}

TEST_F(DataTaskFailures, SendsAPostOnceEvenIfTheConnectionBreaks)
{
    server.script("/", ScriptedAnswer::closed());
    for (const QByteArray& body : {QByteArray(), QByteArray("pay"), QByteArray(1'000'000, 'p')}) {
        const std::size_t before = server.requests().size();
        const UrlRequest request{
            .url = server.url(QStringLiteral("/")), .method = UrlRequest::Method::Post, .body = body};
        EXPECT_EQ(fetch(session, request).kind(), "ConnectionLost");
        EXPECT_EQ(server.requests().size(), before + 1) << body.size();
    }
}

TEST_F(DataTaskFailures, TellsARefusedConnection)
{
    server.stopListening();
    EXPECT_EQ(get(QStringLiteral("/")).kind(), "CannotConnect");
}

TEST_F(DataTaskFailures, TimesOutWhereNothingComes)
{
    server.script("/", ScriptedAnswer::never());
    const TaskEnd end = fetch(session, {.url = server.url(QStringLiteral("/")), .idleTimeout = 1ms});
    EXPECT_EQ(end.kind(), "TimedOut");
    EXPECT_FALSE(end.response);
}

TEST_F(DataTaskFailures, TimesOutInTheMidstOfABody)
{
    // Longer than the head takes, or the test would show the time-out before it.
    server.script("/", {.body = "begun", .sentBytes = 2, .end = ScriptedAnswer::End::Silence});
    EXPECT_EQ(fetch(session, {.url = server.url(QStringLiteral("/")), .idleTimeout = 50ms}).kind(), "TimedOut");
}

TEST_F(DataTaskFailures, RefusesABodyThatIsAnnouncedTooLarge)
{
    server.script("/", {.headers = {{"Content-Length", "9000000000000"}}, .end = ScriptedAnswer::End::Silence});
    EXPECT_EQ(get(QStringLiteral("/")).kind(), "TooLarge");
}

TEST_F(DataTaskFailures, RefusesABodyThatGrowsTooLarge)
{
    server.script("/", {.body = QByteArray(1001, 'x'), .hasLength = false, .end = ScriptedAnswer::End::Silence});
    const TaskEnd end = fetch(session, {.url = server.url(QStringLiteral("/")), .maxAnswerBytes = 1000});
    EXPECT_EQ(end.kind(), "TooLarge");
    EXPECT_EQ(end.data, "");
}

TEST_F(DataTaskFailures, TakesABodyOfJustTheLimit)
{
    server.script("/", ScriptedAnswer::ok(QByteArray(1000, 'x')));
    EXPECT_EQ(fetch(session, {.url = server.url(QStringLiteral("/")), .maxAnswerBytes = 1000}).data.size(), 1000);
}

} // namespace
} // namespace kovalin::platform
