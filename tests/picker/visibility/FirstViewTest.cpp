#include "picker/visibility/VisibilityTest.h"

#include <gmock/gmock.h>

// Who is told of the first view that a person sees, and what may be done then.

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class FirstViewTest : public VisibilityTest {
protected:
    void appearInSight()
    {
        appear();
        show();
    }
    /// Ends the picker when it tells anything the next time.
    void letGoWhenTold()
    {
        gone = picker.visibilityState;
        recorder->then = [this] {
            picker = {};
        };
    }
    void expectGone()
    {
        settle(); // what is under way may hold it
        EXPECT_TRUE(gone.expired());
        recorder->then = {};
        recorder->told.clear();
        picker = PickerObjects::make(nullptr, sources());
        picker.sessionManager->registerWeakObserver(recorder);
        picker.visibilityState->setDelegate(recorder);
        picker.visibilityState->setContainerView(container);
    }

    std::weak_ptr<QXSDKKovalinViewVisibilityState> gone;
};

TEST_F(FirstViewTest, isToldAtTheStartWhereAViewIsThere)
{
    showView(picker, QXSDKKovalinViewTypeContent);
    EXPECT_THAT(recorder->told, IsEmpty());
    appear();
    show();
    EXPECT_THAT(recorder->told, testing::UnorderedElementsAre("start", "view 1"));
}

TEST_F(FirstViewTest, isToldWhenItComesDuringASession)
{
    appear();
    show();
    EXPECT_THAT(recorder->told, ElementsAre("start"));
    showView(picker, QXSDKKovalinViewTypeLogin);
    EXPECT_THAT(recorder->told, ElementsAre("start", "view 3"));
}

TEST_F(FirstViewTest, isToldOnceASpan)
{
    appear();
    show();
    showView(picker, QXSDKKovalinViewTypeLogin);
    showView(picker, QXSDKKovalinViewTypeContent);
    showView(picker, QXSDKKovalinViewTypeError);
    EXPECT_THAT(recorder->told, ElementsAre("start", "view 3"));
}

TEST_F(FirstViewTest, isToldAgainWhenASessionIsResumed)
{
    showView(picker, QXSDKKovalinViewTypeLogin);
    appear();
    show();
    const auto id = picker.sessionManager->sessionId();
    showView(picker, QXSDKKovalinViewTypeContent);
    hide();
    clock.advance(1s);
    show();
    EXPECT_EQ(picker.sessionManager->sessionId(), id);
    ASSERT_EQ(recorder->firstViews.size(), 2U);
    EXPECT_EQ(recorder->firstViews.at(0).type, 3);
    EXPECT_EQ(recorder->firstViews.at(1).type, 1);
}

TEST_F(FirstViewTest, isntToldOfWhatNobodySees)
{
    show();
    showView(picker, QXSDKKovalinViewTypeContent);
    EXPECT_THAT(recorder->told, IsEmpty()) << "nothing has appeared";
    appear();
    hide();
    recorder->told.clear();
    recorder->firstViews.clear();
    showView(picker, QXSDKKovalinViewTypeLogin);
    EXPECT_THAT(recorder->told, IsEmpty());
    show();
    ASSERT_EQ(recorder->firstViews.size(), 1U);
    EXPECT_EQ(recorder->firstViews.at(0).type, 3) << "the one that is there by then";
}

TEST_F(FirstViewTest, isToldByItsTypeWithTheConfiguration)
{
    appear();
    for (const auto type : {QXSDKKovalinViewTypeContent, QXSDKKovalinViewTypeCreateAvatar, QXSDKKovalinViewTypeLogin,
                            QXSDKKovalinViewTypeNoPermission, QXSDKKovalinViewTypeError}) {
        showView(picker, type);
        show();
        EXPECT_EQ(recorder->firstViews.back().type, qint32(type));
        EXPECT_EQ(recorder->firstViews.back().config, picker.config.get());
        EXPECT_EQ(recorder->firstViews.back().sticker, nullptr);
        hide();
    }
}

TEST_F(FirstViewTest, isToldWithWhatTheIconShows)
{
    const auto shown = sticker(QStringLiteral("a"));
    const auto first = icon(shown);
    const auto second = icon(sticker(QStringLiteral("b")));
    picker.viewManager->kovalinIcons().add(first);
    picker.viewManager->kovalinIcons().add(second);
    showView(picker, QXSDKKovalinViewTypeContent);
    appear();
    show();
    EXPECT_EQ(recorder->firstViews.back().sticker, shown) << "the one that was attached first";
    hide();
    first->setSticker(nullptr);
    show();
    EXPECT_EQ(recorder->firstViews.back().sticker, nullptr) << "its own, which is none";
    hide();
    picker.viewManager->kovalinIcons().remove(first);
    picker.viewManager->kovalinIcons().remove(second);
    show();
    EXPECT_EQ(recorder->firstViews.back().sticker, nullptr);
}

TEST_F(FirstViewTest, isLoggedWithoutAnybodyElse)
{
    picker.visibilityState->setDelegate(picker.logger);
    showView(picker, QXSDKKovalinViewTypeContent);
    appear();
    show();
    hide();
    EXPECT_THAT(eventNumbers(), ElementsAre(OpenEvent, CloseEvent));
}

TEST_F(FirstViewTest, doesWithoutADelegate)
{
    recorder.reset();
    appear();
    show();
    showView(picker, QXSDKKovalinViewTypeContent);
    EXPECT_TRUE(isSessionActive());
}

// Whoever is told may do anything

TEST_F(FirstViewTest, thePickerMayGoWheneverItTells)
{
    const std::vector<std::pair<std::function<void()>, std::function<void()>>> changes{
        {[this] { show(); },
         [this] {
             appear();
         }},
        {[this] { appear(); },
         [this] {
             show();
         }},
        {[this] { appear(); },
         [this] {
             container->setParentItem(root().get());
         }},
        {[this] { appearInSight(); },
         [this] {
             showView(picker, QXSDKKovalinViewTypeContent);
         }},
        {[this] { appearInSight(); },
         [this] {
             disappear();
         }},
        {[this] { appearInSight(); },
         [this] {
             hide();
         }},
        {[this] { appearInSight(); },
         [this] {
             root()->setHidden(true);
         }},
        {[this] { appearInSight(); },
         [] {
             goTo(ApplicationState::Background);
         }},
        {[this] {
             goTo(ApplicationState::Inactive);
             appearInSight();
         },
         [] {
             goTo(ApplicationState::Active);
         }},
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        SCOPED_TRACE(i);
        changes.at(i).first();
        recorder->told.clear();
        letGoWhenTold();
        changes.at(i).second();
        settle();
        EXPECT_EQ(recorder->told.size(), 1U);
        expectGone();
        hide();
        root()->setHidden(false);
        goTo(ApplicationState::Active);
        settle();
    }
}

TEST_F(FirstViewTest, mayEndTheSpanThatItIsToldIn)
{
    recorder->then = [this] {
        if (recorder->told.back() == "view 1") {
            disappear();
        }
    };
    showView(picker, QXSDKKovalinViewTypeContent);
    show();
    appear();
    EXPECT_FALSE(isSessionActive());
    goTo(ApplicationState::Inactive);
    goTo(ApplicationState::Active);
    EXPECT_FALSE(isSessionActive());
    EXPECT_EQ(configs->updates, 0) << "it doesn't listen to the application";
    recorder->then = {};
    appear();
    EXPECT_TRUE(isSessionActive());
    EXPECT_EQ(recorder->firstViews.size(), 2U);
}

} // namespace
