#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "platform/ui/AnimatedProperty.h"
#include "platform/ui/LayerStyle.h"
#include "platform/ui/ViewTransform.h"

#include <QtCore/QList>
#include <QtCore/QMarginsF>
#include <QtGui/QAccessible>
#include <QtQuick/QQuickItem>

#include <memory>
#include <utility>

QT_BEGIN_NAMESPACE
class QSGNode;
QT_END_NAMESPACE

namespace kovalin::platform {

/// A rectangle on screen that draws its own background and lays out its subviews: a Qt Quick item with the operations that
/// views of the library call.
///
/// Main thread only: other calls are a clean stop. The last reference may go on any thread.
///
/// Lifetime: made by `makeView`, held by `std::shared_ptr`. A superview keeps its subviews alive. When the last reference
/// goes on the main thread the view leaves the tree at once, and it is deleted in a later turn of the event loop; so a view
/// may go in its own event handler, layout or animation. On another thread all of this is done in a later turn.
///
/// Model values (`frame`, `alpha`, `transform`, `backgroundColor`) change at once. What is on screen follows at once too, or
/// where the change is made in `animate`, over time. A change outside of `animate` ends what animates the same value.
///
/// Coordinates are points. What Qt Quick or a host does to the item itself, such as resizing it, changes the model values.
class QXSDKKOVALINKIT_EXPORT View : public QQuickItem, public std::enable_shared_from_this<View> {
    Q_OBJECT

public:
    View();
    ~View() override;
    Q_DISABLE_COPY_MOVE(View)

    // The tree

    /// Puts `view` above all other subviews; it leaves its superview first. Ignored, with a log line, if `view` is null, is
    /// this view or has it in its own tree.
    void addSubview(const std::shared_ptr<View>& view);
    /// As `addSubview`, below those that stand at `index` and later once `view` has left its superview. An index outside of
    /// the list counts as its nearer end.
    void insertSubview(const std::shared_ptr<View>& view, qsizetype index);
    /// Does nothing to a view without a superview. An item of a host's, which is none, is left too.
    void removeFromSuperview();
    /// Bottom first.
    [[nodiscard]] QList<std::shared_ptr<View>> subviews() const;
    /// Null for a view in no tree, in a host's item, or in a view whose last reference is gone.
    [[nodiscard]] std::shared_ptr<View> superview() const;

    // Model values

    [[nodiscard]] QRectF frame() const;
    /// In the superview's coordinates, without `transform`. A negative or not finite size counts as 0, a position that isn't
    /// finite as 0. Another size asks for a layout.
    void setFrame(const QRectF& frame);
    /// The frame's size at (0, 0).
    [[nodiscard]] QRectF bounds() const;
    [[nodiscard]] QPointF center() const;
    /// Moves the frame.
    void setCenter(const QPointF& center);
    /// 0 … 1, to which other values are clamped; 1 at first.
    [[nodiscard]] double alpha() const;
    void setAlpha(double alpha);
    [[nodiscard]] ViewTransform transform() const;
    void setTransform(const ViewTransform& transform);
    /// Invalid, and so nothing drawn, at first.
    [[nodiscard]] QColor backgroundColor() const;
    void setBackgroundColor(const QColor& color);

    // What doesn't animate

    /// Whether the view itself is hidden, whatever its superviews are; `isVisible()` tells whether it and all of them are shown.
    [[nodiscard]] bool isHidden() const;
    void setHidden(bool hidden);
    [[nodiscard]] LayerStyle layerStyle() const;
    void setLayerStyle(const LayerStyle& style);
    void setCornerRadius(double points);
    void setBorder(double width, const QColor& color);
    void setShadow(const LayerShadow& shadow);
    /// Among siblings higher ones lie above, whatever their order; 0 at first.
    void setZPosition(double z);
    /// Whether subviews are cut off at the bounds. The cut has square corners. Off at first.
    void setClipsToBounds(bool clips);

    // Layout

    /// `layoutSubviews` is to run before the next frame; while the view is hidden, once it is shown. From inside its own
    /// `layoutSubviews` it is ignored, with a log line, since such a layout would never end.
    void setNeedsLayout();
    /// Runs the layouts that are due here and in all subviews now, also of hidden views.
    void layoutIfNeeded();
    /// Sets the subviews' frames by `bounds()`. May also be called directly, as in `animate`. Nothing by default. It isn't
    /// called before the view has had a size, nor while it is hidden; a view that had one is told of a size of 0 too.
    virtual void layoutSubviews();
    /// The size, at most `size`, that suits the content; the present one by default.
    [[nodiscard]] virtual QSizeF sizeThatFits(const QSizeF& size) const;
    /// Takes the size that fits best in unlimited space, rounded up to whole points; keeps the origin.
    void sizeToFit();

    // Surroundings

    /// What of the view the device's edges and bars cover, as its host tells it of this view or of one that it lies in. The
    /// platform tells nothing, so 0 without a host's word.
    [[nodiscard]] QMarginsF safeAreaInsets() const;
    /// For the view that a host embeds. Asks it and all subviews for a layout.
    void setSafeAreaInsets(const QMarginsF& insets);
    /// Device pixels to a point in the view's window; 1 without one.
    [[nodiscard]] double devicePixelRatio() const;

    // Accessibility

    /// The item's `objectName`.
    void setAccessibilityIdentifier(const QString& identifier);
    void setAccessibilityRole(QAccessible::Role role);
    void setAccessibilityLabel(const QString& label);

protected:
    // Called on the main thread when the tree stands, so they may do anything; before the call that makes the change returns,
    // or in a later turn if the change comes from outside.

    virtual void didMoveToSuperview();
    /// `window()` is another one, or none.
    virtual void didMoveToWindow();
    /// `isVisible()` is different: this view or one that it lies in was shown or hidden.
    virtual void visibilityDidChange();
    virtual void devicePixelRatioDidChange();

    /// The size on screen is different, which an animation may still move. Called in the midst of a change: for moving own
    /// items alone.
    virtual void presentedSizeDidChange(const QSizeF& size);

    // Drawing

    /// Makes or changes what is drawn above the background, as `QQuickItem::updatePaintNode` does: maybe on another thread,
    /// while the main thread waits, so it reads members, and does nothing else. Null is nothing. The node's class must not
    /// change. Called only if `setDrawsContent(true)`; `update()` asks for it.
    virtual QSGNode* updateContentNode(QSGNode* old);
    void setDrawsContent(bool draws);

    /// Keeps what is on show, as the content that a dissolve starts from. False if the view can't dissolve, as by default.
    virtual bool keepContentForDissolve();
    /// Shows new content mixed with the one that was kept, 0 … 1.
    virtual void presentDissolve(double progress);

    void updatePolish() final;
    void itemChange(ItemChange change, const ItemChangeData& data) final;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) final;
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) final;

private:
    struct State;
    friend class AnimationRun;
    friend class Animator;
    friend class TreeChangeTeller;
    friend class ViewDeleter;

    // For animations.
    [[nodiscard]] bool canBeSeen() const;
    [[nodiscard]] PropertyValue presented(AnimatedProperty property) const;
    void present(AnimatedProperty property, const PropertyValue& value);
    void presentFrame(const QRectF& frame);
    void presentTransform(const ViewTransform& transform);
    void presentBackgroundColor(const QColor& color);

    void tellTreeChanges();
    void runLayout();
    void setNeedsLayoutOfTree();
    void leaveSuperview();
    void updateHasContents();

    const std::unique_ptr<State> _state;
};

/// Ends a view: it leaves the tree if this is the main thread, and is deleted when no code of its own is running.
class QXSDKKOVALINKIT_EXPORT ViewDeleter final {
public:
    void operator()(View* view) const;
};

/// Makes a view, main thread only.
template <class T, class... Args>
[[nodiscard]] std::shared_ptr<T> makeView(Args&&... args)
{
    return std::shared_ptr<T>(new T(std::forward<Args>(args)...), ViewDeleter());
}

} // namespace kovalin::platform
