#include "kovalin-backend/Backend.h"

#include "apps/backend/BackendFixture.h"
#include "apps/backend/RawClient.h"
#include "kovalin-backend/RequestRecord.h"

#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpServer>

#include <optional>
#include <thread>
#include <vector>

namespace kovalin::test {
namespace {

using backend::Backend;
using backend::BackendError;

class BackendOfRequests : public BackendFixture {};

TEST_F(BackendOfRequests, ListensAtAnAddressOfThisMachineAlone)
{
    EXPECT_EQ(server.baseUrl().scheme(), QStringLiteral("http"));
    EXPECT_EQ(server.baseUrl().host(), QStringLiteral("127.0.0.1"));
    EXPECT_GT(server.baseUrl().port(), 0);
    EXPECT_EQ(server.baseUrl().path(), QString());
    EXPECT_EQ(server.url(QStringLiteral("/a?b=%2F")).toString(QUrl::FullyEncoded),
              server.baseUrl().toString() + QStringLiteral("/a?b=%2F"));
}

TEST_F(BackendOfRequests, KeepsThemInOrder)
{
    static_cast<void>(get(QStringLiteral("/content/models/a%20b?client_cached_version=1&x=%26")));
    static_cast<void>(fetch(session, {.url = server.url(QStringLiteral("/api/metrics")),
                                      .method = platform::UrlRequest::Method::Post,
                                      .headers = {{"X-Test", "yes"}},
                                      .body = "body"}));
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 2);
    EXPECT_EQ(requests[0].method, "GET");
    EXPECT_EQ(requests[0].path, "/content/models/a%20b");
    EXPECT_EQ(requests[0].query, "client_cached_version=1&x=%26");
    EXPECT_EQ(requests[0].target(), "/content/models/a%20b?client_cached_version=1&x=%26");
    EXPECT_EQ(requests[0].queryValue(QStringLiteral("x")), QStringLiteral("&"));
    EXPECT_FALSE(requests[0].queryValue(QStringLiteral("y")));
    EXPECT_EQ(requests[1].method, "POST");
    EXPECT_EQ(requests[1].header("x-test"), "yes");
    EXPECT_FALSE(requests[1].header("x-other"));
    EXPECT_EQ(requests[1].body, "body");
}

TEST_F(BackendOfRequests, WaitsForThem)
{
    server.waitForRequests(0);
    std::thread client([this] {
        for (int i = 0; i < 3; ++i) {
            static_cast<void>(get(QStringLiteral("/")));
        }
    });
    server.waitForRequests(3);
    EXPECT_EQ(server.requests().size(), 3);
    client.join();
}

TEST_F(BackendOfRequests, AnswersManyAtOnceAndRulesMadeOnTheWay)
{
    constexpr int clients = 4;
    constexpr int requestsOfEach = 25;
    std::vector<std::thread> threads;
    for (int client = 0; client < clients; ++client) {
        threads.emplace_back([this, client] {
            const QString path = QStringLiteral("/api/%1").arg(client);
            platform::UrlSession own(withoutProxy());
            for (int i = 0; i < requestsOfEach; ++i) {
                const int status = 500 + i;
                server.setAnswer({path.toLatin1(), backend::AnswerRule::withStatus(status)});
                EXPECT_EQ(fetch(own, {.url = server.url(path)}).status(), status);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(server.requests().size(), clients * requestsOfEach);
}

TEST(BackendStart, TakesThePortThatIsGiven)
{
    const ContentFiles content;
    quint16 port = 0;
    {
        const Backend first({.contentFolder = content.path()});
        port = static_cast<quint16>(first.baseUrl().port());
    }
    const Backend second({.contentFolder = content.path(), .port = port});
    EXPECT_EQ(second.baseUrl().port(), port);
}

TEST(BackendStart, HasTheRulesFromTheBeginning)
{
    const ContentFiles content;
    const Backend backend({.contentFolder = content.path(), .answers = {{"/x", backend::AnswerRule::withStatus(418)}}});
    platform::UrlSession session(withoutProxy());
    EXPECT_EQ(fetch(session, {.url = backend.url(QStringLiteral("/x"))}).status(), 418);
}

QString startFault(backend::BackendOptions options)
{
    try {
        const Backend backend(std::move(options));
        return {};
    } catch (const BackendError& error) {
        return QString::fromUtf8(error.what());
    }
}

TEST(BackendStart, SaysWhichPortIsTaken)
{
    const ContentFiles content;
    QTcpServer other;
    ASSERT_TRUE(other.listen(QHostAddress::LocalHost));
    EXPECT_EQ(startFault({.contentFolder = content.path(), .port = other.serverPort()}),
              QStringLiteral("port %1: The bound address is already in use").arg(other.serverPort()));
}

TEST(BackendStart, SaysWhichFolderIsMissing)
{
    const ContentFiles content;
    content.write(QStringLiteral("file"), "");
    const QString none = content.path() + QStringLiteral("/none");
    const QString file = content.path() + QStringLiteral("/file");
    EXPECT_EQ(startFault({.contentFolder = none}), QStringLiteral("%1: no such folder").arg(none));
    EXPECT_EQ(startFault({.contentFolder = file}), QStringLiteral("%1: is no folder").arg(file));
    EXPECT_EQ(startFault({.contentFolder = {}}), QStringLiteral(": no such folder"));
}

class BackendEnd : public testing::Test {
protected:
    const ContentFiles content{};
    platform::UrlSession session{withoutProxy()};
};

TEST_F(BackendEnd, ClosesConnectionsWhoseRequestsHaveNoAnswer)
{
    std::optional<Backend> backend(std::in_place, backend::BackendOptions{.contentFolder = content.path()});
    backend->setAnswer({"/nothing", {.kind = backend::AnswerRule::Kind::Nothing}});
    backend->setAnswer({"/later", backend::AnswerRule::delayed(std::chrono::hours(24))});
    std::vector<TaskEndBox> boxes(4);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const QString path = i % 2 == 0 ? QStringLiteral("/nothing") : QStringLiteral("/later");
        session.dataTask({.url = backend->url(path)}, boxes[i].handler())->resume();
    }
    backend->waitForRequests(4);
    backend.reset();
    for (const TaskEndBox& box : boxes) {
        EXPECT_THAT(box.wait().kind(), testing::AnyOf("ConnectionLost", "CannotConnect"));
    }
}

TEST_F(BackendEnd, ClosesConnectionsWithHalfOfARequest)
{
    std::optional<Backend> backend(std::in_place, backend::BackendOptions{.contentFolder = content.path()});
    RawClient client(backend->baseUrl());
    client.send("POST /api/metrics HTTP/1.1\r\nContent-Length: 10\r\n\r\nhalf");
    // Answered after the half is there: connections are served in the order in which bytes come.
    EXPECT_EQ(fetch(session, {.url = backend->url(QStringLiteral("/"))}).status(), 404);
    backend.reset();
    EXPECT_EQ(client.readToEnd(), "");
}

TEST_F(BackendEnd, MayComeOnAnotherThread)
{
    auto backend = std::make_unique<Backend>(backend::BackendOptions{.contentFolder = content.path()});
    const QUrl url = backend->url(QStringLiteral("/"));
    EXPECT_EQ(fetch(session, {.url = url}).status(), 404);
    std::thread([backend = std::move(backend)]() mutable { backend.reset(); }).join();
    EXPECT_THAT(fetch(session, {.url = url}).kind(), testing::AnyOf("ConnectionLost", "CannotConnect"));
}

TEST_F(BackendEnd, ComesAndGoesManyTimes)
{
    for (int i = 0; i < 20; ++i) {
        Backend backend({.contentFolder = content.path()});
        backend.setAnswer({"/", backend::AnswerRule::withStatus(418)});
        EXPECT_EQ(fetch(session, {.url = backend.url(QStringLiteral("/"))}).status(), 418);
    }
}

TEST(RequestRecord, ForgetsTheOldestWhenItIsFull)
{
    backend::RequestRecord record;
    const auto most = backend::RequestRecord::kMostKept;
    for (std::size_t i = 0; i < most + 2; ++i) {
        record.add({.method = "GET", .path = QByteArray::number(static_cast<qint64>(i))});
    }
    record.waitFor(most + 2);
    EXPECT_EQ(record.requests().size(), most);
    EXPECT_EQ(record.requests().front().path, "2");
}

TEST(RequestRecord, ForgetsTheOldestWhenTheirBodiesAreTooLarge)
{
    backend::RequestRecord record;
    const QByteArray body(backend::RequestRecord::kMostBodyBytesKept / 4, 'x');
    for (int i = 0; i < 6; ++i) {
        record.add({.method = "POST", .path = QByteArray::number(i), .body = body});
    }
    EXPECT_EQ(record.requests().size(), 4);
    EXPECT_EQ(record.requests().front().path, "2");
}

} // namespace
} // namespace kovalin::test
