#include "platform/ui/TextFieldTesting.h"

using namespace kovalin::platform;
using kovalin::test::drainMainQueue;
using kovalin::test::TextFieldTest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST_F(TextFieldTest, comesAndGoesAsFirstResponder)
{
    EXPECT_TRUE(field->becomeFirstResponder());
    EXPECT_TRUE(field->becomeFirstResponder());
    EXPECT_TRUE(field->isFirstResponder());
    field->resignFirstResponder();
    field->resignFirstResponder();
    EXPECT_FALSE(field->isFirstResponder());
    EXPECT_THAT(told, ElementsAre("begin", "end"));
}

TEST_F(TextFieldTest, cannotBeFirstResponderWhereNobodyCouldType)
{
    field->setHidden(true);
    EXPECT_FALSE(field->becomeFirstResponder());
    field->setHidden(false);
    field->setEnabled(false);
    EXPECT_FALSE(field->becomeFirstResponder());
    field->setEnabled(true);
    field->removeFromSuperview();
    EXPECT_FALSE(field->becomeFirstResponder());
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(TextFieldTest, resignsWhenAnotherItemTakesTheFocus)
{
    const auto button = addView({0, 100, 50, 50});
    field->becomeFirstResponder();
    button->forceActiveFocus();
    EXPECT_THAT(told, ElementsAre("begin", "end"));
    EXPECT_FALSE(field->isFirstResponder());
}

TEST_F(TextFieldTest, resignsWhenItIsHiddenOrLeavesItsWindow)
{
    field->becomeFirstResponder();
    root()->setHidden(true);
    EXPECT_FALSE(field->isFirstResponder());
    root()->setHidden(false);
    EXPECT_FALSE(field->isFirstResponder());
    field->becomeFirstResponder();
    field->removeFromSuperview();
    root()->addSubview(field);
    drainMainQueue();
    EXPECT_FALSE(field->isFirstResponder());
    EXPECT_THAT(told, ElementsAre("begin", "end", "begin", "end"));
}

TEST_F(TextFieldTest, isReachedAndLeftByTab)
{
    const auto next = addView({0, 100, 50, 50});
    next->setActiveFocusOnTab(true);
    key(Qt::Key_Tab);
    EXPECT_TRUE(field->isFirstResponder());
    key(Qt::Key_Tab);
    EXPECT_TRUE(next->hasActiveFocus());
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_THAT(told, ElementsAre("begin", "end", "begin"));
}

TEST_F(TextFieldTest, returnIsToldAndGoesNoFurther)
{
    field->becomeFirstResponder();
    told.clear();
    key(Qt::Key_Return);
    key(Qt::Key_Enter);
    EXPECT_THAT(told, ElementsAre("return", "return"));
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, {}, QStringLiteral("\r"), true);
    QCoreApplication::sendEvent(&window(), &repeated);
    EXPECT_TRUE(repeated.isAccepted());
    EXPECT_EQ(told.size(), 2U);
}

TEST_F(TextFieldTest, escapeResigns)
{
    field->setText(QStringLiteral("a"));
    field->becomeFirstResponder();
    key(Qt::Key_Escape);
    EXPECT_FALSE(field->isFirstResponder());
    EXPECT_EQ(field->text(), QStringLiteral("a"));
    EXPECT_THAT(told, ElementsAre("begin", "end"));
}

TEST_F(TextFieldTest, staysFirstResponderWhileAnotherWindowIsInFront)
{
    field->becomeFirstResponder();
    deactivateWindow();
    EXPECT_TRUE(field->isFirstResponder());
    EXPECT_FALSE(caret()) << "keys don't go there now";
    activateWindow();
    EXPECT_TRUE(field->isFirstResponder());
    type('a');
    EXPECT_THAT(told, ElementsAre("begin", "edited a"));
}

TEST_F(TextFieldTest, resignsWhenTheFocusMovesWhileAnotherWindowIsInFront)
{
    const auto button = addView({0, 100, 50, 50});
    field->becomeFirstResponder();
    deactivateWindow();
    button->forceActiveFocus();
    EXPECT_FALSE(field->isFirstResponder());
    activateWindow();
    EXPECT_TRUE(button->hasActiveFocus());
    EXPECT_THAT(told, ElementsAre("begin", "end"));
}

TEST_F(TextFieldTest, resignsWhenTheFocusMovesToAnotherScopeWhileAnotherWindowIsInFront)
{
    const auto mine = addView({0, 0, 200, 100});
    mine->setFlag(QQuickItem::ItemIsFocusScope);
    mine->addSubview(field);
    const auto others = addView({0, 100, 50, 50});
    others->setFlag(QQuickItem::ItemIsFocusScope);
    field->becomeFirstResponder();
    deactivateWindow();
    others->forceActiveFocus();
    activateWindow();
    EXPECT_FALSE(field->isFirstResponder());
    EXPECT_THAT(told, ElementsAre("begin", "end"));
}

TEST_F(TextFieldTest, resignsOnDemandWhileAnotherWindowIsInFront)
{
    field->becomeFirstResponder();
    deactivateWindow();
    field->resignFirstResponder();
    EXPECT_FALSE(field->isFirstResponder());
    activateWindow();
    EXPECT_THAT(told, ElementsAre("begin", "end"));
}

TEST_F(TextFieldTest, becomesFirstResponderWithItsWindow)
{
    deactivateWindow();
    EXPECT_TRUE(field->becomeFirstResponder());
    EXPECT_THAT(told, IsEmpty());
    activateWindow();
    EXPECT_THAT(told, ElementsAre("begin"));
}

TEST_F(TextFieldTest, takesAPrintedCharacterThatWasTypedElsewhere)
{
    field->setText(QStringLiteral("ab"));
    EXPECT_TRUE(field->acceptKeyPress(QKeyEvent(QEvent::KeyPress, Qt::Key_C, {}, QStringLiteral("c"))));
    EXPECT_EQ(field->text(), QStringLiteral("abc"));
    EXPECT_THAT(told, ElementsAre("begin", "edited abc"));
}

TEST_F(TextFieldTest, leavesOtherKeysThatWerePressedElsewhere)
{
    struct Press {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        QString text;
    };
    const std::vector<Press> others = {
        {Qt::Key_C, Qt::ControlModifier, QStringLiteral("\u0003")},
        {Qt::Key_C, Qt::ControlModifier, QStringLiteral("c")},
        {Qt::Key_C, Qt::MetaModifier, QStringLiteral("c")},
        {Qt::Key_Space, {}, QStringLiteral(" ")},
        {Qt::Key_Return, {}, QStringLiteral("\r")},
        {Qt::Key_Escape, {}, QStringLiteral("\u001b")},
        {Qt::Key_Backspace, {}, QStringLiteral("\b")},
        {Qt::Key_Left, {}, {}},
    };
    for (const auto& [pressed, modifiers, text] : others) {
        EXPECT_FALSE(field->acceptKeyPress(QKeyEvent(QEvent::KeyPress, pressed, modifiers, text))) << int(pressed);
    }
    EXPECT_FALSE(field->acceptKeyPress(QKeyEvent(QEvent::KeyRelease, Qt::Key_C, {}, QStringLiteral("c"))));
    field->setHidden(true);
    EXPECT_FALSE(field->acceptKeyPress(QKeyEvent(QEvent::KeyPress, Qt::Key_C, {}, QStringLiteral("c"))));
    EXPECT_THAT(told, IsEmpty());
    EXPECT_EQ(field->text(), QString());
}

TEST_F(TextFieldTest, aCharacterOfThePlatformsWithCtrlAndAltIsPrinted)
{
    const QKeyEvent euro(QEvent::KeyPress, Qt::Key_E, Qt::ControlModifier | Qt::AltModifier, QStringLiteral("€"));
    EXPECT_TRUE(field->acceptKeyPress(euro));
    EXPECT_EQ(field->text(), QStringLiteral("€"));
}

} // namespace
