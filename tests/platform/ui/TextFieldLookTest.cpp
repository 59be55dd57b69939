#include "platform/ui/TextFieldTesting.h"

#include <algorithm>

using namespace kovalin::platform;
using kovalin::test::TextFieldTest;
using kovalin::test::waitFor;

namespace {

TEST_F(TextFieldTest, thePlaceholderStandsWhereThereIsNothingElse)
{
    EXPECT_TRUE(placeholder());
    field->becomeFirstResponder();
    EXPECT_TRUE(placeholder());
    compose(QStringLiteral("n"));
    EXPECT_FALSE(placeholder());
    compose({});
    EXPECT_TRUE(placeholder());
    field->setText(QStringLiteral("a"));
    EXPECT_FALSE(placeholder());
}

TEST_F(TextFieldTest, textAndCaretAreSeenInTheirColours)
{
    field->setTextColor(Qt::red);
    field->setText(QStringLiteral("██"));
    EXPECT_EQ(colorAt({24, 40}), QColor(Qt::red));
    EXPECT_FALSE(caret());
    field->becomeFirstResponder();
    ASSERT_TRUE(caret());
    EXPECT_EQ(caret()->second - caret()->first, 2);
}

TEST_F(TextFieldTest, aSelectionIsSeenAndLegible)
{
    field->setText(QStringLiteral("██ a"));
    field->becomeFirstResponder();
    for (const auto& [tint, text] : {std::pair(Qt::white, Qt::black), std::pair(Qt::blue, Qt::white)}) {
        field->setTintColor(tint);
        key(Qt::Key_A, Qt::ControlModifier);
        EXPECT_EQ(colorAt({24, 40}), QColor(text));
    }
}

TEST_F(TextFieldTest, aTextThatIsTooLongIsCutOffAndScrollsWithTheCaret)
{
    field->becomeFirstResponder();
    paste(QString(50, u'M'));
    ASSERT_TRUE(caret());
    EXPECT_GE(caret()->first, frame.right() - 4) << "the caret isn't cut off at the end";
    EXPECT_LE(caret()->second, frame.right());
    EXPECT_GE(ink()->first, frame.left());
    key(Qt::Key_Home);
    EXPECT_LE(caret()->first, frame.left() + 1);
    EXPECT_EQ(caret()->second - caret()->first, 2) << "nor at the beginning";
    EXPECT_LE(ink()->second, frame.right());
}

TEST_F(TextFieldTest, ofALongTextTheBeginningShowsWithoutTheFocus)
{
    const QString text = QString(10, u'█') + QString(50, u' ') + QString(10, u'█');
    field->setText(text);
    EXPECT_EQ(colorAt({24, 40}), QColor(Qt::black));
    field->becomeFirstResponder();
    EXPECT_GE(caret()->first, frame.right() - 4) << "the caret begins at the end";
    key(Qt::Key_Backspace);
    field->resignFirstResponder();
    EXPECT_EQ(field->text().size(), text.size() - 1);
    grab();
    field->setTextColor(Qt::red);
    EXPECT_EQ(colorAt({24, 40}), QColor(Qt::red));
}

TEST_F(TextFieldTest, aTapPutsTheCaretIntoTheText)
{
    field->setText(QStringLiteral("MMMMMMMM"));
    tap({50, 40});
    ASSERT_TRUE(caret());
    EXPECT_NEAR(caret()->first, 50, 10);
    EXPECT_EQ(caret()->second - caret()->first, 2);
}

TEST_F(TextFieldTest, theTextIsInTheMiddleOfTheHeight)
{
    field->setText(QStringLiteral("—"));
    const QImage picture = grab();
    int top = picture.height();
    int bottom = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y).lightness() < 100) {
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
    }
    EXPECT_NEAR((top + bottom) / 2.0 / ratio(), frame.center().y(), 4);
}

TEST_F(TextFieldTest, theLeftViewStandsBeforeTheText)
{
    const auto icon = makeView<View>();
    icon->setFrame({0, 0, 30, 20});
    icon->setBackgroundColor(Qt::green);
    field->setLeftView(icon);
    field->setText(QStringLiteral("█"));
    grab();
    EXPECT_EQ(icon->frame(), QRectF(0, 10, 30, 20));
    EXPECT_GE(ink()->first, 50);
    tap({35, 40});
    EXPECT_TRUE(field->isFirstResponder());
    field->setLeftView(nullptr);
    EXPECT_LT(ink()->first, 40);
    EXPECT_EQ(icon->superview(), nullptr);
}

TEST_F(TextFieldTest, readsFromRightToLeftWhereTheInterfaceDoes)
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    const auto icon = makeView<View>();
    icon->setFrame({0, 0, 30, 20});
    field->setLeftView(icon);
    field->setNeedsLayout();
    field->becomeFirstResponder();
    grab();
    EXPECT_EQ(icon->frame(), QRectF(120, 10, 30, 20));
    EXPECT_NEAR(placeholder()->second, 140, 6);
    EXPECT_NEAR(caret()->second, 140, 3) << "beside the placeholder";
}

TEST_F(TextFieldTest, aTextOfEitherDirectionBeginsWhereTheInterfaceDoes)
{
    for (const QString& text : {QStringLiteral("ab"), QStringLiteral("אב")}) {
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        field->setNeedsLayout();
        field->setText(text);
        grab();
        EXPECT_LT(ink()->second, 60);
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        field->setNeedsLayout();
        grab();
        EXPECT_GT(ink()->first, 110);
    }
}

TEST_F(TextFieldTest, theBeginningOfALongTextShowsInEitherDirection)
{
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QGuiApplication::setLayoutDirection(direction);
        field->setNeedsLayout();
        field->setText({});
        grab();
        field->setText(QStringLiteral("HHHHHHHH ").repeated(9));
        grab();
        ASSERT_TRUE(ink());
        EXPECT_LT(ink()->first, 30) << direction;
        EXPECT_GT(ink()->second, 130) << direction;
    }
}

TEST_F(TextFieldTest, insetsKeepTheTextAway)
{
    field->setTextInsets({10, 0, 50, 0});
    field->becomeFirstResponder();
    paste(QString(50, u'M'));
    EXPECT_LE(caret()->second, 120);
    key(Qt::Key_Home);
    EXPECT_GE(caret()->first, 30);
}

TEST_F(TextFieldTest, theCaretBlinksOnlyWithTheFocus)
{
    constexpr int flashTime = 20; // milliseconds
    QGuiApplication::styleHints()->setCursorFlashTime(flashTime);
    field->becomeFirstResponder();
    const auto children = input()->findChildren<QObject*>();
    const auto timer = std::ranges::find_if(children, [](QObject* child) { return child->inherits("QQmlTimer"); });
    ASSERT_NE(timer, children.end());
    EXPECT_TRUE((*timer)->property("running").toBool());
    EXPECT_TRUE(waitFor([this] { return !caret(); }));
    EXPECT_TRUE(waitFor([this] { return bool(caret()); }));
    field->resignFirstResponder();
    EXPECT_FALSE((*timer)->property("running").toBool());
    EXPECT_FALSE(caret());
    field->becomeFirstResponder();
    deactivateWindow();
    EXPECT_FALSE((*timer)->property("running").toBool());
}

} // namespace
