#include "platform/ui/TextFieldTesting.h"

#include <QtCore/QPointer>

using namespace kovalin::platform;
using kovalin::test::drainMainQueue;
using kovalin::test::TextFieldTest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Editing

TEST_F(TextFieldTest, typingIsTold)
{
    tap({100, 40});
    EXPECT_TRUE(field->isFirstResponder());
    type('a');
    type('b');
    EXPECT_EQ(field->text(), QStringLiteral("ab"));
    key(Qt::Key_Backspace);
    EXPECT_THAT(told, ElementsAre("begin", "edited a", "edited ab", "edited a"));
}

TEST_F(TextFieldTest, settingTheTextIsNotTold)
{
    field->setText(QStringLiteral("hello"));
    EXPECT_EQ(field->text(), QStringLiteral("hello"));
    field->setText({});
    EXPECT_EQ(field->text(), QString());
    EXPECT_FALSE(field->isFirstResponder());
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(TextFieldTest, anEditThatLeavesTheTextIsNotTold)
{
    field->setText(QStringLiteral("a"));
    field->becomeFirstResponder();
    told.clear();
    key(Qt::Key_Home);
    key(Qt::Key_Backspace);
    key(Qt::Key_Right);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(TextFieldTest, replacingASelectionIsOneEdit)
{
    field->setText(QStringLiteral("hello"));
    field->becomeFirstResponder();
    key(Qt::Key_A, Qt::ControlModifier);
    told.clear();
    type('x');
    EXPECT_THAT(told, ElementsAre("edited x"));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field->text(), QStringLiteral("hello"));
}

TEST_F(TextFieldTest, aHandlerMaySetTheText)
{
    field->setOnEditingChanged([this] {
        told.push_back("edited " + field->text().toStdString());
        field->setText(QStringLiteral("other"));
    });
    field->becomeFirstResponder();
    type('a');
    EXPECT_EQ(field->text(), QStringLiteral("other"));
    type('b');
    EXPECT_THAT(told, ElementsAre("begin", "edited a", "edited otherb"));
    EXPECT_EQ(field->text(), QStringLiteral("other"));
}

TEST_F(TextFieldTest, aPastedTextIsOneLine)
{
    field->becomeFirstResponder();
    paste(QStringLiteral("one\r\ntwo\nthree\u2028four"));
    EXPECT_EQ(field->text().simplified(), QStringLiteral("one two three four"));
    EXPECT_FALSE(field->text().contains(u'\n') || field->text().contains(u'\r') || field->text().contains(u'\u2028'));
    EXPECT_EQ(told.size(), 2U);
    ASSERT_TRUE(ink());
}

TEST_F(TextFieldTest, aPastedMegabyteIsCutOff)
{
    field->becomeFirstResponder();
    paste(QString(1 << 20, u'x'));
    EXPECT_EQ(field->text(), QString(TextField::maxLength, u'x'));
    EXPECT_EQ(told.size(), 2U);
    type('y');
    EXPECT_EQ(told.size(), 2U) << "there is no room";
    grab();
}

TEST_F(TextFieldTest, aLongTextThatIsSetIsCutOffBetweenCharacters)
{
    field->setText(QString(TextField::maxLength - 1, u'x') + QStringLiteral("🙂"));
    EXPECT_EQ(field->text(), QString(TextField::maxLength - 1, u'x'));
    field->setText(QString(TextField::maxLength - 2, u'x') + QStringLiteral("🙂!"));
    EXPECT_EQ(field->text(), QString(TextField::maxLength - 2, u'x') + QStringLiteral("🙂"));
}

TEST_F(TextFieldTest, oddCharactersDoNoHarm)
{
    field->setText(QStringLiteral("a\tb") + QChar(0) + QChar(0xD800) + QChar(0x202E) + QStringLiteral("<b>c</b>"));
    grab();
    EXPECT_TRUE(field->text().startsWith(QStringLiteral("a b ")));
    EXPECT_TRUE(field->text().endsWith(QStringLiteral("<b>c</b>")));
}

// Input methods

TEST_F(TextFieldTest, theTextThatIsBeingComposedIsPartOfTheText)
{
    field->becomeFirstResponder();
    told.clear();
    compose(QStringLiteral("n"));
    compose(QStringLiteral("ni"));
    EXPECT_EQ(field->text(), QStringLiteral("ni"));
    compose({}, QStringLiteral("你"));
    EXPECT_EQ(field->text(), QStringLiteral("你"));
    EXPECT_THAT(told, ElementsAre("edited n", "edited ni", "edited 你"));
}

TEST_F(TextFieldTest, committingWhatIsShownAlreadyIsNotTold)
{
    field->becomeFirstResponder();
    compose(QStringLiteral("ni"));
    told.clear();
    compose({}, QStringLiteral("ni"));
    EXPECT_EQ(field->text(), QStringLiteral("ni"));
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(TextFieldTest, settingTheTextEndsTheComposition)
{
    field->becomeFirstResponder();
    compose(QStringLiteral("ni"));
    told.clear();
    field->setText({});
    EXPECT_EQ(field->text(), QString());
    EXPECT_THAT(told, IsEmpty());
    EXPECT_TRUE(placeholder());
    type('a');
    EXPECT_EQ(field->text(), QStringLiteral("a"));
}

TEST_F(TextFieldTest, whileComposingReturnArrowsAndEscapeAreTheInputMethods)
{
    field->becomeFirstResponder();
    compose(QStringLiteral("ni"));
    told.clear();
    for (const auto pressed : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Left, Qt::Key_Up, Qt::Key_Escape}) {
        key(pressed);
    }
    EXPECT_THAT(told, IsEmpty());
    EXPECT_EQ(field->text(), QStringLiteral("ni"));
    EXPECT_TRUE(field->isFirstResponder());
}

TEST_F(TextFieldTest, whatIsBeingComposedStaysWhenTheFocusGoes)
{
    field->becomeFirstResponder();
    compose(QStringLiteral("ni"));
    told.clear();
    field->resignFirstResponder();
    EXPECT_EQ(field->text(), QStringLiteral("ni"));
    EXPECT_THAT(told, ElementsAre("end"));
    EXPECT_FALSE(caret());
}

TEST_F(TextFieldTest, tellsInputMethodsWhatItTakes)
{
    field->becomeFirstResponder();
    field->setAutocorrects(false);
    field->setAutocapitalizes(false);
    field->setReturnKeyType(Qt::EnterKeySearch);
    QInputMethodQueryEvent query(Qt::ImEnabled | Qt::ImHints | Qt::ImEnterKeyType | Qt::ImMaximumTextLength);
    QCoreApplication::sendEvent(input(), &query);
    EXPECT_TRUE(query.value(Qt::ImEnabled).toBool());
    const auto hints = Qt::InputMethodHints(query.value(Qt::ImHints).toInt());
    EXPECT_TRUE(hints.testFlag(Qt::ImhNoPredictiveText));
    EXPECT_TRUE(hints.testFlag(Qt::ImhNoAutoUppercase));
    EXPECT_EQ(query.value(Qt::ImEnterKeyType).toInt(), int(Qt::EnterKeySearch));
    EXPECT_EQ(query.value(Qt::ImMaximumTextLength).toInt(), TextField::maxLength);
    field->setAutocorrects(true);
    field->setAutocapitalizes(true);
    QCoreApplication::sendEvent(input(), &query);
    EXPECT_FALSE(Qt::InputMethodHints(query.value(Qt::ImHints).toInt()).testFlag(Qt::ImhNoPredictiveText));
}

// Surroundings

TEST_F(TextFieldTest, assistiveToolsReadAndFindIt)
{
    field->setAccessibilityIdentifier(QStringLiteral("search"));
    field->setText(QStringLiteral("hello"));
    field->becomeFirstResponder();
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(input());
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::EditableText);
    EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Search"));
    EXPECT_EQ(seen->text(QAccessible::Value), QStringLiteral("hello"));
    EXPECT_TRUE(seen->state().focused);
    EXPECT_TRUE(seen->state().focusable);
    EXPECT_EQ(input()->objectName(), QStringLiteral("search"));
    EXPECT_EQ(field->objectName(), QStringLiteral("search"));
    ASSERT_NE(seen->textInterface(), nullptr);
    EXPECT_EQ(seen->textInterface()->characterCount(), 5);
}

TEST_F(TextFieldTest, mayGoInItsOwnHandlers)
{
    const std::vector<std::function<void()>> occasions = {
        [] {},
        [this] { type('a'); },
        [this] { key(Qt::Key_Return); },
        [this] { key(Qt::Key_Escape); },
        [] { compose(QStringLiteral("n")); },
        [this] { root()->setHidden(true); },
    };
    for (size_t i = 0; i < occasions.size(); ++i) {
        auto leaving = makeView<TextField>();
        leaving->setFrame({0, 100, 100, 40});
        root()->setHidden(false);
        root()->addSubview(leaving);
        const QPointer<TextField> item = leaving.get();
        const auto leave = [&] {
            if (leaving) {
                item->removeFromSuperview();
                leaving.reset();
            }
        };
        if (i == 0) {
            leaving->setOnBeginEditing(leave);
        }
        leaving->setOnEditingChanged(leave);
        leaving->setOnEndEditing(leave);
        leaving->setOnReturn(leave);
        tap({50, 120});
        occasions[i]();
        EXPECT_EQ(leaving, nullptr) << i;
        drainMainQueue();
        EXPECT_TRUE(item.isNull()) << i;
    }
}

TEST_F(TextFieldTest, handlersMayReplaceThemselves)
{
    field->setOnReturn([this] {
        field->setOnReturn({});
        told.emplace_back("replaced");
    });
    field->becomeFirstResponder();
    told.clear();
    key(Qt::Key_Return);
    key(Qt::Key_Return);
    EXPECT_THAT(told, ElementsAre("replaced"));
}

TEST_F(TextFieldTest, goesWhileItIsFirstResponder)
{
    field->becomeFirstResponder();
    const QPointer<TextField> item = field.get();
    field->removeFromSuperview();
    field = makeView<TextField>();
    drainMainQueue();
    EXPECT_TRUE(item.isNull());
    type('a');
}

} // namespace
