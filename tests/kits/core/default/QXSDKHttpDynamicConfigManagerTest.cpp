#include "kits/core/default/QXSDKHttpDynamicConfigManager.h"

#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/default/UpdateOutcomes.h"
#include "platform/foundation/CachesDirectory.h"
#include "support/LoopbackServer.h"
#include "support/ManualClock.h"
#include "support/ScriptedRandom.h"
#include "support/WaitFor.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class QXSDKHttpDynamicConfigManagerTest : public testing::Test {
protected:
    QXSDKHttpDynamicConfigManagerTest()
    {
        answer(R"({"ttlSeconds":600,"configs":{"on":{"enabled":true},"off":{"enabled":false}}})");
        setUp(QStringLiteral("me"));
        open();
    }
    ~QXSDKHttpDynamicConfigManagerTest() override { QXSDKClientSetup::setShared({}); }

    void setUp(const QString& clientId, const QString& path = QStringLiteral("/api"))
    {
        QXSDKClientSetup::setShared({.clientId = clientId, .apiBaseUrl = server.url(path).toString()});
    }
    void open() { manager.emplace(QXSDKHttpDynamicConfigOptions{.folder = folder.path()}); }
    void answer(QByteArray body) { answer(ScriptedAnswer::ok(std::move(body))); }
    void answer(ScriptedAnswer scripted) { server.script("/api/configs", std::move(scripted)); }

    /// The outcome of one update.
    [[nodiscard]] bool update()
    {
        const UpdateOutcomes outcomes;
        manager->updateIfNecessary(outcomes.add());
        EXPECT_TRUE(waitFor([&] { return !outcomes.all().empty(); }));
        return outcomes.all().front();
    }
    /// The same of one that must not wait.
    [[nodiscard]] bool updateAtOnce()
    {
        const UpdateOutcomes outcomes;
        manager->updateIfNecessary(outcomes.add());
        EXPECT_EQ(outcomes.all().size(), 1U);
        return outcomes.all().front();
    }
    [[nodiscard]] bool knows(const QString& name) const { return manager->dynamicConfig(name) != nullptr; }
    [[nodiscard]] bool isEnabled(const QString& name, bool otherwise) const
    {
        return manager->dynamicConfig(name)->boolValue({QStringLiteral("enabled")}, otherwise);
    }
    [[nodiscard]] std::size_t requests() const { return server.requests().size(); }
    [[nodiscard]] QString path() const { return folder.filePath(QStringLiteral("qxsdk-dynamic-configs.json")); }
    [[nodiscard]] bool isStored() const
    {
        return waitFor([this] { return QFile::exists(path()); });
    }

    const QString on = QStringLiteral("on");
    const QString off = QStringLiteral("off");
    QTemporaryDir folder;
    LoopbackServer server;
    ManualClock clock;
    const ScriptedRandom random{[] {
        return 0U;
    }}; // takes nothing off a delay
    std::optional<QXSDKHttpDynamicConfigManager> manager;
};

using ConfigManager = QXSDKHttpDynamicConfigManagerTest;

TEST_F(ConfigManager, KnowsNothingAtFirst)
{
    EXPECT_FALSE(knows(on));
    EXPECT_EQ(requests(), 0U);
}

TEST_F(ConfigManager, FetchesWhatTheServerHas)
{
    setUp(QStringLiteral("a b&c+d=\u00e4%41"));
    EXPECT_TRUE(update());
    EXPECT_TRUE(isEnabled(on, false));
    EXPECT_FALSE(isEnabled(off, true));
    EXPECT_FALSE(knows(QStringLiteral("other")));
    ASSERT_EQ(requests(), 1U);
    EXPECT_EQ(server.requests().front().method, "GET");
    EXPECT_EQ(server.requests().front().target, "/api/configs?client_id=a%20b%26c%2Bd%3D%C3%A4%2541");
}

TEST_F(ConfigManager, FetchesAgainWhenItsTimeToLiveHasPassed)
{
    EXPECT_TRUE(update());
    clock.advance(599'999ms);
    EXPECT_TRUE(updateAtOnce());
    EXPECT_EQ(requests(), 1U);
    answer(R"({"configs":{"on":{"enabled":false}}})");
    clock.advance(1ms);
    EXPECT_TRUE(update());
    EXPECT_EQ(requests(), 2U);
    EXPECT_FALSE(isEnabled(on, true));
    EXPECT_FALSE(knows(off));
    clock.advance(1h - 1ms); // without a time to live of its own
    EXPECT_TRUE(updateAtOnce());
    clock.advance(1ms);
    EXPECT_TRUE(update());
    EXPECT_EQ(requests(), 3U);
}

TEST_F(ConfigManager, FetchesAgainWhenTheClockWasSetBack)
{
    EXPECT_TRUE(update());
    clock.advance(-1ms);
    EXPECT_TRUE(update());
    EXPECT_EQ(requests(), 2U);
}

TEST_F(ConfigManager, JoinsCallsDuringAFetchAndCallsEachCompletionOnce)
{
    answer(ScriptedAnswer::held(R"({"configs":{}})"));
    const UpdateOutcomes outcomes;
    for (int i = 0; i < 5; ++i) {
        manager->updateIfNecessary(outcomes.add());
    }
    server.waitForHeld(1);
    EXPECT_THAT(outcomes.all(), IsEmpty());
    server.release("/api/configs");
    EXPECT_TRUE(waitFor([&] { return outcomes.all().size() == 5; }));
    EXPECT_THAT(outcomes.all(), testing::Each(true));
    EXPECT_EQ(requests(), 1U);
}

TEST_F(ConfigManager, KeepsWhatIsKnownThroughAFailure)
{
    EXPECT_TRUE(update());
    clock.advance(10min);
    const QByteArray tooLong = "{\"configs\":{\"x\":{\"y\":\"" + QByteArray(1024 * 1024, 'z') + "\"}}}";
    for (const auto& failure :
         {ScriptedAnswer::withStatus(500), ScriptedAnswer::withStatus(404), ScriptedAnswer::withStatus(204),
          ScriptedAnswer::withStatus(201, R"({"configs":{}})"), ScriptedAnswer::ok("{"), ScriptedAnswer::ok("[]"),
          ScriptedAnswer::ok(R"({"configs":[]})"), ScriptedAnswer::ok(tooLong),
          ScriptedAnswer::cut(R"({"configs":{}})", 5), ScriptedAnswer::garbage("nonsense\r\n\r\n")}) {
        answer(failure);
        EXPECT_FALSE(update());
        EXPECT_TRUE(isEnabled(on, false));
        clock.advance(2h);
    }
}

TEST_F(ConfigManager, LeavesAServerAloneAfterFailuresForLongerAndLonger)
{
    answer(ScriptedAnswer::withStatus(500));
    std::size_t count = 0;
    for (const std::chrono::seconds delay : {30s, 60s, 120s, 240s, 480s, 960s, 1920s, 3600s, 3600s}) {
        EXPECT_FALSE(update());
        EXPECT_EQ(requests(), ++count);
        clock.advance(delay - 1ms);
        EXPECT_FALSE(updateAtOnce());
        EXPECT_EQ(requests(), count);
        clock.advance(1ms);
    }
    answer(R"({"configs":{}})");
    EXPECT_TRUE(update());
    clock.advance(1h);
    answer(ScriptedAnswer::withStatus(500));
    EXPECT_FALSE(update());
    clock.advance(30s); // the first failure again
    EXPECT_FALSE(update());
    EXPECT_EQ(requests(), count + 3);
}

TEST_F(ConfigManager, LeavesAServerAloneForAsLongAsItAsks)
{
    ScriptedAnswer busy = ScriptedAnswer::withStatus(503);
    busy.headers = {{"Retry-After", "300"}};
    answer(busy);
    EXPECT_FALSE(update());
    clock.advance(299s);
    EXPECT_FALSE(updateAtOnce());
    clock.advance(1s);
    EXPECT_FALSE(update());
    EXPECT_EQ(requests(), 2U);
}

TEST_F(ConfigManager, AsksAgainAfterAFailureWhenTheClockWasSetBackOrTheSetupIsAnother)
{
    answer(ScriptedAnswer::withStatus(500));
    EXPECT_FALSE(update());
    clock.advance(-1s);
    EXPECT_FALSE(update());
    setUp(QStringLiteral("other"));
    EXPECT_FALSE(update());
    EXPECT_EQ(requests(), 3U);
}

TEST_F(ConfigManager, FailsWithoutAClientSetup)
{
    QXSDKClientSetup::setShared({});
    EXPECT_FALSE(update());
    setUp(QStringLiteral("me"));
    EXPECT_TRUE(update());
}

TEST_F(ConfigManager, KnowsTheLastAnswerFromTheStart)
{
    EXPECT_TRUE(update());
    ASSERT_TRUE(isStored());
    clock.advance(24h * 365);
    open();
    EXPECT_TRUE(isEnabled(on, false)); // however old it is
    EXPECT_FALSE(isEnabled(off, true));
    EXPECT_EQ(requests(), 1U);
    EXPECT_TRUE(update());
    EXPECT_EQ(requests(), 2U);
}

TEST_F(ConfigManager, KeepsTheTimeToLiveThroughARestart)
{
    EXPECT_TRUE(update());
    ASSERT_TRUE(isStored());
    clock.advance(599s);
    open();
    EXPECT_TRUE(updateAtOnce());
    EXPECT_EQ(requests(), 1U);
}

TEST_F(ConfigManager, KnowsNothingForAnotherClientOrServer)
{
    EXPECT_TRUE(update());
    ASSERT_TRUE(isStored());
    for (const bool isReopened : {false, true}) {
        if (isReopened) {
            open();
        }
        setUp(QStringLiteral("other"));
        EXPECT_FALSE(knows(on));
        setUp(QStringLiteral("me"), QStringLiteral("/other"));
        EXPECT_FALSE(knows(on));
        setUp(QStringLiteral("me"));
        EXPECT_TRUE(knows(on));
    }
    setUp(QStringLiteral("other"));
    EXPECT_TRUE(update());
    EXPECT_TRUE(knows(on));
    EXPECT_EQ(requests(), 2U);
}

TEST_F(ConfigManager, FetchesForTheNewSetupWhereTheOldOnesFetchIsUnderWay)
{
    answer(ScriptedAnswer::held(R"({"configs":{"old":{}}})"));
    const UpdateOutcomes old;
    manager->updateIfNecessary(old.add());
    server.waitForHeld(1);
    server.script("/new/configs", ScriptedAnswer::ok(R"({"configs":{"new":{}}})"));
    setUp(QStringLiteral("me"), QStringLiteral("/new"));
    EXPECT_TRUE(update());
    server.release("/api/configs");
    EXPECT_TRUE(waitFor([&] { return old.all().size() == 1; }));
    EXPECT_TRUE(knows(QStringLiteral("new")));
    EXPECT_FALSE(old.all().front());
}

TEST_F(ConfigManager, TakesADamagedFileForNoneAndReplacesItWithTheNextAnswer)
{
    EXPECT_TRUE(update());
    ASSERT_TRUE(isStored());
    QFile sound(path());
    ASSERT_TRUE(sound.open(QIODevice::ReadOnly));
    const QByteArray content = sound.readAll();
    for (const QByteArray& damaged : {QByteArray(), QByteArray("foreign"), content.first(content.size() / 2),
                                      QByteArray(content).replace("\"format\":1", "\"format\":9"),
                                      QByteArray(content + QByteArray(1024 * 1024, ' '))}) {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(damaged);
        file.close();
        open();
        EXPECT_FALSE(knows(on)) << damaged.left(40).constData();
    }
    EXPECT_TRUE(update());
    EXPECT_TRUE(waitFor([this] {
        open();
        return knows(on);
    }));
}

TEST_F(ConfigManager, WorksWithoutAFolderThatItCanWrite)
{
    manager.emplace(QXSDKHttpDynamicConfigOptions{.folder = QStringLiteral("/dev/null/nowhere")});
    EXPECT_TRUE(update());
    EXPECT_TRUE(knows(on));
}

TEST_F(ConfigManager, MakesItsFolder)
{
    const QString deep = folder.filePath(QStringLiteral("a/b"));
    manager.emplace(QXSDKHttpDynamicConfigOptions{.folder = deep});
    EXPECT_TRUE(update());
    EXPECT_TRUE(waitFor([&] { return QFile::exists(deep + QStringLiteral("/qxsdk-dynamic-configs.json")); }));
}

TEST_F(ConfigManager, KeepsItsFileInTheCachesDirectory)
{
    platform::setCachesDirectory(folder.path());
    manager.emplace();
    platform::setCachesDirectory({});
    EXPECT_TRUE(update());
    EXPECT_TRUE(isStored());
}

TEST_F(ConfigManager, TellsThoseWhoWaitWhenItGoes)
{
    answer(ScriptedAnswer::never());
    const UpdateOutcomes outcomes;
    manager->updateIfNecessary(outcomes.add());
    manager->updateIfNecessary(outcomes.add());
    server.waitForRequests(1);
    manager.reset();
    EXPECT_TRUE(waitFor([&] { return outcomes.all().size() == 2; }));
    EXPECT_THAT(outcomes.all(), ElementsAre(false, false));
}

TEST_F(ConfigManager, MayBeCalledAgainInACompletion)
{
    const UpdateOutcomes inner;
    const UpdateOutcomes outer;
    manager->updateIfNecessary([&, count = outer.add()](bool success) {
        manager->updateIfNecessary(inner.add());
        count(success);
    });
    EXPECT_TRUE(waitFor([&] { return !outer.all().empty(); }));
    EXPECT_THAT(inner.all(), ElementsAre(true));
    answer(ScriptedAnswer::withStatus(500));
    clock.advance(1h);
    manager->updateIfNecessary([&, count = outer.add()](bool success) {
        manager->updateIfNecessary(inner.add());
        count(success);
    });
    EXPECT_TRUE(waitFor([&] { return outer.all().size() == 2; }));
    EXPECT_THAT(inner.all(), ElementsAre(true, false));
}

TEST_F(ConfigManager, IsUsedByManyThreadsAtOnce)
{
    constexpr int kThreads = 4;
    constexpr int kCalls = 100;
    std::atomic<int> called = 0;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int call = 0; call < kCalls; ++call) {
                manager->updateIfNecessary([&called](bool) { ++called; });
                static_cast<void>(manager->dynamicConfig(on));
                clock.advance(call % 10 == 0 ? 10min : 1ms);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(waitFor([&] { return called == kThreads * kCalls; }));
    manager.reset();
}

TEST_F(ConfigManager, IsTheProcessesManagerWhereAHostInstallsIt)
{
    QXSDKDynamicConfigManager::setShared(
        std::make_shared<QXSDKHttpDynamicConfigManager>(QXSDKHttpDynamicConfigOptions{.folder = folder.path()}));
    const UpdateOutcomes outcomes;
    QXSDKDynamicConfigManager::shared()->updateIfNecessary(outcomes.add());
    EXPECT_TRUE(waitFor([&] { return !outcomes.all().empty(); }));
    EXPECT_NE(QXSDKDynamicConfigManager::shared()->dynamicConfig(on), nullptr);
    QXSDKDynamicConfigManager::setShared(nullptr);
}

} // namespace
} // namespace kovalin::test
