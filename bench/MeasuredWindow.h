#pragma once

#include "Measure.h"
#include "support/ManualAnimationDriver.h"

#include <QtCore/QSize>
#include <QtGui/QImage>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickRenderControl>
#include <QtQuick/QQuickWindow>

#include <chrono>

namespace kovalin::bench {

/// What one frame takes of the main thread, all of which the software renderer works on.
struct FrameCost {
    Nanoseconds step = 0; ///< Events that were due, and what the passing of time moves.
    Nanoseconds polish = 0;
    Nanoseconds sync = 0;
    Nanoseconds render = 0;

    [[nodiscard]] Nanoseconds total() const { return step + polish + sync + render; }
};

/// A window that the software renderer draws into a picture, frame by frame, when told and at no other time. Main
/// thread only; one at a time.
class MeasuredWindow final {
public:
    explicit MeasuredWindow(const QSize& points);
    ~MeasuredWindow();
    Q_DISABLE_COPY_MOVE(MeasuredWindow)

    [[nodiscard]] QQuickItem& contentItem() { return *_window.contentItem(); }
    [[nodiscard]] const QImage& picture() const { return _picture; }

    /// Lets `time` pass and draws.
    FrameCost frame(std::chrono::milliseconds time);
    /// The same, not before the display would show another frame. Meanwhile other threads work, as they would on a
    /// device, and what they bring comes with the frame.
    FrameCost pacedFrame();

private:
    QImage _picture;
    QQuickRenderControl _control;
    QQuickWindow _window;
    test::ManualAnimationDriver _time;
    std::chrono::steady_clock::time_point _nextFrame;
};

} // namespace kovalin::bench
