#include "support/ViewTest.h"

namespace kovalin::test {

ViewTest::ViewTest()
    : ViewWindow({side, side})
{
}

std::shared_ptr<platform::View> ViewTest::addView(const QRectF& frame, const QColor& color)
{
    auto view = platform::makeView<platform::View>();
    view->setFrame(frame);
    view->setBackgroundColor(color);
    root()->addSubview(view);
    return view;
}

QColor ViewTest::colorAt(const QImage& picture, double ratio, const QPointF& point)
{
    return picture.pixelColor((point * ratio).toPoint());
}

} // namespace kovalin::test
