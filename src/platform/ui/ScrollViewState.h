#pragma once

#include "platform/ui/QuickComponents.h"
#include "platform/ui/ScrollGeometry.h"
#include "platform/ui/ScrollIndicators.h"
#include "platform/ui/ScrollView.h"

#include <QtCore/QVariantAnimation>

#include <memory>

namespace kovalin::platform {

/// What a scroll view knows, and how it moves.
struct ScrollView::State {
    explicit State(ScrollView& owner);

    [[nodiscard]] ScrollGeometry geometry() const { return {view.bounds().size(), contentSize, inset}; }
    [[nodiscard]] QPointF offset() const;
    [[nodiscard]] bool isAnimating() const { return animation.state() != QAbstractAnimation::Stopped; }
    [[nodiscard]] bool isMovedByQuick() const;
    [[nodiscard]] bool isMoving() const { return isAnimating() || isMovedByQuick(); }
    [[nodiscard]] bool canBeSeen() const;

    void setUpFlickable();
    void setUpAnimation();

    void moveTo(const QPointF& target);
    void animateTo(const QPointF& target);
    void endMotion();
    void settle();
    void tellIfMoved();
    void motionMayHaveChanged();
    void geometryMayHaveChanged();

    ScrollView& view;
    QuickItem flickable;
    const std::shared_ptr<View> content = makeView<View>();
    ScrollIndicators indicators;
    std::weak_ptr<ScrollViewDelegate> delegate;

    QSizeF contentSize{0, 0};
    QMarginsF inset;
    bool delaysContentTouches = false;

    /// From 0 to 1, on the way from one offset to the other.
    QVariantAnimation animation;
    QPointF animationStart;
    QPointF animationEnd;

    /// Several values are being set, which Flickable tells of one by one; the end is told.
    bool isBeingMoved = false;
    QPointF toldOffset;
    bool toldMoving = false;
    ScrollGeometry knownGeometry;
};

} // namespace kovalin::platform
