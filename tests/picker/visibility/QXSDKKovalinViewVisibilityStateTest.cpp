#include "picker/visibility/QXSDKKovalinViewVisibilityState.h"

#include "picker/visibility/VisibilityTest.h"
#include "support/LogLines.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>

// What starts and ends sessions.

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using QXSDKKovalinViewVisibilityStateTest = VisibilityTest;

TEST_F(QXSDKKovalinViewVisibilityStateTest, aSessionStartsWithTheLastOfThreeAndEndsWithTheFirst)
{
    const std::array<std::function<void()>, 3> begin{[this] { appear(); }, [this] { show(); },
                                                     [] {
                                                         goTo(ApplicationState::Active);
                                                     }};
    const std::array<std::function<void()>, 3> end{[this] { disappear(); }, [this] { hide(); },
                                                   [] {
                                                       goTo(ApplicationState::Inactive);
                                                   }};
    std::array<std::size_t, 3> order{0, 1, 2};
    do {
        for (std::size_t first = 0; first < 3; ++first) {
            SCOPED_TRACE(testing::PrintToString(order) + " ended by " + std::to_string(first));
            goTo(ApplicationState::Background);
            begin.at(order[0])();
            begin.at(order[1])();
            EXPECT_FALSE(isSessionActive());
            EXPECT_FALSE(picker.visibilityState->isVisible());
            begin.at(order[2])();
            EXPECT_TRUE(isSessionActive());
            EXPECT_TRUE(picker.visibilityState->isVisible());
            end.at(first)();
            EXPECT_FALSE(isSessionActive());
            EXPECT_FALSE(picker.visibilityState->isVisible());
            for (const auto& each : end) {
                each();
            }
            EXPECT_FALSE(isSessionActive());
        }
    } while (std::ranges::next_permutation(order).found);
    EXPECT_EQ(recorder->told.size(), 36U) << "six orders, three ends each";
}

TEST_F(QXSDKKovalinViewVisibilityStateTest, logsNoErrorsForWhatComesTwice)
{
    const LogLines lines;
    appear();
    show();
    appear();
    goTo(ApplicationState::Inactive);
    goTo(ApplicationState::Background);
    hide();
    disappear();
    disappear();
    goTo(ApplicationState::Active);
    EXPECT_THAT(recorder->told, ElementsAre("start", "end"));
    EXPECT_EQ(lines.count(QStringLiteral("[ERROR]")), 0);
}

TEST_F(QXSDKKovalinViewVisibilityStateTest, thereIsNoSessionBeforeThereIsAContainer)
{
    const PickerObjects other = PickerObjects::make(nullptr, sources());
    other.visibilityState->viewWillAppear();
    showView(other, QXSDKKovalinViewTypeContent);
    goTo(ApplicationState::Inactive);
    goTo(ApplicationState::Active);
    EXPECT_FALSE(other.visibilityState->isVisible());
    EXPECT_FALSE(other.sessionManager->isActive());
    EXPECT_THAT(eventNumbers(), IsEmpty());
}

TEST_F(QXSDKKovalinViewVisibilityStateTest, theContainerIsHeldWeakly)
{
    appear();
    show();
    EXPECT_TRUE(isSessionActive());
    hide();
    const std::weak_ptr<Container> gone = container;
    container.reset();
    settle();
    EXPECT_TRUE(gone.expired());
    EXPECT_FALSE(picker.visibilityState->isVisible());
}

TEST_F(QXSDKKovalinViewVisibilityStateTest, becomesTheDelegateOfAnotherContainerAlone)
{
    container->setDelegate({});
    picker.visibilityState->setContainerView(container);
    appear();
    show();
    EXPECT_FALSE(isSessionActive()) << "it is the present one";
    hide();

    const auto other = makeView<Container>();
    other->setFrame({0, 0, 100, 100});
    picker.visibilityState->setContainerView(other);
    root()->addSubview(other);
    EXPECT_TRUE(isSessionActive());
    picker.visibilityState->setContainerView(nullptr);
    EXPECT_FALSE(picker.visibilityState->isVisible());
}

TEST_F(QXSDKKovalinViewVisibilityStateTest, looksAtTheContainerAndNotAtWhatItIsTold)
{
    appear();
    picker.visibilityState->containerViewVisibilityDidChange(true);
    EXPECT_FALSE(isSessionActive());
    show();
    picker.visibilityState->containerViewVisibilityDidChange(false);
    EXPECT_TRUE(isSessionActive());
}

TEST_F(QXSDKKovalinViewVisibilityStateTest, aSessionEndsWithADisappearanceThoughTheContainerStays)
{
    appear();
    show();
    disappear();
    EXPECT_TRUE(container->isShown());
    EXPECT_THAT(recorder->told, ElementsAre("start", "end"));
}

TEST_F(QXSDKKovalinViewVisibilityStateTest, aSessionEndsWhenLessThan40PointsAreLeftWithNothingHidden)
{
    appear();
    const auto superview = addView({0, 0, 200, 200});
    superview->addSubview(container);
    EXPECT_TRUE(isSessionActive());
    superview->setFrame({0, 0, 200, 39});
    settle();
    EXPECT_THAT(recorder->told, ElementsAre("start", "end"));
    superview->setFrame({0, 0, 200, 40});
    settle();
    EXPECT_THAT(recorder->told, ElementsAre("start", "end", "start"));
}

TEST_F(QXSDKKovalinViewVisibilityStateTest, aSessionEndsAtOnceWhenAnythingAroundItIsHidden)
{
    appear();
    show();
    const QString id = *picker.sessionManager->sessionId();
    window().contentItem()->setVisible(false);
    EXPECT_THAT(recorder->told, ElementsAre("start", "end"));
    window().contentItem()->setVisible(true);
    EXPECT_THAT(recorder->told, ElementsAre("start", "end", "start"));
    EXPECT_EQ(picker.sessionManager->sessionId(), id) << "it is resumed";
}

// The application

TEST_F(QXSDKKovalinViewVisibilityStateTest, theApplicationEndsASessionAndResumesItWithin15Seconds)
{
    appear();
    show();
    const QString id = *picker.sessionManager->sessionId();
    clock.advance(2s);
    goTo(ApplicationState::Background);
    EXPECT_FALSE(isSessionActive());
    clock.advance(14'999ms);
    goTo(ApplicationState::Active);
    EXPECT_TRUE(isSessionActive());
    EXPECT_EQ(picker.sessionManager->sessionId(), id);
    clock.advance(3s);
    EXPECT_EQ(picker.sessionManager->sessionTime(), 5000);

    goTo(ApplicationState::Inactive);
    clock.advance(15s);
    goTo(ApplicationState::Active);
    EXPECT_TRUE(isSessionActive());
    EXPECT_NE(picker.sessionManager->sessionId(), id);
    EXPECT_EQ(picker.sessionManager->sessionTime(), 0);
}

TEST_F(QXSDKKovalinViewVisibilityStateTest, comingToTheFrontUpdatesTheManagerWithAnAccountAlone)
{
    appear();
    goTo(ApplicationState::Inactive);
    goTo(ApplicationState::Active);
    EXPECT_EQ(configs->updates, 1) << "also while nothing is shown";
    login->isLinked = false;
    show();
    goTo(ApplicationState::Inactive);
    EXPECT_FALSE(isSessionActive());
    goTo(ApplicationState::Active);
    EXPECT_EQ(configs->updates, 1);
    EXPECT_TRUE(isSessionActive()) << "in any case";
}

TEST_F(QXSDKKovalinViewVisibilityStateTest, listensToTheApplicationBetweenAppearanceAndDisappearance)
{
    goTo(ApplicationState::Inactive);
    goTo(ApplicationState::Active);
    EXPECT_EQ(configs->updates, 0);
    appear();
    appear();
    goTo(ApplicationState::Inactive);
    goTo(ApplicationState::Active);
    EXPECT_EQ(configs->updates, 1) << "once, however often it appears";
    disappear();
    goTo(ApplicationState::Inactive);
    goTo(ApplicationState::Active);
    EXPECT_EQ(configs->updates, 1);
}

TEST_F(QXSDKKovalinViewVisibilityStateTest, startsWhatAppearsInTheBackgroundWhenTheApplicationComesToTheFront)
{
    goTo(ApplicationState::Background);
    show();
    appear();
    EXPECT_THAT(recorder->told, IsEmpty());
    goTo(ApplicationState::Inactive);
    EXPECT_THAT(recorder->told, IsEmpty());
    goTo(ApplicationState::Active);
    EXPECT_THAT(recorder->told, ElementsAre("start"));
}

} // namespace
