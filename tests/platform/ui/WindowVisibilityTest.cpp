#include "platform/ui/WindowVisibility.h"

#include "support/ViewTest.h"
#include "support/WaitFor.h"

#include <QtQuick/QQuickWindow>

using namespace kovalin::platform;

namespace {

using WindowVisibilityTest = kovalin::test::ViewTest;

TEST_F(WindowVisibilityTest, aWindowIsOnScreenWhileItIsShown)
{
    EXPECT_TRUE(isOnScreen(&window()));
    window().hide();
    EXPECT_FALSE(isOnScreen(&window()));
    window().show();
    EXPECT_TRUE(isOnScreen(&window()));
}

TEST_F(WindowVisibilityTest, aMinimisedWindowIsNot)
{
    window().showMinimized();
    EXPECT_FALSE(isOnScreen(&window()));
    window().showNormal();
    EXPECT_TRUE(isOnScreen(&window()));
}

TEST_F(WindowVisibilityTest, noWindowIsNot)
{
    EXPECT_FALSE(isOnScreen(nullptr));
}

} // namespace
