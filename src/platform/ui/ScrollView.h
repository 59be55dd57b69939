#pragma once

#include "platform/ui/View.h"

#include <QtCore/QMarginsF>
#include <QtCore/QPointF>
#include <QtCore/QSizeF>

#include <memory>

namespace kovalin::platform {

class ScrollView;

/// Told of a scroll view's motion, on the main thread.
class ScrollViewDelegate {
public:
    ScrollViewDelegate() = default;
    virtual ~ScrollViewDelegate();
    Q_DISABLE_COPY_MOVE(ScrollViewDelegate)

    /// The content offset is different, whatever moved it: a finger, the wheel, keys, an animation, a call. Nothing by default.
    virtual void scrollViewDidScroll(ScrollView& scrollView);
};

/// A window onto content that may be larger than itself, moved by touch, mouse and wheel, with momentum, and bouncing at the
/// ends. Thread and lifetime as of `View`. Cuts off what stands over. It scrolls in the directions in which content and insets
/// are larger than the view. Where Qt Quick's modules are missing the content shows and doesn't scroll.
///
/// The content offset is the content's point at the view's top left corner; at rest at the start it is (-left inset, -top inset).
class ScrollView : public View {
    Q_OBJECT

public:
    ScrollView();
    ~ScrollView() override;

    /// Where the content goes: its subviews' frames are in the content's coordinates. It has the content's size.
    [[nodiscard]] const std::shared_ptr<View>& contentView() const;

    void setScrollDelegate(const std::weak_ptr<ScrollViewDelegate>& delegate);

    /// Where it is now; while it bounces, outside of what can be rested at.
    [[nodiscard]] QPointF contentOffset() const;
    /// Ends any motion, and goes to the nearest offset that can be rested at; with `isAnimated` in a short animation. The
    /// delegate hears of it before the call returns, or, animated, on the way.
    void setContentOffset(const QPointF& offset, bool isAnimated);
    [[nodiscard]] QSizeF contentSize() const;
    void setContentSize(const QSizeF& size);
    /// Empty space around the content, in points; 0 at first. A view that rests at its start still does afterwards.
    [[nodiscard]] QMarginsF contentInset() const;
    void setContentInset(const QMarginsF& inset);
    /// Of the view's edges, where the indicators end; 0 at first.
    [[nodiscard]] QMarginsF scrollIndicatorInsets() const;
    void setScrollIndicatorInsets(const QMarginsF& insets);
    /// Both are shown at first, while the content moves.
    void setShowsVerticalScrollIndicator(bool shows);
    void setShowsHorizontalScrollIndicator(bool shows);
    /// Whether a press reaches what lies in the content only if the finger rests; at first it reaches it at once.
    [[nodiscard]] bool delaysContentTouches() const;
    void setDelaysContentTouches(bool delays);

    /// A finger holds it, or it moves by itself.
    [[nodiscard]] bool isMoving() const;

    void layoutSubviews() override;

protected:
    /// Called before the delegate is told, on the same occasions.
    virtual void contentOffsetDidChange();

    void didMoveToWindow() override;
    void visibilityDidChange() override;
    void presentedSizeDidChange(const QSizeF& size) override;
    bool childMouseEventFilter(QQuickItem* item, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct State;

    const std::unique_ptr<State> _scroll;
};

} // namespace kovalin::platform
