#pragma once

#include "platform/ui/View.h"
#include "support/WaitFor.h"

#include <QtCore/QSize>
#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtQuick/QQuickWindow>

#include <memory>

namespace kovalin::test {

/// A real window with a root view that fills it, white. Off screen it is drawn by the software renderer, on a display by Qt
/// Quick's own choice. Main thread only.
class ViewWindow {
public:
    /// Shown, active and exposed when the constructor returns. `size` is in points.
    explicit ViewWindow(const QSize& size);
    ~ViewWindow();
    Q_DISABLE_COPY_MOVE(ViewWindow)

    [[nodiscard]] QQuickWindow& window() { return *_window; }
    [[nodiscard]] const std::shared_ptr<platform::View>& root() const { return _root; }

    /// Lays out and draws all, and gives the picture, with `ratio()` pixels to a point.
    QImage grab();
    [[nodiscard]] double ratio() const;

    void tap(const QPointF& point);
    void press(const QPointF& point);
    void move(const QPointF& point);
    void release(const QPointF& point);

private:
    std::unique_ptr<QQuickWindow> _window;
    std::shared_ptr<platform::View> _root;
};

} // namespace kovalin::test
