#pragma once

#include "platform/ui/ScrollGeometry.h"

#include <QtCore/QMarginsF>
#include <QtCore/QPointF>

#include <memory>

namespace kovalin::platform {

class View;

/// The two thin bars that tell how much of a scroll view's content is seen, and where. They take no touches.
/// Main thread only.
class ScrollIndicators final {
public:
    ScrollIndicators();
    ~ScrollIndicators();
    Q_DISABLE_COPY_MOVE(ScrollIndicators)

    /// Above all else in it.
    void addTo(View& view);

    void setInsets(const QMarginsF& insets) { _insets = insets; }
    [[nodiscard]] QMarginsF insets() const { return _insets; }
    void setShowsVertical(bool shows) { _showsVertical = shows; }
    void setShowsHorizontal(bool shows) { _showsHorizontal = shows; }

    /// Places them, without animation. Where nothing can be scrolled there is no bar.
    void place(const ScrollGeometry& geometry, const QPointF& offset);
    void show();
    /// After a moment.
    void fade();

private:
    QMarginsF _insets;
    bool _showsVertical = true;
    bool _showsHorizontal = true;

    const std::shared_ptr<View> _vertical;
    const std::shared_ptr<View> _horizontal;
};

} // namespace kovalin::platform
