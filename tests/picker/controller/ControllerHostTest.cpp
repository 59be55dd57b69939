#include "picker/controller/ControllerTest.h"

#include <QtCore/QPointer>
#include <QtQml/QQmlEngine>

#include <gmock/gmock.h>

// A picker in a host's items: what of it a person sees, and who goes first.

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class ControllerHostTest : public ControllerTest {
protected:
    [[nodiscard]] bool isSessionActive() const { return picker.sessionManager->isActive(); }
};

// What a person sees

TEST_F(ControllerHostTest, aSessionLastsFromAppearanceToDisappearance)
{
    embed();
    EXPECT_FALSE(isSessionActive());
    controller->viewWillAppear();
    EXPECT_TRUE(isSessionActive());
    controller->viewWillDisappear();
    EXPECT_FALSE(isSessionActive());
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, CloseEvent)) << "there was no view to see yet";
}

TEST_F(ControllerHostTest, mayAppearBeforeItHasAViewOrAWindow)
{
    controller->viewWillAppear();
    EXPECT_FALSE(isSessionActive());
    embed();
    EXPECT_TRUE(isSessionActive());
}

TEST_F(ControllerHostTest, aHostsItemThatLeaves39PointsEndsASession)
{
    open();
    for (const bool isWide : {true, false}) {
        const auto resize = [&](double points) {
            host->setSize(isWide ? QSizeF(points, height) : QSizeF(width, points));
            settle();
        };
        EXPECT_TRUE(isSessionActive());
        resize(39);
        EXPECT_FALSE(isSessionActive());
        resize(40);
        EXPECT_TRUE(isSessionActive());
        host->setSize({width, height});
        settle();
    }
}

TEST_F(ControllerHostTest, aHostsItemThatIsHiddenEndsASessionAtOnceAndOneWithoutOpacityDoesnt)
{
    const HostItem top(window().contentItem());
    open();
    host->setOpacity(0);
    controller->view()->setOpacity(0);
    settle();
    EXPECT_TRUE(isSessionActive());
    host->setVisible(false);
    EXPECT_FALSE(isSessionActive());
    host->setVisible(true);
    EXPECT_TRUE(isSessionActive());
    controller->view()->setVisible(false);
    EXPECT_FALSE(isSessionActive());
    controller->view()->setVisible(true);
    EXPECT_TRUE(isSessionActive());
}

TEST_F(ControllerHostTest, movesFromWindowToWindowInOneSession)
{
    HostWindow other;
    HostItem otherHost(other.contentItem());
    openWithContent();
    const auto id = picker.sessionManager->sessionId();
    controller->view()->setParentItem(&otherHost);
    settle();
    goTo(ApplicationState::Active); // whichever window has the focus
    EXPECT_TRUE(isSessionActive());
    EXPECT_EQ(picker.sessionManager->sessionId(), id);
    host->setVisible(false);
    EXPECT_TRUE(isSessionActive());
    otherHost.setVisible(false);
    EXPECT_FALSE(isSessionActive());
    controller->view()->setParentItem(nullptr);
}

TEST_F(ControllerHostTest, theApplicationEndsASessionAndResumesItWithin15Seconds)
{
    login->isLinked = false;
    open();
    const auto id = picker.sessionManager->sessionId();
    goTo(ApplicationState::Background);
    EXPECT_FALSE(isSessionActive());
    clock.advance(14'999ms);
    goTo(ApplicationState::Active);
    EXPECT_EQ(picker.sessionManager->sessionId(), id);
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, OpenEvent, CloseEvent, OpenEvent));
    goTo(ApplicationState::Background);
    clock.advance(15s);
    goTo(ApplicationState::Active);
    EXPECT_TRUE(isSessionActive());
    EXPECT_NE(picker.sessionManager->sessionId(), id);
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, OpenEvent, CloseEvent, OpenEvent, CloseEvent, OpenEvent));
}

TEST_F(ControllerHostTest, aSpanHasOneOpenEventHoweverManyViewsItSees)
{
    login->isLinked = false;
    open();
    login->isLinked = true;
    loadContent();
    picker.viewManager->contentDidLoadWithPacks(std::nullopt);
    settle();
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, OpenEvent));
    controller->viewWillDisappear();
    controller->viewWillAppear();
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, OpenEvent, CloseEvent, OpenEvent));
}

// Who goes first

TEST_F(ControllerHostTest, theViewOutlivesTheItemsThatItLiesIn)
{
    openWithContent();
    QQuickItem* const view = controller->view();
    host.reset();
    settle();
    EXPECT_EQ(controller->view(), view);
    EXPECT_EQ(view->parentItem(), nullptr);
    EXPECT_FALSE(isSessionActive());
    EXPECT_TRUE(content()) << "with what is in it";

    host = std::make_unique<HostItem>(window().contentItem(), QRectF(0, 0, width, height));
    embed();
    EXPECT_TRUE(isSessionActive());
    tapTile(0);
    EXPECT_THAT(delegate->told, ElementsAre("selected"));
}

TEST_F(ControllerHostTest, theViewOutlivesTheWindowThatItLiesIn)
{
    {
        HostWindow other;
        controller->view()->setParentItem(other.contentItem());
        controller->view()->setSize({100, 100});
        controller->viewWillAppear();
        settle();
        goTo(ApplicationState::Active);
        EXPECT_TRUE(isSessionActive());
    }
    settle();
    EXPECT_EQ(controller->view()->window(), nullptr);
    EXPECT_FALSE(isSessionActive());
    embed();
    goTo(ApplicationState::Active);
    EXPECT_TRUE(isSessionActive());
}

TEST_F(ControllerHostTest, theControllerTakesItsViewAwayAndEndsTheSession)
{
    const int listeners = host->listeners();
    openWithContent();
    const QPointer<QQuickItem> view = controller->view();
    keepOnlyTheController();
    controller.reset();
    EXPECT_TRUE(host->childItems().isEmpty()) << "at once";
    EXPECT_THAT(eventNumbers(), ElementsAre(MountEvent, OpenEvent, CloseEvent));
    expectGone();
    EXPECT_FALSE(view);
    EXPECT_EQ(host->listeners(), listeners);
    grab();
    host->setVisible(false);
    host.reset();
}

TEST_F(ControllerHostTest, aScriptDoesntBecomeTheViewsOwner)
{
    const QPointer<QQuickItem> view = controller->view();
    const QPointer<QQuickItem> plain = new QQuickItem;
    QQmlEngine scripts;
    scripts.newQObject(view);
    scripts.newQObject(plain);
    for (int round = 0; round < 3 && plain; ++round) {
        scripts.collectGarbage();
        settle();
    }
    EXPECT_FALSE(plain) << "as it does of other items";
    EXPECT_EQ(view, controller->view());
}

TEST_F(ControllerHostTest, twoPickersHaveSessionsOfTheirOwn)
{
    const PickerObjects second = PickerObjects::make(nullptr, sources());
    const auto secondController = second.makeController();
    secondController->view()->setParentItem(host.get());
    secondController->view()->setSize({100, 100});
    secondController->viewWillAppear();
    open();
    EXPECT_TRUE(isSessionActive());
    EXPECT_TRUE(second.sessionManager->isActive());
    EXPECT_NE(picker.sessionManager->sessionId(), second.sessionManager->sessionId());
    secondController->view()->setVisible(false);
    EXPECT_FALSE(second.sessionManager->isActive());
    EXPECT_TRUE(isSessionActive());
}

} // namespace
