#include "picker/controller/ControllerTest.h"
#include "platform/foundation/NotificationCenter.h"
#include "support/LogLines.h"
#include "support/RecordingURLOpener.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

// A picker goes at any moment, also at the word of those whom it tells.

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

/// Does something at events of one kind.
class ActingAnalyticsQueue final : public QXSDKAnalyticsEventsQueue {
public:
    void addEvent(const QXSDKServerEvent& event) override
    {
        const auto number = wireFields(event.serverEventData).at(0).number;
        numbers.push_back(number);
        if (number == when) {
            act();
        }
    }

    std::vector<std::uint32_t> numbers;
    std::uint32_t when = 0;
    std::function<void()> act;
};

class ControllerLifetimeTest : public ControllerTest {
protected:
    ~ControllerLifetimeTest() override { QXSDKAnalyticsEventsQueue::setSharedInstance(nullptr); }

    void letGo() { controller.reset(); }
    void letGoWhenTold()
    {
        keepOnlyTheController();
        delegate->then = [this] {
            letGo();
        };
    }
    void letGoAt(EventNumber number)
    {
        keepOnlyTheController();
        queue->when = number;
        queue->act = [this] {
            letGo();
        };
        QXSDKAnalyticsEventsQueue::setSharedInstance(queue);
    }
    void expectGoneWithItsView()
    {
        queue->when = 0;
        EXPECT_EQ(controller, nullptr);
        expectGone();
        EXPECT_TRUE(host->childItems().isEmpty());
    }

    std::shared_ptr<ActingAnalyticsQueue> queue = std::make_shared<ActingAnalyticsQueue>();
};

// By its delegate

TEST_F(ControllerLifetimeTest, mayGoWhenAStickerIsTapped)
{
    openWithContent();
    auto theContent = content();
    letGoWhenTold();
    tapTile(0);
    EXPECT_THAT(delegate->told, ElementsAre("selected"));
    theContent->setNavbarOffset(0); // a pending return would hold it
    theContent.reset();
    expectGoneWithItsView();
}

TEST_F(ControllerLifetimeTest, mayGoWhenATagIsTapped)
{
    openWithContent();
    letGoWhenTold();
    settleViews();
    const auto strip = stripOf(*content());
    tap(middleOfPill(*strip, 0) + strip->frame().topLeft());
    EXPECT_THAT(delegate->told, ElementsAre("tag"));
    expectGoneWithItsView();
}

TEST_F(ControllerLifetimeTest, mayGoWhenTheFocusComes)
{
    openWithContent();
    letGoWhenTold();
    focusField();
    EXPECT_THAT(delegate->told, ElementsAre("focus"));
    expectGoneWithItsView();
}

TEST_F(ControllerLifetimeTest, mayGoWhenTheFocusGoes)
{
    openWithContent();
    focusField();
    letGoWhenTold();
    key(Qt::Key_Return);
    EXPECT_THAT(delegate->told, ElementsAre("focus", "no focus"));
    expectGoneWithItsView();
}

TEST_F(ControllerLifetimeTest, itsDelegateMayGoMeanwhile)
{
    openWithContent();
    delegate->then = [this] {
        delegate.reset();
    };
    focusField();
    EXPECT_EQ(delegate, nullptr);
    key(Qt::Key_Return);
    tapTile(0);
}

// By whoever takes its events

TEST_F(ControllerLifetimeTest, mayGoWhenItsViewIsMade)
{
    letGoAt(MountEvent);
    (void)controller->view();
    expectGoneWithItsView();
}

TEST_F(ControllerLifetimeTest, mayGoWhenItAppears)
{
    embed();
    showView(picker, QXSDKKovalinViewTypeContent);
    letGoAt(OpenEvent);
    controller->viewWillAppear();
    expectGoneWithItsView();
}

TEST_F(ControllerLifetimeTest, mayGoWhenItDisappears)
{
    open();
    letGoAt(CloseEvent);
    controller->viewWillDisappear();
    expectGoneWithItsView();
}

TEST_F(ControllerLifetimeTest, mayGoWhenItComesIntoSightAndOutOfIt)
{
    open();
    showView(picker, QXSDKKovalinViewTypeContent);
    letGoAt(CloseEvent);
    host->setVisible(false);
    expectGoneWithItsView();
    host->setVisible(true);

    makePicker();
    open();
    showView(picker, QXSDKKovalinViewTypeContent);
    host->setVisible(false);
    letGoAt(OpenEvent);
    host->setVisible(true);
    expectGoneWithItsView();
}

TEST_F(ControllerLifetimeTest, mayGoWithTheApplicationsState)
{
    open();
    showView(picker, QXSDKKovalinViewTypeContent);
    letGoAt(CloseEvent);
    goTo(ApplicationState::Background);
    expectGoneWithItsView();
    goTo(ApplicationState::Active);

    makePicker();
    open();
    showView(picker, QXSDKKovalinViewTypeContent);
    goTo(ApplicationState::Background);
    letGoAt(OpenEvent);
    goTo(ApplicationState::Active);
    expectGoneWithItsView();
}

TEST_F(ControllerLifetimeTest, mayGoWhenItsFirstViewComes)
{
    open();
    auto manager = picker.viewManager;
    letGoAt(OpenEvent);
    manager->contentDidLoadWithPacks(std::nullopt);
    manager.reset();
    settle();
    expectGoneWithItsView();
}

TEST_F(ControllerLifetimeTest, mayGoWhenAShareIsLogged)
{
    openWithContent();
    letGoAt(ShareEvent);
    tapTile(0);
    EXPECT_TRUE(delegate->told.empty()) << "there is no controller to tell of any more";
    expectGoneWithItsView();
}

TEST_F(ControllerLifetimeTest, mayGoWhenAStatusButtonIsTapped)
{
    login->isLinked = false;
    open();
    grab();
    QPointF button = partOf<View>(*currentView(), 0)->frame().center();
    letGoAt(LinkTapEvent);
    tap(button);
    expectGoneWithItsView();

    const InstalledURLOpener opener;
    login->isLinked = true;
    makePicker();
    open();
    picker.viewManager->contentDidLoadWithPacks(std::nullopt);
    settleViews();
    button = partOf<View>(*currentView(), 2)->frame().center();
    letGoAt(CreateAvatarTapEvent);
    tap(button);
    expectGoneWithItsView();
}

// At any moment

TEST_F(ControllerLifetimeTest, twoHundredPickersComeAndGoAtAnyMoment)
{
    std::mt19937 random(20201122);
    const auto below = [&random](std::size_t limit) {
        return std::size_t(random() % limit);
    };
    const std::vector<std::function<void()>> steps{
        [this] { embed(); },
        [this] { controller->viewWillAppear(); },
        [this] { controller->viewWillDisappear(); },
        [] { settle(); },
        [this] { grab(); },
        [] { drainMainQueue(); },
        [this] {
            if (const auto manager = goneManager.lock()) {
                manager->contentDidLoadWithPacks(provider->packs());
            }
        },
        [this] { controller->setSearchTerm(QStringLiteral("happy"), QXSDKKovalinSearchModeBlend); },
        [this] { controller->setFriendUserId(QStringLiteral("f")); },
        [this] { host->setVisible(!host->isVisible()); },
        [this] { host->setWidth(host->width() > 100 ? 30 : width); },
        [this] { controller->view()->setParentItem(nullptr); },
        [this] {
            host.reset();
            host = std::make_unique<HostItem>(window().contentItem(), QRectF(0, 0, width, height));
        },
        [] { goTo(ApplicationState::Background); },
        [] { goTo(ApplicationState::Active); },
        [this] {
            login->isLinked = !login->isLinked;
            NotificationCenter::qxsdkCenter().postNotificationName(kQXSDKLoginClientStateChangeNotification);
        },
        [this] { clock.advance(9s); },
    };
    const LogLines silence;
    loadContent(); // what the provider has for all of them
    for (int round = 0; round < 200; ++round) {
        makePicker();
        keepOnlyTheController();
        for (std::size_t count = below(12); count > 0; --count) {
            steps.at(below(steps.size()))();
        }
        letGo();
        SCOPED_TRACE(round);
        expectGoneWithItsView();
        ASSERT_FALSE(HasFailure());
    }
    pictures.drain();
}

TEST_F(ControllerLifetimeTest, aThousandAppearancesLeaveNothingBehind)
{
    const LogLines silence;
    login->isLinked = false;
    open();
    const int listeners = host->listeners();
    const auto id = picker.sessionManager->sessionId();
    for (int round = 0; round < 1000; ++round) {
        controller->viewWillDisappear();
        controller->viewWillAppear();
        if (round % 100 == 0) {
            controller->view()->setParentItem(nullptr);
            settle();
            controller->view()->setParentItem(host.get());
            settle();
        }
    }
    EXPECT_TRUE(picker.sessionManager->isActive());
    EXPECT_EQ(picker.sessionManager->sessionId(), id);
    EXPECT_EQ(host->listeners(), listeners);
    const auto told = eventNumbers();
    EXPECT_EQ(std::ranges::count(told, CloseEvent), 1010);
    EXPECT_EQ(std::ranges::count(told, OpenEvent), 1011);
    login->isLinked = true;
    const int updates = configs->updates;
    goTo(ApplicationState::Inactive);
    goTo(ApplicationState::Active);
    EXPECT_EQ(configs->updates, updates + 1) << "it listens to the application once";
}

} // namespace
