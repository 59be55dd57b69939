#include "picker/status/QXSDKKovalinRoundedButton.h"

#include "picker/config/KovalinColors.h"
#include "picker/status/StatusViewTest.h"

#include <QtTest/QTest>

using namespace kovalin::platform;
using kovalin::test::partOf;

namespace {

class QXSDKKovalinRoundedButtonTest : public kovalin::test::StatusViewTest {
protected:
    QXSDKKovalinRoundedButtonTest()
    {
        button->setTitle(QStringLiteral("Go"));
        root()->addSubview(button);
        grab();
    }

    [[nodiscard]] bool isDark() const { return colorsEqual(button->backgroundColor(), kovalinDarkGreen()); }
    [[nodiscard]] bool isGreen() const { return colorsEqual(button->backgroundColor(), kovalinGreen()); }

    static constexpr QPointF inside{60, 30};
    static constexpr QPointF outside{300, 300};
    std::shared_ptr<QXSDKKovalinRoundedButton> button = makeView<QXSDKKovalinRoundedButton>(QRectF(10, 10, 100, 48));
};

TEST_F(QXSDKKovalinRoundedButtonTest, isAGreenPillWithABoldWhiteTitle)
{
    EXPECT_EQ(button->frame(), QRectF(10, 10, 100, 48));
    EXPECT_TRUE(isGreen());
    EXPECT_EQ(button->layerStyle().cornerRadius, 24);
    const auto title = partOf<Label>(*button, 1);
    ASSERT_TRUE(title);
    expectLook(*title, {.fontSize = 18, .weight = QFont::Bold, .color = Qt::white, .lines = 1});
    EXPECT_NEAR(title->center().x(), 50, 0.5) << "on a whole point";
    EXPECT_TRUE(makeView<QXSDKKovalinRoundedButton>()->frame().isEmpty());
}

TEST_F(QXSDKKovalinRoundedButtonTest, itsEndsStayRoundAtEveryHeight)
{
    button->setFrame({10, 10, 100, 30});
    grab();
    EXPECT_EQ(button->layerStyle().cornerRadius, 15);
}

TEST_F(QXSDKKovalinRoundedButtonTest, isDarkWhileItIsPressed)
{
    press(inside);
    EXPECT_TRUE(isDark());
    EXPECT_EQ(colorAt({30, 34}).rgb(), kovalinDarkGreen().rgb());
    release(inside);
    EXPECT_TRUE(isGreen());
    EXPECT_EQ(colorAt({30, 34}).rgb(), kovalinGreen().rgb());
}

TEST_F(QXSDKKovalinRoundedButtonTest, isDarkUntilTheReleaseWhereverThatIs)
{
    press(inside);
    move(outside);
    EXPECT_TRUE(isDark());
    release(outside);
    EXPECT_TRUE(isGreen());
}

TEST_F(QXSDKKovalinRoundedButtonTest, isGreenAgainWhenThePressIsTakenAway)
{
    press(inside);
    button->ungrabMouse();
    EXPECT_TRUE(isGreen());
    release(inside);
}

TEST_F(QXSDKKovalinRoundedButtonTest, isDarkWhileAKeyPressesIt)
{
    QTest::keyClick(&window(), Qt::Key_Tab);
    QTest::keyPress(&window(), Qt::Key_Space);
    EXPECT_TRUE(isDark());
    QTest::keyRelease(&window(), Qt::Key_Space);
    EXPECT_TRUE(isGreen());
}

TEST_F(QXSDKKovalinRoundedButtonTest, pressedReadsFalseThoughItIsDark)
{
    EXPECT_FALSE(button->pressed());
    press(inside);
    EXPECT_TRUE(isDark());
    EXPECT_FALSE(button->pressed());
    release(inside);
    button->setPressed(true);
    EXPECT_TRUE(isDark());
    EXPECT_FALSE(button->pressed());
    button->setPressed(false);
    EXPECT_TRUE(isGreen());
}

TEST_F(QXSDKKovalinRoundedButtonTest, itsOwnerIsToldOfTapsAfterItIsGreenAgain)
{
    int taps = 0;
    button->setOnTouchUpInside([&] {
        ++taps;
        EXPECT_TRUE(isGreen());
    });
    tap(inside);
    EXPECT_EQ(taps, 1);
}

} // namespace
