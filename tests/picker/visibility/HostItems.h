#pragma once

#include "support/WaitFor.h"

#include <QtCore/QRectF>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

#include <gtest/gtest.h>

// What a host puts a picker into.

namespace kovalin::test {

/// An item of a host's, which knows how many listen to it.
class HostItem final : public QQuickItem {
public:
    explicit HostItem(QQuickItem* parent, const QRectF& frame = {0, 0, 200, 200})
    {
        setParentItem(parent);
        setPosition(frame.topLeft());
        setSize(frame.size());
    }

    [[nodiscard]] int listeners() const
    {
        return receivers(SIGNAL(visibleChanged())) + receivers(SIGNAL(xChanged())) + receivers(SIGNAL(yChanged())) +
               receivers(SIGNAL(widthChanged())) + receivers(SIGNAL(heightChanged())) +
               receivers(SIGNAL(parentChanged(QQuickItem*)));
    }
};

/// A window of a host's, which knows how many listen to its visibility.
class HostWindow final : public QQuickWindow {
public:
    HostWindow()
    {
        resize(200, 200);
        show();
        EXPECT_TRUE(waitFor([this] { return isExposed(); }));
    }

    [[nodiscard]] int listeners() const { return receivers(SIGNAL(visibilityChanged(QWindow::Visibility))); }
};

} // namespace kovalin::test
