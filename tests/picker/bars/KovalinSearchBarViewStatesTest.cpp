#include "picker/bars/KovalinSearchBarViewTesting.h"

using namespace kovalin::platform;
using kovalin::test::KovalinSearchBarViewTest;
using kovalin::test::waitFor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// States

TEST_F(KovalinSearchBarViewTest, withoutFocusAndTextNeitherButtonShows)
{
    EXPECT_EQ(shown(), "");
}

TEST_F(KovalinSearchBarViewTest, justFocusedAndEmptyTheBackButtonShows)
{
    focus();
    EXPECT_EQ(shown(), "back");
    EXPECT_THAT(delegate->told, ElementsAre("focus"));
}

TEST_F(KovalinSearchBarViewTest, withFocusAndTextBothButtonsShow)
{
    focus();
    type('a');
    EXPECT_EQ(shown(), "back clear");
    EXPECT_THAT(delegate->told, ElementsAre("focus", "text \"a\""));
}

TEST_F(KovalinSearchBarViewTest, emptiedByTypingNeitherButtonShowsAlthoughTheFocusStays)
{
    focus();
    type('a');
    key(Qt::Key_Backspace);
    EXPECT_TRUE(bar->isFirstResponder());
    EXPECT_EQ(shown(), "");
    EXPECT_THAT(delegate->told, ElementsAre("focus", "text \"a\"", "text \"\""));
}

TEST_F(KovalinSearchBarViewTest, withTextAndWithoutFocusBothButtonsShow)
{
    focus();
    type('a');
    bar->endEditing();
    EXPECT_FALSE(bar->isFirstResponder());
    EXPECT_EQ(shown(), "back clear");
    EXPECT_THAT(delegate->told, ElementsAre("focus", "text \"a\"", "no focus"));
}

TEST_F(KovalinSearchBarViewTest, losingTheFocusWithoutTextTakesTheBackButtonAway)
{
    focus();
    bar->endEditing();
    EXPECT_EQ(shown(), "");
    EXPECT_THAT(delegate->told, ElementsAre("focus", "no focus"));
}

TEST_F(KovalinSearchBarViewTest, theDelegateHearsOfTheFocusBeforeTheBackButtonMoves)
{
    std::vector<std::string> states;
    delegate->then = [&] {
        states.push_back(shown());
    };
    focus();
    bar->endEditing();
    EXPECT_THAT(states, ElementsAre("", "back"));
}

TEST_F(KovalinSearchBarViewTest, theDelegateHearsOfTheTextBeforeTheButtonsChange)
{
    focus();
    std::vector<std::string> states;
    delegate->then = [&] {
        states.push_back(shown());
    };
    type('a');
    key(Qt::Key_Backspace);
    EXPECT_THAT(states, ElementsAre("back", "back clear"));
}

TEST_F(KovalinSearchBarViewTest, settingTheTextNeitherReachesTheDelegateNorGivesFocus)
{
    bar->setText(QStringLiteral("hello"));
    EXPECT_EQ(bar->text(), QStringLiteral("hello"));
    EXPECT_EQ(shown(), "back clear");
    bar->setText({});
    EXPECT_EQ(bar->text(), QString());
    EXPECT_EQ(shown(), "");
    EXPECT_FALSE(bar->isFirstResponder());
    EXPECT_THAT(delegate->told, IsEmpty());
}

TEST_F(KovalinSearchBarViewTest, whatIsComposedCountsAsText)
{
    focus();
    compose(QStringLiteral("ni"));
    EXPECT_EQ(bar->text(), QStringLiteral("ni"));
    EXPECT_EQ(shown(), "back clear");
    tapClear();
    EXPECT_EQ(bar->text(), QString());
    EXPECT_THAT(delegate->told, ElementsAre("focus", "text \"ni\"", "text \"\""));
}

// Keys and buttons

TEST_F(KovalinSearchBarViewTest, returnAndEscapeResign)
{
    for (const auto pressed : {Qt::Key_Return, Qt::Key_Escape}) {
        focus();
        type('a');
        delegate->told.clear();
        key(pressed);
        EXPECT_FALSE(bar->isFirstResponder());
        EXPECT_THAT(delegate->told, ElementsAre("no focus"));
        EXPECT_EQ(shown(), "back clear");
        bar->setText({});
    }
}

TEST_F(KovalinSearchBarViewTest, clearPressedWithFocusKeepsTheFocus)
{
    focus();
    type('a');
    settle();
    delegate->told.clear();
    tapClear();
    EXPECT_EQ(bar->text(), QString());
    EXPECT_TRUE(bar->isFirstResponder());
    EXPECT_EQ(shown(), "");
    EXPECT_THAT(delegate->told, ElementsAre("text \"\""));
}

TEST_F(KovalinSearchBarViewTest, clearPressedWithoutFocusActsAsBack)
{
    bar->setText(QStringLiteral("a"));
    settle();
    tapClear();
    EXPECT_EQ(bar->text(), QString());
    EXPECT_EQ(shown(), "");
    EXPECT_FALSE(bar->isFirstResponder());
    EXPECT_THAT(delegate->told, ElementsAre("text \"\" without focus"));
}

TEST_F(KovalinSearchBarViewTest, backPressedWithTextClearsItBeforeTheFieldResigns)
{
    focus();
    type('a');
    settle();
    delegate->told.clear();
    tapBack();
    EXPECT_EQ(bar->text(), QString());
    EXPECT_EQ(shown(), "");
    EXPECT_THAT(delegate->told, ElementsAre("text \"\"", "no focus"));
}

TEST_F(KovalinSearchBarViewTest, backPressedWithoutTextOnlyResigns)
{
    focus();
    settle();
    delegate->told.clear();
    tapBack();
    EXPECT_EQ(shown(), "");
    EXPECT_THAT(delegate->told, ElementsAre("no focus"));
}

TEST_F(KovalinSearchBarViewTest, backPressedWithoutFocusClears)
{
    bar->setText(QStringLiteral("a"));
    settle();
    tapBack();
    EXPECT_EQ(bar->text(), QString());
    EXPECT_EQ(shown(), "");
    EXPECT_THAT(delegate->told, ElementsAre("text \"\" without focus"));
}

TEST_F(KovalinSearchBarViewTest, tabLeadsThroughWhatShows)
{
    bar->setText(QStringLiteral("a"));
    settle();
    key(Qt::Key_Tab);
    EXPECT_TRUE(bar->isFirstResponder());
    key(Qt::Key_Tab);
    EXPECT_TRUE(back()->hasActiveFocus());
    key(Qt::Key_Tab);
    EXPECT_TRUE(clear()->hasActiveFocus());
    key(Qt::Key_Space);
    EXPECT_EQ(bar->text(), QString());
    settle();
    key(Qt::Key_Tab);
    EXPECT_TRUE(bar->isFirstResponder()) << "the buttons can't be reached any more";
}

TEST_F(KovalinSearchBarViewTest, aCharacterTypedElsewhereGoesIntoTheField)
{
    EXPECT_TRUE(bar->acceptKeyPress(QKeyEvent(QEvent::KeyPress, Qt::Key_C, {}, QStringLiteral("c"))));
    EXPECT_TRUE(bar->isFirstResponder());
    EXPECT_EQ(bar->text(), QStringLiteral("c"));
    EXPECT_EQ(shown(), "back clear");
    EXPECT_THAT(delegate->told, ElementsAre("focus", "text \"c\""));
    EXPECT_FALSE(bar->acceptKeyPress(QKeyEvent(QEvent::KeyPress, Qt::Key_Down, {})));
}

TEST_F(KovalinSearchBarViewTest, nothingHappensWhileAnotherWindowIsInFront)
{
    focus();
    other.setGeometry(0, 0, 50, 50);
    other.show();
    other.requestActivate();
    ASSERT_TRUE(waitFor([&] { return other.isActive() && !window().isActive(); }));
    EXPECT_TRUE(bar->isFirstResponder());
    EXPECT_EQ(shown(), "back");
    window().requestActivate();
    ASSERT_TRUE(waitFor([&] { return window().isActive(); }));
    type('a');
    EXPECT_THAT(delegate->told, ElementsAre("focus", "text \"a\""));
}

} // namespace
