// In a program of its own, whose application is one of widgets: views in a window that a widget draws.

#include "platform/ui/Animation.h"
#include "platform/ui/View.h"
#include "platform/ui/WindowVisibility.h"
#include "support/WaitFor.h"

#include <QtQuick/QQuickWindow>
#include <QtQuickWidgets/QQuickWidget>
#include <QtWidgets/QApplication>

#include <gmock/gmock.h>

#include <chrono>

using namespace kovalin::platform;
using namespace kovalin::test;

namespace {

class WidgetWindowTest : public testing::Test {
protected:
    WidgetWindowTest()
    {
        view->setFrame({0, 0, 100, 100});
        view->setParentItem(window().contentItem());
    }
    void show()
    {
        widget.resize(200, 200);
        widget.show();
        ASSERT_TRUE(waitFor([this] { return isOnScreen(&window()); }));
    }
    [[nodiscard]] QQuickWindow& window() const { return *widget.quickWindow(); }
    void moveWithAnimation()
    {
        animate(std::chrono::hours(1), {}, [this] { view->setFrame({50, 0, 100, 100}); });
    }

    QQuickWidget widget;
    std::shared_ptr<View> view = makeView<View>();
};

TEST_F(WidgetWindowTest, isOnScreenWithItsWidget)
{
    EXPECT_FALSE(isOnScreen(&window()));
    show();
    widget.hide();
    EXPECT_FALSE(isOnScreen(&window()));
}

TEST_F(WidgetWindowTest, animatesWhatCanBeSeen)
{
    show();
    moveWithAnimation();
    EXPECT_EQ(view->frame().x(), 50);
    EXPECT_LT(view->x(), 50) << "on the way";
}

TEST_F(WidgetWindowTest, jumpsWhileItsWidgetIsHidden)
{
    moveWithAnimation();
    EXPECT_EQ(view->x(), 50);
}

} // namespace

int main(int argc, char** argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
