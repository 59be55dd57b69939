#include "platform/net/DataTask.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/net/Fetching.h"
#include "platform/net/UrlSession.h"
#include "support/LoopbackServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <numeric>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace kovalin::platform {
namespace {

using test::fetch;
using test::LoopbackServer;
using test::ScriptedAnswer;
using test::TaskEnd;
using test::TaskEndBox;
using test::withoutProxy;

class DataTasks : public testing::Test {
protected:
    [[nodiscard]] TaskEnd get(const QString& path) { return fetch(session, {.url = server.url(path)}); }

    LoopbackServer server;
    UrlSession session{withoutProxy()};
};

QByteArray everyByte(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    std::iota(bytes.begin(), bytes.end(), '\0');
    return bytes;
}

TEST_F(DataTasks, GivesStatusHeadersAndBody)
{
    server.script("/a", {.headers = {{"X-Kind", "one"}}, .body = "hello"});
    const TaskEnd end = get(QStringLiteral("/a"));
    EXPECT_EQ(end.kind(), "");
    EXPECT_EQ(end.data, "hello");
    EXPECT_EQ(end.status(), 200);
    EXPECT_EQ(end.response->header("X-Kind"), "one");
    EXPECT_EQ(end.response->url, server.url(QStringLiteral("/a")));
    EXPECT_EQ(server.requests().at(0).method, "GET");
}

TEST_F(DataTasks, DoesNothingUntilResumed)
{
    server.script("/", ScriptedAnswer::ok("x"));
    const TaskEndBox idle;
    const auto task = session.dataTask({.url = server.url(QStringLiteral("/idle"))}, idle.handler());
    EXPECT_EQ(get(QStringLiteral("/")).status(), 200);
    EXPECT_EQ(server.requests().size(), 1U);
    EXPECT_EQ(idle.count(), 0);
    task->resume();
    EXPECT_EQ(idle.wait().status(), 404);
}

TEST_F(DataTasks, AsksOnceHoweverOftenResumed)
{
    const TaskEndBox box;
    const auto task = session.dataTask({.url = server.url(QStringLiteral("/"))}, box.handler());
    task->resume();
    task->resume();
    EXPECT_EQ(box.wait().status(), 404);
    task->resume();
    EXPECT_EQ(get(QStringLiteral("/last")).status(), 404);
    EXPECT_EQ(server.requests().size(), 2U);
    EXPECT_EQ(box.count(), 1);
}

TEST_F(DataTasks, TakesAnyStatusForAnAnswer)
{
    for (const int status :
         {200, 201, 204, 304, 400, 401, 403, 404, 405, 407, 409, 410, 418, 429, 500, 501, 503, 599}) {
        const bool hasBody = status != 204 && status != 304;
        const QByteArray body = hasBody ? QByteArray("because") : QByteArray();
        server.script("/s", {.status = status, .body = body, .hasLength = hasBody});
        if (hasBody) {
            server.script("/s", ScriptedAnswer::withStatus(status, body));
        }
        const TaskEnd end = get(QStringLiteral("/s"));
        EXPECT_EQ(end.kind(), "") << status << ' ' << (end.error ? end.error->text.toStdString() : "");
        EXPECT_EQ(end.status(), status);
        EXPECT_EQ(end.data, body) << status;
    }
}

TEST_F(DataTasks, TakesARedirectWithoutLocationForAnAnswer)
{
    server.script("/", ScriptedAnswer::withStatus(302, "nowhere"));
    const TaskEnd end = get(QStringLiteral("/"));
    EXPECT_EQ(end.status(), 302);
    EXPECT_EQ(end.data, "nowhere");
}

TEST_F(DataTasks, FindsHeadersWhateverTheirCase)
{
    server.script("/", {.headers = {{"x-LOUD", "yes"}}});
    const TaskEnd end = get(QStringLiteral("/"));
    EXPECT_EQ(end.response->header("X-Loud"), "yes");
    EXPECT_EQ(end.response->header("x-loud"), "yes");
    EXPECT_EQ(end.response->header("X-Quiet"), std::nullopt);
}

TEST_F(DataTasks, SendsItsHeaders)
{
    const UrlRequest request{.url = server.url(QStringLiteral("/")),
                             .headers = {{"Authorization", "Bearer t"}, {"X-Empty", ""}}};
    EXPECT_EQ(fetch(session, request).status(), 404);
    EXPECT_EQ(server.requests().at(0).header("authorization"), "Bearer t");
    EXPECT_EQ(server.requests().at(0).header("x-empty"), "");
}

TEST_F(DataTasks, DeliversAnEmptyBody)
{
    server.script("/", ScriptedAnswer::ok(""));
    const TaskEnd end = get(QStringLiteral("/"));
    EXPECT_EQ(end.kind(), "");
    EXPECT_EQ(end.status(), 200);
    EXPECT_EQ(end.data, "");
}

TEST_F(DataTasks, DeliversEveryByteOfABigBinaryBody)
{
    const QByteArray body = everyByte(20'000'003);
    server.script("/", ScriptedAnswer::ok(body));
    EXPECT_TRUE(get(QStringLiteral("/")).data == body);
}

TEST_F(DataTasks, DeliversABodyInChunks)
{
    server.script("/", {.raw = QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                          "3\r\nabc\r\n4\r\ndefg\r\n0\r\n\r\n")});
    EXPECT_EQ(get(QStringLiteral("/")).data, "abcdefg");
}

TEST_F(DataTasks, DeliversABodyThatEndsWithTheConnection)
{
    server.script("/", {.body = "until the end", .hasLength = false, .end = ScriptedAnswer::End::Close});
    EXPECT_EQ(get(QStringLiteral("/")).data, "until the end");
}

TEST_F(DataTasks, PostsEveryByteOfTheBody)
{
    server.script("/", ScriptedAnswer::ok("taken"));
    for (const qsizetype size : {0, 1, 256, 3'000'001}) {
        const QByteArray body = everyByte(size);
        const UrlRequest request{.url = server.url(QStringLiteral("/")),
                                 .method = UrlRequest::Method::Post,
                                 .headers = {{"Content-Type", "application/json"}},
                                 .body = body};
        const TaskEnd end = fetch(session, request);
        EXPECT_EQ(end.kind(), "");
        EXPECT_EQ(end.data, "taken");
        EXPECT_EQ(server.requests().back().method, "POST");
        EXPECT_EQ(server.requests().back().header("Content-Type"), "application/json");
        EXPECT_TRUE(server.requests().back().body == body) << size;
    }
}

TEST_F(DataTasks, CallsAPostWithoutTypeAForm)
{
    const UrlRequest request{.url = server.url(QStringLiteral("/")), .method = UrlRequest::Method::Post, .body = "a=1"};
    EXPECT_EQ(fetch(session, request).status(), 404);
    EXPECT_EQ(server.requests().at(0).header("Content-Type"), "application/x-www-form-urlencoded");
}

TEST_F(DataTasks, EncodesAUrlThatIsNotAscii)
{
    EXPECT_EQ(get(QStringLiteral("/p\u00e4th?q=\u4f60 x")).status(), 404);
    EXPECT_EQ(server.requests().at(0).target, "/p%C3%A4th?q=%E4%BD%A0%20x");
}

TEST_F(DataTasks, UnpacksABodyAndCountsItUnpacked)
{
    // zlib's stream behind qCompress's four bytes of length: what HTTP calls "deflate".
    const QByteArray body(3'000'000, 'x');
    server.script("/", {.headers = {{"Content-Encoding", "deflate"}}, .body = qCompress(body).sliced(4)});
    EXPECT_TRUE(get(QStringLiteral("/")).data == body);
    EXPECT_EQ(fetch(session, {.url = server.url(QStringLiteral("/")), .maxAnswerBytes = 2'999'999}).kind(), "TooLarge");
}

TEST_F(DataTasks, SendsNoCookieBack)
{
    server.script("/", {.headers = {{"Set-Cookie", "id=1; Path=/"}}});
    EXPECT_EQ(get(QStringLiteral("/")).status(), 200);
    EXPECT_EQ(get(QStringLiteral("/")).status(), 200);
    EXPECT_EQ(server.requests().at(1).header("Cookie"), std::nullopt);
}

TEST_F(DataTasks, AsksAgainForWhatMightBeCached)
{
    server.script("/", {.headers = {{"Cache-Control", "max-age=3600"}, {"ETag", "\"1\""}}, .body = "1"});
    EXPECT_EQ(get(QStringLiteral("/")).data, "1");
    server.script("/", ScriptedAnswer::ok("2"));
    EXPECT_EQ(get(QStringLiteral("/")).data, "2");
    EXPECT_EQ(server.requests().at(1).header("If-None-Match"), std::nullopt);
}

TEST_F(DataTasks, EndsTwoHundredSideBySide)
{
    constexpr std::size_t kTasks = 200;
    std::vector<TaskEndBox> boxes(kTasks);
    for (std::size_t i = 0; i < kTasks; ++i) {
        const QByteArray path = "/" + QByteArray::number(qulonglong(i));
        server.script(path, ScriptedAnswer::ok(path.repeated(int(i))));
        session.dataTask({.url = server.url(QString::fromLatin1(path))}, boxes[i].handler())->resume();
    }
    for (std::size_t i = 0; i < kTasks; ++i) {
        const QByteArray path = "/" + QByteArray::number(qulonglong(i));
        EXPECT_EQ(boxes[i].wait().data, path.repeated(int(i)));
    }
    EXPECT_EQ(server.requests().size(), kTasks);
    EXPECT_THAT(boxes, testing::Each(testing::Property(&TaskEndBox::count, 1)));
}

TEST_F(DataTasks, TakesTasksFromManyThreads)
{
    server.script("/", ScriptedAnswer::ok("x"));
    constexpr int kThreads = 4;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([this] {
            for (int round = 0; round < 20; ++round) {
                EXPECT_EQ(get(QStringLiteral("/")).data, "x");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(DataTasks, RunsAllHandlersOnOneThreadOfItsOwn)
{
    std::mutex mutex;
    std::set<std::thread::id> ids;
    std::vector<TaskEndBox> boxes(3);
    for (const TaskEndBox& box : boxes) {
        session
            .dataTask({.url = server.url(QStringLiteral("/"))},
                      [&mutex, &ids, end = box.handler()](const auto& data, const auto& response, const auto& error) {
                          {
                              const std::lock_guard lock(mutex);
                              ids.insert(std::this_thread::get_id());
                          }
                          EXPECT_FALSE(isMainThread());
                          end(data, response, error);
                      })
            ->resume();
    }
    for (const TaskEndBox& box : boxes) {
        EXPECT_EQ(box.wait().status(), 404);
    }
    EXPECT_EQ(ids.size(), 1U);
    EXPECT_FALSE(ids.contains(std::this_thread::get_id()));
}

TEST_F(DataTasks, TakesATaskFromAHandler)
{
    const TaskEndBox box;
    server.script("/second", ScriptedAnswer::ok("2"));
    session
        .dataTask({.url = server.url(QStringLiteral("/first"))},
                  [this, &box](const auto&, const auto&, const auto&) {
                      session.dataTask({.url = server.url(QStringLiteral("/second"))}, box.handler())->resume();
                  })
        ->resume();
    EXPECT_EQ(box.wait().data, "2");
}

TEST_F(DataTasks, DeliversAtTheSharedSession)
{
    EXPECT_EQ(&UrlSession::shared(), &UrlSession::shared());
    const TaskEndBox box;
    UrlSession::shared().dataTask({.url = QUrl(QStringLiteral("nonsense"))}, box.handler())->resume();
    EXPECT_EQ(box.wait().kind(), "BadUrl");
}

TEST(DataTaskDeathTest, TerminatesOnAHandlerThatThrows)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            UrlSession session(withoutProxy());
            LoopbackServer server;
            const TaskEndBox never;
            session
                .dataTask({.url = server.url(QStringLiteral("/"))},
                          [](const auto&, const auto&, const auto&) { throw std::runtime_error("a handler's"); })
                ->resume();
            [[maybe_unused]] const TaskEnd end = never.wait();
        },
        testing::KilledBySignal(SIGABRT), "terminate");
}

} // namespace
} // namespace kovalin::platform
