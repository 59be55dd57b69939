#include "platform/dispatch/DispatchSemaphore.h"
#include "platform/dispatch/Gate.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/net/Fetching.h"
#include "platform/net/UrlSession.h"
#include "support/LoopbackServer.h"

#include <QtCore/QCoreApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
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

int argumentCount = 1;
char programName[] = "platform_net_shutdown_tests";
char* arguments[] = {programName, nullptr};

/// An application object for the length of a scope.
class ScopedApplication final {
private:
    const QCoreApplication _application{argumentCount, arguments};
};

TEST(NetShutdown, CancelsTasksUnderWay)
{
    std::vector<TaskEndBox> boxes(20);
    UrlSession session(withoutProxy());
    {
        const ScopedApplication application;
        LoopbackServer server;
        server.script("/", ScriptedAnswer::never());
        for (const TaskEndBox& box : boxes) {
            session.dataTask({.url = server.url(QStringLiteral("/"))}, box.handler())->resume();
        }
        server.waitForRequests(1);
    }
    for (const TaskEndBox& box : boxes) {
        ASSERT_EQ(box.count(), 1);
        // The server goes with the application; for what was connected its end may come first.
        EXPECT_THAT(box.wait().kind(), testing::AnyOf("Cancelled", "ConnectionLost", "CannotConnect"));
    }
}

TEST(NetShutdown, EndsWithTasksOfTheSharedSessionUnderWay)
{
    const TaskEndBox box;
    {
        const ScopedApplication application;
        LoopbackServer server;
        server.script("/", ScriptedAnswer::held("x", ScriptedAnswer::Hold::MidBody));
        UrlSession::shared().dataTask({.url = server.url(QStringLiteral("/"))}, box.handler())->resume();
        server.waitForHeld(1);
    }
    EXPECT_EQ(box.count(), 1);
}

TEST(NetShutdown, FreesAJobThatWaitsForAnAnswer)
{
    SerialQueue queue(QStringLiteral("waiter"));
    std::optional<LoopbackServer> server;
    UrlSession session(withoutProxy());
    bool isSignalled = false;
    {
        const ScopedApplication application;
        server.emplace();
        server->script("/", ScriptedAnswer::never());
        queue.async([&] {
            const auto answered = std::make_shared<DispatchSemaphore>();
            session
                .dataTask({.url = server->url(QStringLiteral("/"))},
                          [answered](const auto&, const auto&, const auto&) { answered->signal(); })
                ->resume();
            isSignalled = answered->wait(std::chrono::hours(1));
        });
        server->waitForRequests(1);
    }
    EXPECT_TRUE(isSignalled);
}

TEST(NetShutdown, EndsATaskAtOnceThatAJobStartsWhileTheApplicationDies)
{
    SerialQueue queue(QStringLiteral("late"));
    UrlSession session(withoutProxy());
    std::string kind;
    Gate started;
    Gate closing;
    {
        const ScopedApplication application;
        queue.async([&] {
            started.open();
            closing.wait();
            kind = fetch(session, {.url = QUrl(QStringLiteral("http://127.0.0.1:9/"))}).kind();
        });
        // Dropped when the application's end has begun, and waits for running jobs only after that.
        dispatchMain([token = whenDestroyed([&closing] { closing.open(); })] {});
        started.wait();
    }
    EXPECT_EQ(kind, "Cancelled");
}

TEST(NetShutdown, DropsATaskWhereThereIsNoApplicationAnyMore)
{
    {
        const ScopedApplication application;
    }
    bool isGone = false;
    bool didRun = false;
    UrlSession session(withoutProxy());
    session
        .dataTask({.url = QUrl(QStringLiteral("http://127.0.0.1:9/"))},
                  [&didRun, token = whenDestroyed([&isGone] { isGone = true; })](const auto&, const auto&,
                                                                                 const auto&) { didRun = true; })
        ->resume();
    EXPECT_TRUE(isGone);
    EXPECT_FALSE(didRun);
}

TEST(NetShutdown, WorksAgainUnderEachLaterApplication)
{
    UrlSession session(withoutProxy());
    for (int round = 0; round < 3; ++round) {
        const ScopedApplication application;
        LoopbackServer server;
        server.script("/", ScriptedAnswer::ok("again"));
        EXPECT_EQ(fetch(session, {.url = server.url(QStringLiteral("/"))}).data, "again");
        EXPECT_EQ(fetch(UrlSession::shared(), {.url = QUrl(QStringLiteral("bad"))}).kind(), "BadUrl");
    }
}

// Resumed in main(), before there was any application object.
const TaskEndBox earlyBox;

TEST(NetShutdown, StartsEarlyTasksWithTheFirstApplication)
{
    EXPECT_EQ(earlyBox.count(), 1);
    EXPECT_EQ(earlyBox.wait().kind(), "BadUrl");
}

} // namespace
} // namespace kovalin::platform

int main(int argc, char** argv)
{
    using namespace kovalin::platform;
    testing::InitGoogleTest(&argc, argv);
    UrlSession::shared().dataTask({.url = QUrl(QStringLiteral("early"))}, earlyBox.handler())->resume();
    if (earlyBox.count() != 0) {
        return EXIT_FAILURE;
    }
    {
        const ScopedApplication first;
        [[maybe_unused]] const auto end = earlyBox.wait();
    }
    return RUN_ALL_TESTS();
}
