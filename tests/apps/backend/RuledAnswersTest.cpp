#include "apps/backend/BackendFixture.h"
#include "apps/backend/RawClient.h"

#include <chrono>
#include <vector>

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;

const QString kConfigs = QStringLiteral("/api/configs");

class RuledAnswers : public BackendFixture {
protected:
    /// All that the backend says to a GET, to the end of the connection.
    [[nodiscard]] QByteArray rawAnswer(const QByteArray& path)
    {
        RawClient client(server.baseUrl());
        client.send("GET " + path + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
        return client.readToEnd();
    }
};

TEST_F(RuledAnswers, AreUsualWithoutARule)
{
    EXPECT_EQ(get(kConfigs).status(), 200);
    EXPECT_EQ(get(QStringLiteral("/")).status(), 404);
    EXPECT_EQ(get(QStringLiteral("/api/metrics")).status(), 405);
}

TEST_F(RuledAnswers, NameTheMethodThatAnAddressTakes)
{
    EXPECT_EQ(get(QStringLiteral("/api/metrics")).response->header("Allow"), "POST");
    EXPECT_EQ(post(kConfigs, "x").response->header("Allow"), "GET");
    for (const char* method : {"HEAD", "PUT", "OPTIONS", "BREW"}) {
        RawClient client(server.baseUrl());
        client.send(QByteArray(method) + " /api/configs HTTP/1.1\r\nConnection: close\r\n\r\n");
        EXPECT_TRUE(client.readToEnd().startsWith("HTTP/1.1 405 ")) << method;
    }
}

TEST_F(RuledAnswers, MayBeAStatus)
{
    for (const int status : {200, 400, 401, 404, 418, 429, 500, 503, 599}) {
        server.setAnswer({"/api/configs", backend::AnswerRule::withStatus(status)});
        const TaskEnd end = get(kConfigs);
        EXPECT_EQ(end.status(), status);
        EXPECT_TRUE(end.data.startsWith(QByteArray(QByteArray::number(status) + ' ')));
        EXPECT_FALSE(end.response->header("Retry-After"));
    }
}

TEST_F(RuledAnswers, HaveNoBodyWhereTheStatusHasNone)
{
    for (const char* status : {"204", "304"}) {
        rule(QByteArray("/api/configs ") + status);
        const QByteArray answer = rawAnswer("/api/configs");
        EXPECT_TRUE(answer.startsWith(QByteArray(QByteArray("HTTP/1.1 ") + status + ' ')));
        EXPECT_TRUE(answer.endsWith("\r\n\r\n"));
        EXPECT_FALSE(answer.contains("Content-Length"));
    }
}

TEST_F(RuledAnswers, MayAskForALaterTry)
{
    rule("/api/metrics 503 retry-after 7");
    const TaskEnd end = post(QStringLiteral("/api/metrics"), "{}");
    EXPECT_EQ(end.status(), 503);
    EXPECT_EQ(end.response->header("Retry-After"), "7");
}

TEST_F(RuledAnswers, LeaveWhatTheRequestWouldHaveDoneUndone)
{
    rule("/api/metrics 503");
    EXPECT_EQ(post(QStringLiteral("/api/metrics"),
                   R"({"client_id":"c","batch_id":"2f1e0ffb-2f83-4a6a-9d9c-3b6b5f7c0d11","entries":[]})")
                  .status(),
              503);
    EXPECT_EQ(server.metrics().batches, 0);
}

TEST_F(RuledAnswers, MayBeGarbage)
{
    rule("/api/configs garbage");
    const TaskEnd end = get(kConfigs);
    EXPECT_EQ(end.status(), 200);
    EXPECT_EQ(end.response->header("Content-Length"), QByteArray::number(end.data.size()));
    EXPECT_EQ(end.data, QByteArray(64, '\xFF'));
    EXPECT_TRUE(QJsonDocument::fromJson(end.data).isNull());
}

TEST_F(RuledAnswers, MayBeCut)
{
    const QByteArray model(1000, 'm');
    content.write(QStringLiteral("models/LearnedSearch/1.bin"), model);
    rule("/content/models/* cut");
    EXPECT_EQ(get(QStringLiteral("/content/models/LearnedSearch/1")).kind(), "ConnectionLost");
    const QByteArray answer = rawAnswer("/content/models/LearnedSearch/1");
    EXPECT_TRUE(answer.startsWith("HTTP/1.1 200 "));
    EXPECT_TRUE(answer.contains("\r\nContent-Length: 1000\r\n"));
    EXPECT_TRUE(answer.endsWith(QByteArray("\r\n\r\n" + model.first(500))));
}

TEST_F(RuledAnswers, MayBeCutInTheHeadWhereThereIsNoBody)
{
    rule("/api/metrics cut");
    const TaskEnd end = post(QStringLiteral("/api/metrics"),
                             R"({"client_id":"c","batch_id":"2f1e0ffb-2f83-4a6a-9d9c-3b6b5f7c0d11","entries":[]})");
    EXPECT_EQ(end.kind(), "ConnectionLost");
    EXPECT_EQ(server.metrics().batches, 1);
}

TEST_F(RuledAnswers, MayBeRefused)
{
    rule("/api/* refuse");
    EXPECT_EQ(rawAnswer("/api/configs"), "");
    EXPECT_EQ(post(QStringLiteral("/api/metrics"), "{}").kind(), "ConnectionLost");
    EXPECT_EQ(get(kConfigs).kind(), "ConnectionLost");
    rule("/api/* ok");
    EXPECT_EQ(get(kConfigs).status(), 200);
}

TEST_F(RuledAnswers, MayComeLater)
{
    rule("/api/configs delay 40");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(get(kConfigs).status(), 200);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 39ms);
}

TEST_F(RuledAnswers, MayComeLaterWhileOthersGoOn)
{
    rule("/api/configs delay 86400000");
    const TaskEndBox box = start(QStringLiteral("/api/configs?slow"));
    server.waitForRequests(1);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(get(QStringLiteral("/content/models/Any")).status(), 404);
    }
    rule("/api/configs ok");
    EXPECT_EQ(get(kConfigs).status(), 200);
    EXPECT_EQ(box.count(), 0);
}

TEST_F(RuledAnswers, MayNeverCome)
{
    rule("/api/configs nothing");
    const std::vector<TaskEndBox> boxes{start(kConfigs), start(kConfigs), start(kConfigs)};
    server.waitForRequests(3);
    EXPECT_EQ(get(QStringLiteral("/content/models/Any")).status(), 404);
    for (const TaskEndBox& box : boxes) {
        EXPECT_EQ(box.count(), 0);
    }
}

TEST_F(RuledAnswers, ThatNeverCameComeByTheNextRule)
{
    rule("/api/configs nothing");
    rule("/content/* nothing");
    const TaskEndBox configs = start(kConfigs);
    const TaskEndBox model = start(QStringLiteral("/content/models/Any"));
    server.waitForRequests(2);
    rule("/api/configs 503");
    EXPECT_EQ(configs.wait().status(), 503);
    EXPECT_EQ(model.count(), 0);
    rule("/content/models/Any ok");
    EXPECT_EQ(model.wait().status(), 404);
    EXPECT_EQ(configs.count(), 1);
}

TEST_F(RuledAnswers, ThatNeverCameAreForgottenWithTheirConnection)
{
    const QByteArray batch = R"({"client_id":"c","batch_id":"2f1e0ffb-2f83-4a6a-9d9c-3b6b5f7c0d11","entries":[]})";
    rule("/api/metrics nothing");
    {
        RawClient gone(server.baseUrl());
        gone.send("POST /api/metrics HTTP/1.1\r\nContent-Length: " + QByteArray::number(batch.size()) + "\r\n\r\n" +
                  batch);
        server.waitForRequests(1);
    }
    // Behind the end of the connection, since connections are served in the order in which something comes.
    EXPECT_EQ(get(kConfigs).status(), 200);
    rule("/api/metrics ok");
    EXPECT_EQ(get(kConfigs).status(), 200);
    EXPECT_EQ(server.metrics().batches, 0);
}

TEST_F(RuledAnswers, GoByThePathWithoutTheQueryAndAsItWasSent)
{
    rule("/content/models/a%20b 503");
    EXPECT_EQ(get(QStringLiteral("/content/models/a%20b?client_cached_version=1")).status(), 503);
    EXPECT_EQ(get(QStringLiteral("/content/models/a")).status(), 404);
}

TEST_F(RuledAnswers, KeepTheConnectionForFurtherRequests)
{
    RawClient client(server.baseUrl());
    client.send("GET /api/configs HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_TRUE(client.readTo("true}}}").startsWith("HTTP/1.1 200 "));
    client.send("GET /content/models/Any HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    EXPECT_TRUE(client.readToEnd().startsWith("HTTP/1.1 404 "));
}

class Control : public RuledAnswers {
protected:
    [[nodiscard]] TaskEnd order(const QByteArray& text) { return post(QStringLiteral("/control/answers"), text); }
};

TEST_F(Control, MakesRulesOverHttp)
{
    EXPECT_EQ(order("/api/configs 503 retry-after 3\n").status(), 204);
    EXPECT_EQ(get(kConfigs).response->header("Retry-After"), "3");
    EXPECT_EQ(order("/api/configs ok").status(), 204);
    EXPECT_EQ(get(kConfigs).status(), 200);
}

TEST_F(Control, ReleasesWhatNeverCame)
{
    EXPECT_EQ(order("/api/configs nothing").status(), 204);
    const TaskEndBox box = start(kConfigs);
    server.waitForRequests(1);
    EXPECT_EQ(order("/api/configs ok").status(), 204);
    EXPECT_EQ(box.wait().status(), 200);
}

TEST_F(Control, ChangesNothingByABadRule)
{
    rule("/api/configs 503");
    for (const char* text : {"", "/api/configs", "/api/configs okay", "api/configs ok", "ok"}) {
        const TaskEnd end = order(text);
        EXPECT_EQ(end.status(), 400) << text;
        EXPECT_EQ(end.data.count('\n'), 1) << text;
        EXPECT_EQ(get(kConfigs).status(), 503) << text;
    }
}

TEST_F(Control, IsBeyondTheRulesAndTheRecord)
{
    rule("/* nothing");
    EXPECT_EQ(get(QStringLiteral("/control/metrics")).status(), 200);
    EXPECT_EQ(get(QStringLiteral("/control/answers")).status(), 405);
    EXPECT_EQ(get(QStringLiteral("/control/other")).status(), 404);
    EXPECT_EQ(order("/* ok").status(), 204);
    EXPECT_TRUE(server.requests().empty());
    EXPECT_EQ(get(kConfigs).status(), 200);
}

} // namespace
} // namespace kovalin::test
