#include "platform/dispatch/Gate.h"
#include "platform/net/Fetching.h"
#include "platform/net/UrlSession.h"
#include "support/LoopbackServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace kovalin::platform {
namespace {

using test::fetch;
using test::Gate;
using test::LoopbackServer;
using test::ScriptedAnswer;
using test::TaskEndBox;
using test::whenDestroyed;
using test::withoutProxy;

class Lifetime : public testing::Test {
protected:
    LoopbackServer server;
    std::optional<UrlSession> session{std::in_place, withoutProxy()};
    const TaskEndBox box{};
};

TEST_F(Lifetime, ATaskGoesOnWhenNobodyHoldsIt)
{
    server.script("/", ScriptedAnswer::held("kept on"));
    auto task = session->dataTask({.url = server.url(QStringLiteral("/"))}, box.handler());
    task->resume();
    server.waitForHeld(1);
    task.reset();
    server.release("/");
    EXPECT_EQ(box.wait().data, "kept on");
}

TEST_F(Lifetime, ATaskThatIsNeverResumedTakesItsHandlerAlong)
{
    bool isGone = false;
    auto task = session->dataTask(
        {.url = server.url(QStringLiteral("/"))},
        [token = whenDestroyed([&isGone] { isGone = true; })](const auto&, const auto&, const auto&) {});
    EXPECT_FALSE(isGone);
    task.reset();
    EXPECT_TRUE(isGone);
}

TEST_F(Lifetime, AHandlerGoesRightAfterItRanThoughItsTaskIsHeld)
{
    Gate gone;
    const auto task =
        session->dataTask({.url = server.url(QStringLiteral("/"))},
                          [token = whenDestroyed([&gone] { gone.open(); })](const auto&, const auto&, const auto&) {});
    task->resume();
    gone.wait();
    EXPECT_TRUE(gone.isOpen());
}

TEST_F(Lifetime, TheEndOfTheSessionCancelsWhatIsUnderWay)
{
    server.script("/", ScriptedAnswer::never());
    std::vector<TaskEndBox> boxes(10);
    for (const TaskEndBox& each : boxes) {
        session->dataTask({.url = server.url(QStringLiteral("/"))}, each.handler())->resume();
    }
    server.waitForRequests(1);
    session.reset();
    for (const TaskEndBox& each : boxes) {
        EXPECT_EQ(each.wait().kind(), "Cancelled");
        EXPECT_EQ(each.count(), 1);
    }
}

TEST_F(Lifetime, ATaskThatOutlivesItsSessionEndsCancelled)
{
    const auto task = session->dataTask({.url = server.url(QStringLiteral("/"))}, box.handler());
    session.reset();
    task->resume();
    EXPECT_EQ(box.wait().kind(), "Cancelled");
    task->cancel();
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(Lifetime, AHandlerMayEndItsSession)
{
    server.script("/never", ScriptedAnswer::never());
    const TaskEndBox other{};
    session->dataTask({.url = server.url(QStringLiteral("/never"))}, other.handler())->resume();
    session
        ->dataTask({.url = server.url(QStringLiteral("/"))},
                   [this](const auto& data, const auto& response, const auto& error) {
                       session.reset();
                       box.handler()(data, response, error);
                   })
        ->resume();
    EXPECT_EQ(box.wait().status(), 404);
    EXPECT_EQ(other.wait().kind(), "Cancelled");
}

TEST_F(Lifetime, ACancelledTasksHandlerMayStartAnother)
{
    server.script("/never", ScriptedAnswer::never());
    const auto task =
        session->dataTask({.url = server.url(QStringLiteral("/never"))}, [this](const auto&, const auto&, const auto&) {
            session->dataTask({.url = server.url(QStringLiteral("/"))}, box.handler())->resume();
        });
    task->resume();
    server.waitForRequests(1);
    task->cancel();
    EXPECT_EQ(box.wait().status(), 404);
}

TEST_F(Lifetime, ManySessionsComeAndGo)
{
    for (int i = 0; i < 20; ++i) {
        UrlSession brief(withoutProxy());
        EXPECT_EQ(fetch(brief, {.url = server.url(QStringLiteral("/"))}).status(), 404);
    }
}

TEST_F(Lifetime, AServerThatGoesLeavesAnError)
{
    std::optional<LoopbackServer> brief(std::in_place);
    brief->script("/", ScriptedAnswer::held("too late"));
    session->dataTask({.url = brief->url(QStringLiteral("/"))}, box.handler())->resume();
    brief->waitForHeld(1);
    brief.reset();
    EXPECT_THAT(box.wait().kind(), testing::AnyOf("ConnectionLost", "CannotConnect"));
}

} // namespace
} // namespace kovalin::platform
