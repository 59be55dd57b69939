#pragma once

#include "platform/ui/View.h"
#include "support/WaitFor.h"

#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtQuick/QQuickWindow>

#include <gtest/gtest.h>

#include <memory>

namespace kovalin::test {

/// A real window off screen, drawn by the software renderer, with a root view that fills it. White, 200 × 200 points.
class ViewTest : public testing::Test {
protected:
    static constexpr int side = 200;

    static void SetUpTestSuite();

    ViewTest();
    ~ViewTest() override;

    [[nodiscard]] QQuickWindow& window() { return *_window; }
    [[nodiscard]] const std::shared_ptr<platform::View>& root() const { return _root; }

    /// A subview of the root.
    std::shared_ptr<platform::View> addView(const QRectF& frame, const QColor& color = {});

    /// Lays out and draws all, and gives the picture, with `ratio()` pixels to a point.
    QImage grab();
    [[nodiscard]] double ratio() const;
    /// Of the pixel that holds the point.
    [[nodiscard]] static QColor colorAt(const QImage& picture, double ratio, const QPointF& point);
    [[nodiscard]] QColor colorAt(const QPointF& point) { return colorAt(grab(), ratio(), point); }

    void tap(const QPointF& point);
    void press(const QPointF& point);
    void move(const QPointF& point);
    void release(const QPointF& point);

private:
    std::unique_ptr<QQuickWindow> _window;
    std::shared_ptr<platform::View> _root;
};

} // namespace kovalin::test
