#include "apps/backend/ContentFiles.h"
#include "kovalin-backend/Backend.h"
#include "platform/net/Fetching.h"
#include "platform/net/UrlSession.h"

#include <QtCore/QCoreApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace kovalin::test {
namespace {

int argumentCount = 1;
char programName[] = "apps_backend_shutdown_tests";
char* programArguments[] = {programName, nullptr};

/// An application object for the length of a scope.
class ScopedApplication final {
private:
    const QCoreApplication _application{argumentCount, programArguments};
};

TEST(BackendShutdown, EndsWithTheApplicationAndMayBeDestroyedAfterIt)
{
    const ContentFiles content;
    const TaskEndBox box;
    platform::UrlSession session(withoutProxy());
    std::optional<backend::Backend> backend;
    for (int round = 0; round < 3; ++round) {
        {
            const ScopedApplication application;
            backend.emplace(backend::BackendOptions{.contentFolder = content.path()});
            backend->setAnswer({"/", {.kind = backend::AnswerRule::Kind::Nothing}});
            session.dataTask({.url = backend->url(QStringLiteral("/"))}, box.handler())->resume();
            backend->waitForRequests(1);
        }
        EXPECT_EQ(box.count(), round + 1);
        EXPECT_EQ(backend->requests().size(), 1);
        backend->setAnswer({"/", {}});
        backend.reset();
    }
}

} // namespace
} // namespace kovalin::test

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
