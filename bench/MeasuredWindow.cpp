#include "MeasuredWindow.h"

#include "support/WaitFor.h"

#include <QtQuick/QQuickRenderTarget>

#include <thread>

namespace kovalin::bench {

MeasuredWindow::MeasuredWindow(const QSize& points)
    : _picture(points, QImage::Format_ARGB32_Premultiplied)
    , _window(&_control)
{
    _window.setColor(Qt::white);
    _window.resize(points);
    _window.contentItem()->setSize(points);
    _window.show(); // for views, which animate only what can be seen
    _window.setRenderTarget(QQuickRenderTarget::fromPaintDevice(&_picture));
}

MeasuredWindow::~MeasuredWindow()
{
    test::drainMainQueue();
}

FrameCost MeasuredWindow::frame(std::chrono::milliseconds time)
{
    FrameCost cost;
    cost.step = timeOf([&] { _time.step(time); });
    cost.polish = timeOf([&] { _control.polishItems(); });
    _control.beginFrame();
    cost.sync = timeOf([&] { _control.sync(); });
    cost.render = timeOf([&] { _control.render(); });
    _control.endFrame();
    return cost;
}

FrameCost MeasuredWindow::pacedFrame()
{
    constexpr auto interval = std::chrono::milliseconds(16);
    std::this_thread::sleep_until(_nextFrame);
    _nextFrame = std::chrono::steady_clock::now() + interval;
    return frame(interval);
}

} // namespace kovalin::bench
