#pragma once

#include "platform/ui/View.h"

#include <cstddef>
#include <functional>
#include <memory>

/// Told whether a picker can be seen. Called on the main thread; may do anything.
class QXSDKKovalinStickerPickerContainerViewDelegate {
public:
    virtual ~QXSDKKovalinStickerPickerContainerViewDelegate();

    virtual void containerViewVisibilityDidChange(bool isShown) = 0;
};

/// The root view of a picker, which knows whether a person can see enough of it: it is in a window, neither it nor anything
/// that it lies in, the window included, is hidden, and what the bounds of all of those leave of it is at least 40 points wide
/// and high. A minimised window counts as hidden. Opacity, transforms, and what lies above it, don't count. Thread and lifetime
/// as of `View`.
///
/// It measures again when it is laid out, and when it or an item that it lies in, the host's included, is hidden or shown: at
/// once. When one of them is moved, resized or put into another item, in a later turn of the main thread, once for all that
/// changed by then.
class QXSDKKovalinStickerPickerContainerView final : public kovalin::platform::View {
    Q_OBJECT

public:
    QXSDKKovalinStickerPickerContainerView();
    ~QXSDKKovalinStickerPickerContainerView() override;

    /// Held weakly.
    void setDelegate(const std::weak_ptr<QXSDKKovalinStickerPickerContainerViewDelegate>& delegate);

    /// Called at the beginning of each layout; empty for nothing, as at first. May do anything.
    void setOnLayout(std::function<void()> onLayout);

    /// As it was measured last; false at first.
    [[nodiscard]] bool isShown() const;

    void layoutSubviews() override;

protected:
    void didMoveToWindow() override;
    void didMoveToSuperview() override;
    void visibilityDidChange() override;

private:
    struct State;

    void _viewTreeUpdated();
    void _observeSuperviews();
    void _deregisterFromSuperviews();
    void _checkAndUpdateIsShown();
    [[nodiscard]] bool _isVisibleInTree() const;

    void observe(QQuickItem& view);
    void observeWindow();
    void hiddenDidChange(std::size_t observedView);
    void geometryDidChange();
    void treeDidChange();
    void measureLater();

    const std::unique_ptr<State> _container;
};
