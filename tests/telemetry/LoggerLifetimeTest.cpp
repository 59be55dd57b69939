#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/NotificationCenter.h"
#include "support/ScriptedLoginClient.h"
#include "support/WaitFor.h"
#include "telemetry/PickerEvents.h"
#include "telemetry/QXSDKKovalinViewControllerLogger.h"

#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

using namespace kovalin::test;
using namespace std::chrono_literals;
using kovalin::platform::isMainThread;
using kovalin::platform::NotificationCenter;
using testing::IsEmpty;

namespace {

/// Does something when a login is told, or a session starts or ends.
class Interloper final : public QXSDKKovalinStickerPickerSessionManagerObserver {
public:
    explicit Interloper(std::function<void()> act)
        : _act(std::move(act))
    {
    }
    void act() { _act(); }
    void sessionDidStart() override { _act(); }
    void sessionDidEnd() override { _act(); }

private:
    std::function<void()> _act;
};

/// Notes on which thread events arrive.
class ThreadNotingQueue final : public QXSDKAnalyticsEventsQueue {
public:
    void addEvent(const QXSDKServerEvent&) override { ++(isMainThread() ? onMainThread : elsewhere); }

    std::atomic<int> onMainThread = 0;
    std::atomic<int> elsewhere = 0;
};

class LoggerLifetime : public PickerEvents {
protected:
    InstalledLoginClient login;
    std::shared_ptr<QXSDKKovalinViewControllerLogger> logger = QXSDKKovalinViewControllerLogger::create(sessions);
};

TEST_F(LoggerLifetime, KeepsTheSessionManagerAndIsntKeptByIt)
{
    const std::weak_ptr<QXSDKKovalinStickerPickerSessionManager> manager = sessions;
    const std::weak_ptr<QXSDKKovalinViewControllerLogger> weakLogger = logger;
    sessions.reset();
    ASSERT_FALSE(manager.expired());
    logger->logHearthLinkTap();
    logger->sessionDidEnd();
    EXPECT_EQ(queue->events().size(), 2U);
    logger.reset();
    EXPECT_TRUE(weakLogger.expired());
    EXPECT_TRUE(manager.expired());
}

TEST_F(LoggerLifetime, IsToldNothingAfterItsEnd)
{
    login->link();
    logger.reset();
    drainMainQueue();
    span(1s);
    EXPECT_THAT(queue->events(), IsEmpty());
}

TEST_F(LoggerLifetime, MayEndWhileALoginIsTold)
{
    logger.reset();
    const auto before = std::make_shared<Interloper>([this] { logger.reset(); });
    NotificationCenter::qxsdkCenter().addObserver(before, &Interloper::act, kQXSDKLoginClientStateChangeNotification);
    logger = QXSDKKovalinViewControllerLogger::create(sessions); // told behind the one that ends it
    const std::weak_ptr<QXSDKKovalinViewControllerLogger> ending = logger;
    login->link();
    drainMainQueue();
    EXPECT_TRUE(ending.expired());
    EXPECT_EQ(queue->events().size(), 1U) << "it lives until all are told";
}

TEST_F(LoggerLifetime, MayEndWhileASessionIsTold)
{
    const std::weak_ptr<QXSDKKovalinViewControllerLogger> ending = logger;
    const auto interloper = std::make_shared<Interloper>([this] { logger.reset(); });
    sessions->registerWeakObserver(interloper);
    span(1s);
    EXPECT_TRUE(ending.expired());
    EXPECT_THAT(queue->events(), IsEmpty()) << "it saw the start, but no end";
}

TEST_F(LoggerLifetime, IsToldOfLoginsOnTheMainThreadWhereverTheyAreMade)
{
    const auto noting = std::make_shared<ThreadNotingQueue>();
    QXSDKAnalyticsEventsQueue::setSharedInstance(noting);
    std::thread([this] { login->link(); }).join();
    EXPECT_EQ(noting->onMainThread + noting->elsewhere, 0) << "in a later turn of the main queue";
    EXPECT_TRUE(waitFor([&noting] { return noting->onMainThread == 1; }));
    EXPECT_EQ(noting->elsewhere, 0);
    span(1s);
    EXPECT_EQ(noting->onMainThread, 2) << "at once, on the thread that tells";
}

TEST_F(LoggerLifetime, SendsEachEventToTheQueueThatIsInstalledThen)
{
    logger->logHearthLinkTap();
    const auto other = std::make_shared<RecordingAnalyticsQueue>();
    QXSDKAnalyticsEventsQueue::setSharedInstance(other);
    logger->logHearthLinkTap();
    QXSDKAnalyticsEventsQueue::setSharedInstance(nullptr);
    logger->logHearthLinkTap(); // forgotten
    EXPECT_EQ(queue->events().size(), 1U);
    EXPECT_EQ(other->events(), queue->events());
}

TEST_F(LoggerLifetime, KeepsTwoPickersApart)
{
    const auto otherSessions = std::make_shared<QXSDKKovalinStickerPickerSessionManager>();
    const auto other = QXSDKKovalinViewControllerLogger::create(otherSessions);
    span(1s);
    ASSERT_EQ(queue->events().size(), 1U);
    EXPECT_EQ(decodedEvent(queue->events().at(0)),
              expected("kovalin_kit_sticker_picker_close", {{"sticker_picker_session_duration_millis", "1000"}}));
    login->link();
    drainMainQueue();
    EXPECT_EQ(queue->events().size(), 3U) << "the account is the process's, and each picker tells of it";
}

} // namespace
