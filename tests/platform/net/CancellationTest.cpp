#include "platform/net/DataTask.h"
#include "platform/net/Fetching.h"
#include "platform/net/UrlSession.h"
#include "support/LoopbackServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
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
using Hold = ScriptedAnswer::Hold;

class Cancellation : public testing::Test {
protected:
    [[nodiscard]] std::shared_ptr<DataTask> task(const QString& path)
    {
        return session.dataTask({.url = server.url(path)}, box.handler());
    }

    // Everything that the session had to do by now is done, the handlers of cancelled tasks included.
    void settle() { EXPECT_EQ(fetch(session, {.url = server.url(QStringLiteral("/settle"))}).status(), 404); }

    LoopbackServer server;
    UrlSession session{withoutProxy()};
    const TaskEndBox box{};
};

TEST_F(Cancellation, WithoutResumeIsSilent)
{
    task(QStringLiteral("/"))->cancel();
    settle();
    EXPECT_EQ(box.count(), 0);
}

TEST_F(Cancellation, BeforeResumeEndsTheTaskAtItsResume)
{
    const auto cancelled = task(QStringLiteral("/"));
    cancelled->cancel();
    cancelled->resume();
    const TaskEnd end = box.wait();
    EXPECT_EQ(end.kind(), "Cancelled");
    EXPECT_FALSE(end.response);
    EXPECT_EQ(end.data, "");
    settle();
    EXPECT_EQ(box.count(), 1);
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(Cancellation, RightAfterResumeEndsTheTask)
{
    const auto cancelled = task(QStringLiteral("/"));
    cancelled->resume();
    cancelled->cancel();
    cancelled->cancel();
    // Or the answer was faster.
    EXPECT_THAT(box.wait().kind(), testing::AnyOf("Cancelled", ""));
    settle();
    EXPECT_EQ(box.count(), 1);
}

TEST_F(Cancellation, EndsATaskThatWaitsForAConnection)
{
    server.script("/held", ScriptedAnswer::held("x"));
    std::vector<TaskEndBox> others(6); // as many as there are connections
    for (const TaskEndBox& other : others) {
        session.dataTask({.url = server.url(QStringLiteral("/held"))}, other.handler())->resume();
    }
    server.waitForHeld(6);
    const auto cancelled = task(QStringLiteral("/"));
    cancelled->resume();
    cancelled->cancel();
    EXPECT_EQ(box.wait().kind(), "Cancelled");
    server.release("/held");
    for (const TaskEndBox& other : others) {
        EXPECT_EQ(other.wait().data, "x");
    }
    EXPECT_EQ(server.requests().size(), 6U);
}

TEST_F(Cancellation, EndsATaskThatWaitsForItsAnswer)
{
    server.script("/", ScriptedAnswer::never());
    const auto cancelled = task(QStringLiteral("/"));
    cancelled->resume();
    server.waitForRequests(1);
    cancelled->cancel();
    EXPECT_EQ(box.wait().kind(), "Cancelled");
    settle();
    EXPECT_EQ(box.count(), 1);
}

TEST_F(Cancellation, EndsATaskBeforeAndInTheMidstOfItsBody)
{
    for (const Hold hold : {Hold::BeforeBody, Hold::MidBody}) {
        const QString path = QStringLiteral("/%1").arg(int(hold));
        server.script(path.toLatin1(), ScriptedAnswer::held(QByteArray(1'000'000, 'x'), hold));
        const TaskEndBox own;
        const auto cancelled = session.dataTask({.url = server.url(path)}, own.handler());
        cancelled->resume();
        server.waitForHeld(hold == Hold::BeforeBody ? 1 : 2);
        cancelled->cancel();
        EXPECT_EQ(own.wait().kind(), "Cancelled");
        server.release(path.toLatin1());
        settle();
        EXPECT_EQ(own.count(), 1);
    }
}

TEST_F(Cancellation, EndsATaskInTheMidstOfItsRedirects)
{
    server.script("/", ScriptedAnswer::redirect("/b"));
    server.script("/b", ScriptedAnswer::never());
    const auto cancelled = task(QStringLiteral("/"));
    cancelled->resume();
    server.waitForRequests(2);
    cancelled->cancel();
    EXPECT_EQ(box.wait().kind(), "Cancelled");
}

TEST_F(Cancellation, AfterTheEndIsSilent)
{
    const auto ended = task(QStringLiteral("/"));
    ended->resume();
    EXPECT_EQ(box.wait().status(), 404);
    ended->cancel();
    ended->resume();
    settle();
    EXPECT_EQ(box.count(), 1);
}

TEST_F(Cancellation, InAnotherTasksHandlerComesInTime)
{
    server.script("/held", ScriptedAnswer::held("x"));
    const auto victim = task(QStringLiteral("/held"));
    victim->resume();
    server.waitForHeld(1);
    const TaskEndBox first{};
    session
        .dataTask({.url = server.url(QStringLiteral("/"))},
                  [this, victim, end = first.handler()](const auto& data, const auto& response, const auto& error) {
                      victim->cancel();
                      // Its handler doesn't run inside this one.
                      EXPECT_EQ(box.count(), 0);
                      end(data, response, error);
                  })
        ->resume();
    EXPECT_EQ(first.wait().status(), 404);
    EXPECT_EQ(box.wait().kind(), "Cancelled");
}

TEST_F(Cancellation, InItsOwnHandlerIsSilent)
{
    auto slot = std::make_shared<std::shared_ptr<DataTask>>();
    *slot = session.dataTask({.url = server.url(QStringLiteral("/"))},
                             [slot, end = box.handler()](const auto& data, const auto& response, const auto& error) {
                                 (*slot)->cancel();
                                 (*slot)->resume();
                                 slot->reset();
                                 end(data, response, error);
                             });
    (*slot)->resume();
    EXPECT_EQ(box.wait().status(), 404);
    settle();
    EXPECT_EQ(box.count(), 1);
}

TEST_F(Cancellation, AtAnyMomentFromAnotherThreadLeavesOneEnd)
{
    server.script("/", ScriptedAnswer::ok(QByteArray(10'000, 'x')));
    constexpr std::size_t kTasks = 200;
    std::vector<TaskEndBox> boxes(kTasks);
    std::vector<std::shared_ptr<DataTask>> tasks;
    tasks.reserve(kTasks);
    for (const TaskEndBox& each : boxes) {
        tasks.push_back(session.dataTask({.url = server.url(QStringLiteral("/"))}, each.handler()));
    }
    std::thread resuming([&tasks] {
        for (const auto& each : tasks) {
            each->resume();
        }
    });
    std::thread cancelling([&tasks] {
        for (const auto& each : tasks) {
            each->cancel();
        }
    });
    resuming.join();
    cancelling.join();
    for (const TaskEndBox& each : boxes) {
        EXPECT_THAT(each.wait().kind(), testing::AnyOf("Cancelled", ""));
    }
    settle();
    EXPECT_THAT(boxes, testing::Each(testing::Property(&TaskEndBox::count, 1)));
}

} // namespace
} // namespace kovalin::platform
