#include "picker/bars/QXSDKHideableNavbarView.h"

#include "platform/dispatch/DelayedTask.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/Animation.h"
#include "platform/ui/ScrollView.h"

#include <algorithm>
#include <utility>

using namespace kovalin::platform;

namespace {

/// How long bars stay half hidden.
constexpr std::chrono::seconds resetDelay(3);
constexpr AnimationSeconds resetDuration(0.3);

} // namespace

QXSDKHideableNavbarView::QXSDKHideableNavbarView() = default;

QXSDKHideableNavbarView::~QXSDKHideableNavbarView() = default;

std::shared_ptr<ScrollView> QXSDKHideableNavbarView::scrollView() const
{
    return _scrollView.lock();
}

void QXSDKHideableNavbarView::setScrollView(const std::weak_ptr<ScrollView>& scrollView)
{
    assertOnMainThread();
    _scrollView = scrollView;
    _lastScrollTop = _currentScrollTop();
}

double QXSDKHideableNavbarView::navbarOffset() const
{
    return _navbarOffset;
}

double QXSDKHideableNavbarView::maxNavbarOffset() const
{
    return _maxNavbarOffset;
}

void QXSDKHideableNavbarView::setMaxNavbarOffset(double offset)
{
    assertOnMainThread();
    _maxNavbarOffset = offset;
}

double QXSDKHideableNavbarView::_currentScrollTop() const
{
    const auto scrollView = _scrollView.lock();
    if (!scrollView) {
        return 0;
    }
    const double bottomLimit = scrollView->contentSize().height() - scrollView->frame().height();
    return std::min(scrollView->contentOffset().y(), bottomLimit) + scrollView->contentInset().top();
}

void QXSDKHideableNavbarView::updateNavbarOffset()
{
    setNavbarOffset(_navbarOffset + (_currentScrollTop() - _lastScrollTop));
}

void QXSDKHideableNavbarView::setNavbarOffset(double offset)
{
    assertOnMainThread();
    const auto self = std::static_pointer_cast<QXSDKHideableNavbarView>(weak_from_this().lock());
    _resetNavbarBlock = nullptr;
    _lastScrollTop = _currentScrollTop();
    const double limit = std::min(_maxNavbarOffset, _lastScrollTop);
    _navbarOffset = std::max(std::min(offset, limit), 0.0);
    setNeedsLayout();
    if (self && _navbarOffset > 0 && _navbarOffset < _maxNavbarOffset) {
        _resetNavbarBlock = _startDelay(resetDelay, [self] { self->_showNavbar(); });
    }
}

void QXSDKHideableNavbarView::_showNavbar()
{
    animate(resetDuration, AnimationSeconds(0), [this] {
        _navbarOffset = 0;
        layoutSubviews();
    });
}

std::shared_ptr<void> QXSDKHideableNavbarView::_startDelay(std::chrono::milliseconds delay, std::function<void()> block)
{
    return std::make_shared<DelayedTask>(delay, std::move(block));
}
