#include "platform/ui/Button.h"

#include "platform/ui/ImageView.h"
#include "platform/ui/Label.h"
#include "support/QtPrinting.h"
#include "support/ViewTest.h"

#include <QtCore/QPointer>
#include <QtTest/QTest>

#include <gmock/gmock.h>

using namespace kovalin::platform;
using kovalin::test::drainMainQueue;
using kovalin::test::waitFor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ButtonTest : public kovalin::test::ViewTest {
protected:
    ButtonTest()
    {
        button->setFrame({20, 20, 100, 40});
        button->setTitle(QStringLiteral("████"));
        button->setBackgroundColor(Qt::yellow);
        button->setOnTouchDown([this] { told.emplace_back("down"); });
        button->setOnTouchUpInside([this] { told.emplace_back("inside"); });
        button->setOnTouchCancel([this] { told.emplace_back("cancel"); });
        root()->addSubview(button);
        grab();
    }

    /// In a letter's midst: where two meet the ground may shine through.
    static constexpr QPointF ink{65, 40};

    std::vector<std::string> told;
    std::shared_ptr<Button> button = makeView<Button>();
};

TEST_F(ButtonTest, aTapIsAPressAndARelease)
{
    tap({70, 40});
    EXPECT_THAT(told, ElementsAre("down", "inside"));
    tap({10, 10});
    EXPECT_THAT(told, ElementsAre("down", "inside"));
}

TEST_F(ButtonTest, aTouchIsATap)
{
    const std::unique_ptr<QPointingDevice> device(QTest::createTouchDevice());
    QTest::touchEvent(&window(), device.get()).press(0, QPoint(70, 40));
    QTest::touchEvent(&window(), device.get()).release(0, QPoint(70, 40));
    EXPECT_THAT(told, ElementsAre("down", "inside"));
}

TEST_F(ButtonTest, otherMouseButtonsDoNothing)
{
    QTest::mouseClick(&window(), Qt::RightButton, {}, QPoint(70, 40));
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ButtonTest, aReleaseOutsideCancels)
{
    press({70, 40});
    EXPECT_TRUE(button->isHighlighted());
    move({150, 150});
    EXPECT_FALSE(button->isHighlighted());
    move({71, 41});
    EXPECT_TRUE(button->isHighlighted());
    move({150, 150});
    release({150, 150});
    EXPECT_THAT(told, ElementsAre("down", "cancel"));
    EXPECT_FALSE(button->isHighlighted());
}

TEST_F(ButtonTest, aPressThatIsTakenAwayCancels)
{
    press({70, 40});
    button->ungrabMouse();
    EXPECT_THAT(told, ElementsAre("down", "cancel"));
    release({70, 40});
    EXPECT_THAT(told, ElementsAre("down", "cancel"));
}

TEST_F(ButtonTest, hidingOrDisablingItWhilePressedCancels)
{
    press({70, 40});
    button->setHidden(true);
    EXPECT_THAT(told, ElementsAre("down", "cancel"));
    release({70, 40});
    button->setHidden(false);
    press({70, 40});
    button->setEnabled(false);
    release({70, 40});
    EXPECT_THAT(told, ElementsAre("down", "cancel", "down", "cancel"));
    EXPECT_FALSE(button->isHighlighted());
}

TEST_F(ButtonTest, aDisabledButtonTakesNothing)
{
    button->setEnabled(false);
    tap({70, 40});
    button->press();
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ButtonTest, aPressIsSeen)
{
    EXPECT_EQ(colorAt(ink), QColor(Qt::black));
    press({70, 40});
    EXPECT_NEAR(colorAt(ink).red(), 127, 15);
    release({70, 40});
    EXPECT_EQ(colorAt(ink), QColor(Qt::black));
    EXPECT_EQ(colorAt({22, 22}), QColor(Qt::yellow));
}

TEST_F(ButtonTest, keysPressIt)
{
    QTest::keyClick(&window(), Qt::Key_Tab);
    ASSERT_TRUE(button->hasActiveFocus());
    for (const auto key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        told.clear();
        QTest::keyPress(&window(), key);
        EXPECT_TRUE(button->isHighlighted());
        QTest::keyRelease(&window(), key);
        EXPECT_THAT(told, ElementsAre("down", "inside"));
    }
    told.clear();
    QTest::keyClick(&window(), Qt::Key_A);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ButtonTest, theKeyboardsFocusIsSeenAndATapsIsNot)
{
    const QImage before = grab();
    button->forceActiveFocus(Qt::MouseFocusReason);
    EXPECT_EQ(grab(), before);
    button->setFocus(false);
    QTest::keyClick(&window(), Qt::Key_Tab);
    ASSERT_TRUE(button->hasActiveFocus());
    EXPECT_NE(colorAt({70, 18}), QColor(Qt::white));
    button->setFocus(false);
    EXPECT_EQ(grab(), before);
}

TEST_F(ButtonTest, losingTheFocusWhileAKeyIsDownCancels)
{
    QTest::keyClick(&window(), Qt::Key_Tab);
    QTest::keyPress(&window(), Qt::Key_Space);
    button->setFocus(false);
    QTest::keyRelease(&window(), Qt::Key_Space);
    EXPECT_THAT(told, ElementsAre("down", "cancel"));
}

TEST_F(ButtonTest, aButtonMayGoInItsOwnHandlers)
{
    for (const bool isDown : {true, false}) {
        auto leaving = makeView<Button>();
        leaving->setFrame({0, 100, 50, 50});
        root()->addSubview(leaving);
        const QPointer<Button> item = leaving.get();
        const auto leave = [&] {
            item->removeFromSuperview();
            leaving.reset();
        };
        isDown ? leaving->setOnTouchDown(leave) : leaving->setOnTouchUpInside(leave);
        tap({25, 125});
        EXPECT_EQ(leaving, nullptr);
        drainMainQueue();
        EXPECT_TRUE(item.isNull());
    }
}

TEST_F(ButtonTest, aHandlerMayReplaceItself)
{
    button->setOnTouchUpInside([this] {
        button->setOnTouchUpInside({});
        told.emplace_back("replaced");
    });
    tap({70, 40});
    tap({70, 40});
    EXPECT_THAT(told, ElementsAre("down", "replaced", "down"));
}

TEST_F(ButtonTest, itsSizeIsThatOfTitleAndPicture)
{
    const QSizeF unlimited(1000, 1000);
    const QSizeF title = button->sizeThatFits(unlimited);
    EXPECT_GT(title.width(), 10);
    QImage image(20, 60, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    button->setImage(image);
    EXPECT_EQ(button->sizeThatFits(unlimited), QSizeF(title.width() + 28, 60));
    button->setTitle({});
    EXPECT_EQ(button->sizeThatFits(unlimited), QSizeF(20, 60));
    button->setContentInsets({1, 2, 3, 4});
    EXPECT_EQ(button->sizeThatFits(unlimited), QSizeF(24, 66));
}

TEST_F(ButtonTest, aPictureIsShownInItsTint)
{
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    button->setTitle({});
    button->setImage(image, true);
    button->setTintColor(Qt::blue);
    EXPECT_TRUE(waitFor([&] { return colorAt(ink) == QColor(Qt::blue); }));
    EXPECT_EQ(colorAt({50, 40}), QColor(Qt::yellow));
}

TEST_F(ButtonTest, aDisabledButtonMayHaveAnotherTitle)
{
    button->setTitleWhileDisabled({});
    EXPECT_EQ(colorAt(ink), QColor(Qt::black));
    button->setEnabled(false);
    EXPECT_EQ(colorAt(ink), QColor(Qt::yellow));
    button->setEnabled(true);
    EXPECT_EQ(colorAt(ink), QColor(Qt::black));
    EXPECT_EQ(button->title(), QStringLiteral("████"));
}

/// Tells of its presses itself.
class TellingButton final : public Button {
public:
    explicit TellingButton(std::vector<std::string>& told)
        : _told(told)
    {
    }

protected:
    void pressDidBegin() override { _told.emplace_back("begin"); }
    void pressDidEnd() override { _told.emplace_back("end"); }

private:
    std::vector<std::string>& _told;
};

TEST_F(ButtonTest, aSubclassIsToldOfWholePressesBeforeTheHandlers)
{
    button->removeFromSuperview();
    const auto telling = makeView<TellingButton>(told);
    telling->setFrame({20, 20, 100, 40});
    telling->setOnTouchDown([this] { told.emplace_back("down"); });
    telling->setOnTouchUpInside([this] { told.emplace_back("inside"); });
    telling->setOnTouchCancel([this] { told.emplace_back("cancel"); });
    root()->addSubview(telling);
    tap({70, 40});
    EXPECT_THAT(told, ElementsAre("begin", "down", "end", "inside"));
    told.clear();
    press({70, 40});
    move({150, 150});
    move({70, 40});
    move({150, 150});
    release({150, 150});
    EXPECT_THAT(told, ElementsAre("begin", "down", "end", "cancel"));
}

TEST_F(ButtonTest, assistiveToolsCanPressIt)
{
    button->setTitle(QStringLiteral("Retry"));
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(button.get());
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::Button);
    EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Retry"));
    ASSERT_NE(seen->actionInterface(), nullptr);
    seen->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(told, ElementsAre("down", "inside"));
}

} // namespace
