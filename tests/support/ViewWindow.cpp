#include "support/ViewWindow.h"

#include <QtGui/QGuiApplication>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <mutex>

namespace kovalin::test {

namespace {

void chooseRenderer()
{
    // Taken only before the process' first window.
    static std::once_flag once;
    std::call_once(once, [] {
        if (QGuiApplication::platformName() == QStringLiteral("offscreen")) {
            QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        }
    });
}

} // namespace

ViewWindow::ViewWindow(const QSize& size)
{
    chooseRenderer();
    _window = std::make_unique<QQuickWindow>();
    _root = platform::makeView<platform::View>();
    _window->setColor(Qt::white);
    _window->resize(size);
    _root->setParentItem(_window->contentItem());
    _root->setFrame(QRectF(QPointF(), size));
    _window->show();
    _window->requestActivate();
    EXPECT_TRUE(waitFor([this] { return _window->isExposed() && _window->isActive(); }));
}

ViewWindow::~ViewWindow()
{
    _root.reset();
    drainMainQueue();
    _window.reset();
    drainMainQueue();
}

QImage ViewWindow::grab()
{
    return _window->grabWindow();
}

double ViewWindow::ratio() const
{
    return _window->effectiveDevicePixelRatio();
}

void ViewWindow::tap(const QPointF& point)
{
    QTest::mouseClick(_window.get(), Qt::LeftButton, {}, point.toPoint());
}

void ViewWindow::press(const QPointF& point)
{
    QTest::mousePress(_window.get(), Qt::LeftButton, {}, point.toPoint());
}

void ViewWindow::move(const QPointF& point)
{
    QTest::mouseMove(_window.get(), point.toPoint());
}

void ViewWindow::release(const QPointF& point)
{
    QTest::mouseRelease(_window.get(), Qt::LeftButton, {}, point.toPoint());
}

} // namespace kovalin::test
