#include "support/ViewTest.h"

#include <QtTest/QTest>

#include <mutex>

namespace kovalin::test {

void ViewTest::SetUpTestSuite()
{
    // Taken only before the process' first window.
    static std::once_flag once;
    std::call_once(once, [] { QQuickWindow::setGraphicsApi(QSGRendererInterface::Software); });
}

ViewTest::ViewTest()
    : _window(std::make_unique<QQuickWindow>())
    , _root(platform::makeView<platform::View>())
{
    _window->setColor(Qt::white);
    _window->resize(side, side);
    _root->setParentItem(_window->contentItem());
    _root->setFrame(QRectF(0, 0, side, side));
    _window->show();
    _window->requestActivate();
    EXPECT_TRUE(waitFor([this] { return _window->isExposed() && _window->isActive(); }));
}

ViewTest::~ViewTest()
{
    _root.reset();
    drainMainQueue();
    _window.reset();
    drainMainQueue();
}

std::shared_ptr<platform::View> ViewTest::addView(const QRectF& frame, const QColor& color)
{
    auto view = platform::makeView<platform::View>();
    view->setFrame(frame);
    view->setBackgroundColor(color);
    _root->addSubview(view);
    return view;
}

QImage ViewTest::grab()
{
    return _window->grabWindow();
}

double ViewTest::ratio() const
{
    return _window->effectiveDevicePixelRatio();
}

QColor ViewTest::colorAt(const QImage& picture, double ratio, const QPointF& point)
{
    return picture.pixelColor((point * ratio).toPoint());
}

void ViewTest::tap(const QPointF& point)
{
    QTest::mouseClick(_window.get(), Qt::LeftButton, {}, point.toPoint());
}

void ViewTest::press(const QPointF& point)
{
    QTest::mousePress(_window.get(), Qt::LeftButton, {}, point.toPoint());
}

void ViewTest::move(const QPointF& point)
{
    QTest::mouseMove(_window.get(), point.toPoint());
}

void ViewTest::release(const QPointF& point)
{
    QTest::mouseRelease(_window.get(), Qt::LeftButton, {}, point.toPoint());
}

} // namespace kovalin::test
