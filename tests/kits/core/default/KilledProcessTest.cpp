#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/default/OutboxFile.h"
#include "kits/core/default/QXSDKHttpOperationalMetricsQueue.h"
#include "support/LoopbackServer.h"
#include "support/ManualDelayClock.h"
#include "support/WaitFor.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

namespace kovalin::test {
namespace {

/// A process that counts, and is killed; another that comes after it, here.
class KilledProcess : public testing::Test {
protected:
    KilledProcess()
    {
        server.script("/metrics", ScriptedAnswer::withStatus(204));
        QXSDKClientSetup::setShared({.clientId = QStringLiteral("parent"), .apiBaseUrl = baseUrl()});
    }
    ~KilledProcess() override { QXSDKClientSetup::setShared({}); }

    [[nodiscard]] QString baseUrl() const { return server.url(QStringLiteral("/")).toString().chopped(1); }

    /// Runs a process that posts some counts and leaves others, and kills it when these are on disk.
    void runAndKill(int posted, int left)
    {
        // Not by QProcess: a thread sanitizer doesn't let a process with threads fork.
        const auto command = QStringLiteral("exec '%1' '%2' '%3' %4 %5")
                                 .arg(QStringLiteral(KOVALIN_METRICS_CHILD), folder.path(), baseUrl(),
                                      QString::number(posted), QString::number(left));
        std::FILE* const output = popen(command.toLocal8Bit().constData(), "r");
        ASSERT_NE(output, nullptr);
        if (posted > 0) {
            server.waitForRequests(1);
            ASSERT_TRUE(QFile(folder.filePath(QStringLiteral("posted"))).open(QIODevice::WriteOnly));
        }
        int process = 0;
        ASSERT_EQ(std::fscanf(output, "%d", &process), 1);
        ASSERT_EQ(kill(process, SIGKILL), 0);
        EXPECT_EQ(WTERMSIG(pclose(output)), SIGKILL);
    }

    [[nodiscard]] std::vector<std::string> namesIn(std::size_t request) const
    {
        const auto body = nlohmann::json::parse(server.requests().at(request).body.toStdString());
        std::vector<std::string> names;
        for (const auto& entry : body["entries"]) {
            names.push_back(entry["name"].get<std::string>());
        }
        return names;
    }

    QTemporaryDir folder;
    LoopbackServer server;
    const QString path = folder.filePath(QStringLiteral("qxsdk-operational-metrics.sqlite"));
};

TEST_F(KilledProcess, LeavesWhatWasWrittenToTheNextOne)
{
    runAndKill(0, 20);
    const QStringList ids = storedAt(path).ids;
    ASSERT_EQ(ids.size(), 20);

    ManualDelayClock delays;
    const QXSDKHttpOperationalMetricsQueue next({.folder = folder.path()});
    delays.waitForPending(1);
    delays.advance(std::chrono::seconds(30));
    server.waitForRequests(1);
    EXPECT_TRUE(waitFor([this] { return storedAt(path).ids.isEmpty(); }));
    std::vector<std::string> expected;
    for (int i = 0; i < 20; ++i) {
        expected.push_back(std::to_string(i));
    }
    EXPECT_EQ(namesIn(0), expected);
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(KilledProcess, LeavesNothingThatWasPosted)
{
    runAndKill(100, 7);
    ASSERT_EQ(server.requests().size(), 1U);
    EXPECT_EQ(namesIn(0).size(), 100U);

    ManualDelayClock delays;
    const QXSDKHttpOperationalMetricsQueue next({.folder = folder.path()});
    delays.waitForPending(1);
    delays.advance(std::chrono::seconds(30));
    server.waitForRequests(2);
    EXPECT_TRUE(waitFor([this] { return storedAt(path).ids.isEmpty(); }));
    EXPECT_THAT(namesIn(1), testing::ElementsAre("100", "101", "102", "103", "104", "105", "106"));
    EXPECT_EQ(server.requests().size(), 2U);
}

} // namespace
} // namespace kovalin::test
