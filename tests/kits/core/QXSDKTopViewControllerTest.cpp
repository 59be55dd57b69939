#include "kits/core/QXSDKTopViewController.h"

#include "support/WaitFor.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>

#include <gtest/gtest.h>

using kovalin::test::waitFor;

namespace {

TEST(QXSDKTopViewController, isNothingWithoutAWindow)
{
    ASSERT_TRUE(waitFor([] { return !QGuiApplication::focusWindow(); }));
    EXPECT_EQ(topViewController(), nullptr);
    QWindow hidden;
    EXPECT_EQ(topViewController(), nullptr);
}

TEST(QXSDKTopViewController, isTheWindowWithTheFocus)
{
    QWindow first;
    QWindow second;
    first.show();
    second.show();
    for (QWindow* const window : {&first, &second}) {
        window->requestActivate();
        ASSERT_TRUE(waitFor([window] { return QGuiApplication::focusWindow() == window; }));
        EXPECT_EQ(topViewController(), window);
    }
}

TEST(QXSDKTopViewController, isAShownWindowWhereNoneHasTheFocus)
{
    QWindow hidden;
    QWindow shown;
    shown.setFlags(Qt::ToolTip); // which doesn't take the focus
    shown.show();
    ASSERT_TRUE(waitFor([&] { return shown.isExposed() && !QGuiApplication::focusWindow(); }));
    EXPECT_EQ(topViewController(), &shown);
}

} // namespace
