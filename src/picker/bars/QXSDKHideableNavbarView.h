#pragma once

#include "platform/ui/View.h"

#include <chrono>
#include <functional>
#include <memory>

namespace kovalin::platform {
class ScrollView;
} // namespace kovalin::platform

/// A page whose bars at the top are pushed away as its list scrolls down, and come back as it scrolls up; bars that are
/// left half hidden come back by themselves. Thread and lifetime as of `View`. To derive from: a subclass reads
/// `navbarOffset()` in its layout, which it is asked for at each change.
///
/// Until bars that are half hidden have come back, the page stays alive.
class QXSDKHideableNavbarView : public kovalin::platform::View {
    Q_OBJECT

public:
    QXSDKHideableNavbarView();
    ~QXSDKHideableNavbarView() override;

    /// Null before one is set, and when it has gone; then the list counts as not scrolled.
    [[nodiscard]] std::shared_ptr<kovalin::platform::ScrollView> scrollView() const;
    /// Held weakly.
    void setScrollView(const std::weak_ptr<kovalin::platform::ScrollView>& scrollView);

    /// How far the bars are pushed up, in points: 0, wholly shown, at first.
    [[nodiscard]] double navbarOffset() const;
    /// Takes the nearest value between 0 and what can hide: `maxNavbarOffset()`, and no more than the list has
    /// scrolled. A value that leaves the bars half hidden, once 3 seconds have passed without another call, goes back
    /// to 0 in an animation.
    void setNavbarOffset(double offset);
    /// For each scroll of the list: moves the bars as far as it has scrolled since the last change.
    void updateNavbarOffset();

    /// The height that can hide, in points; 0 at first. To be set after the scroll view.
    [[nodiscard]] double maxNavbarOffset() const;
    void setMaxNavbarOffset(double offset);

protected:
    /// In points; 0 at rest at the top, negative when it bounces there. Bouncing at the end doesn't count.
    [[nodiscard]] double _currentScrollTop() const;

    /// Has `block` run after `delay`, unless what this returns is destroyed before. For tests, which don't wait.
    [[nodiscard]] virtual std::shared_ptr<void> _startDelay(std::chrono::milliseconds delay,
                                                            std::function<void()> block);

private:
    void _showNavbar();

    double _lastScrollTop = 0;
    std::shared_ptr<void> _resetNavbarBlock;
    std::weak_ptr<kovalin::platform::ScrollView> _scrollView;
    double _navbarOffset = 0;
    double _maxNavbarOffset = 0;
};
