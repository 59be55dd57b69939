#pragma once

#include "support/ViewWindow.h"

#include <gtest/gtest.h>

namespace kovalin::test {

/// A test in a window of 200 × 200 points.
class ViewTest : public testing::Test, protected ViewWindow {
protected:
    static constexpr int side = 200;

    ViewTest();

    /// A subview of the root.
    std::shared_ptr<platform::View> addView(const QRectF& frame, const QColor& color = {});

    /// Of the pixel that holds the point.
    [[nodiscard]] static QColor colorAt(const QImage& picture, double ratio, const QPointF& point);
    [[nodiscard]] QColor colorAt(const QPointF& point) { return colorAt(grab(), ratio(), point); }
};

} // namespace kovalin::test
