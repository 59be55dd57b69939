#include "platform/foundation/Application.h"

#include "support/WaitFor.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QCoreApplication>
#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace kovalin::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Listener {
    void becameActive() { heard.push_back("active " + std::to_string(static_cast<int>(Application::state()))); }
    void willResign() { heard.push_back("resign " + std::to_string(static_cast<int>(Application::state()))); }

    std::vector<std::string> heard;
};

class ApplicationTest : public testing::Test {
protected:
    ApplicationTest()
    {
        Application::setState(ApplicationState::Active);
        auto& center = NotificationCenter::defaultCenter();
        center.addObserver(listener, &Listener::becameActive, UIApplicationDidBecomeActiveNotification);
        center.addObserver(listener, &Listener::willResign, UIApplicationWillResignActiveNotification);
    }
    ~ApplicationTest() override
    {
        listener.reset();
        Application::setState(ApplicationState::Active);
    }

    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
};

TEST_F(ApplicationTest, StatesHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(ApplicationState::Active), 0);
    EXPECT_EQ(static_cast<int>(ApplicationState::Inactive), 1);
    EXPECT_EQ(static_cast<int>(ApplicationState::Background), 2);
}

TEST_F(ApplicationTest, TellsOnceThatItLeavesTheFront)
{
    Application::setState(ApplicationState::Inactive);
    EXPECT_THAT(listener->heard, ElementsAre("resign 1"));
    Application::setState(ApplicationState::Background);
    Application::setState(ApplicationState::Inactive);
    EXPECT_THAT(listener->heard, ElementsAre("resign 1"));
    EXPECT_EQ(Application::state(), ApplicationState::Inactive);
}

TEST_F(ApplicationTest, TellsOnceThatItComesToTheFront)
{
    Application::setState(ApplicationState::Background);
    EXPECT_THAT(listener->heard, ElementsAre("resign 2"));
    Application::setState(ApplicationState::Active);
    Application::setState(ApplicationState::Active);
    EXPECT_THAT(listener->heard, ElementsAre("resign 2", "active 0"));
}

TEST_F(ApplicationTest, TellsNothingOfTheSameState)
{
    Application::setState(ApplicationState::Active);
    EXPECT_THAT(listener->heard, IsEmpty());
}

TEST_F(ApplicationTest, FollowsTheSystem)
{
    Application::setState(ApplicationState::Inactive);
    if (QGuiApplication::applicationState() == Qt::ApplicationActive) {
        GTEST_SKIP() << "Off screen only the process's first window brings the application to the front.";
    }
    QWindow window;
    window.show();
    window.requestActivate();
    ASSERT_TRUE(test::waitFor([] { return QGuiApplication::applicationState() == Qt::ApplicationActive; }));
    EXPECT_EQ(Application::state(), ApplicationState::Active);
    EXPECT_THAT(listener->heard, ElementsAre("resign 1", "active 0"));
}

TEST_F(ApplicationTest, KnowsAllStatesOfTheSystem)
{
    // Off screen there is no way to them but to tell of them.
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
    EXPECT_EQ(Application::state(), ApplicationState::Inactive);
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationHidden);
    EXPECT_EQ(Application::state(), ApplicationState::Background);
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_EQ(Application::state(), ApplicationState::Active);
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationSuspended);
    EXPECT_EQ(Application::state(), ApplicationState::Background);
    EXPECT_THAT(listener->heard, ElementsAre("resign 1", "active 0", "resign 2"));
}

TEST_F(ApplicationTest, GoesToTheBackgroundWhenItIsAboutToQuit)
{
    Application::setState(ApplicationState::Active);
    QMetaObject::Connection started =
        QObject::connect(QCoreApplication::eventDispatcher(), &QAbstractEventDispatcher::aboutToBlock,
                         QCoreApplication::instance(), [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    QObject::disconnect(started);
    EXPECT_EQ(Application::state(), ApplicationState::Background);
    Application::setState(ApplicationState::Active);
}

TEST_F(ApplicationTest, MayBeAskedOnAnyThread)
{
    std::atomic<bool> stop = false;
    std::thread asking([&stop] {
        do {
            const auto state = static_cast<int>(Application::state());
            EXPECT_TRUE(state >= 0 && state <= 2);
        } while (!stop);
    });
    for (int i = 0; i < 300; ++i) {
        Application::setState(static_cast<ApplicationState>(i % 3));
    }
    stop = true;
    asking.join();
    EXPECT_EQ(listener->heard.size(), 199U);
}

} // namespace
} // namespace kovalin::platform
