#include "picker/visibility/QXSDKKovalinStickerPickerContainerView.h"

#include "picker/views/PickerLog.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Log.h"
#include "platform/ui/WindowVisibility.h"

#include <QtCore/QPointer>
#include <QtQuick/QQuickWindow>

#include <utility>
#include <vector>

using namespace kovalin::platform;

namespace {

/// What a person sees of a picker that is smaller is none. Points.
constexpr double leastVisibleSide = 40;

/// An item of a host's has no model values.
QRectF frameOf(const QQuickItem& item)
{
    const auto* const view = qobject_cast<const View*>(&item);
    return view ? view->frame() : QRectF(item.position(), item.size());
}

/// What is listened to, which may end at any time.
struct Observed {
    QPointer<QObject> object;
    std::vector<QMetaObject::Connection> connections;
    /// For a view: as it is known by now.
    bool isVisible = false;
};

void deregister(const Observed& observed)
{
    bool areGone = false;
    for (const auto& connection : observed.connections) {
        areGone = !QObject::disconnect(connection) || areGone;
    }
    if (areGone && observed.object) {
        const QString name = QStringLiteral("%1(%2)").arg(
            QString::fromLatin1(observed.object->metaObject()->className()), observed.object->objectName());
        KOVALIN_LOG_WARNING(kovalinPicker, QStringLiteral("Could not deregister observer from %1, reason: %2")
                                               .arg(name, QStringLiteral("it was disconnected by somebody else")));
    }
}

} // namespace

QXSDKKovalinStickerPickerContainerViewDelegate::~QXSDKKovalinStickerPickerContainerViewDelegate() = default;

struct QXSDKKovalinStickerPickerContainerView::State {
    std::vector<Observed> observedViews; // this view first, the top last
    Observed observedWindow;
    bool isShown = false;
    std::weak_ptr<QXSDKKovalinStickerPickerContainerViewDelegate> delegate;
    std::function<void()> onLayout;

    bool isMeasuringPosted = false;
    bool isTreeStale = false;
};

QXSDKKovalinStickerPickerContainerView::QXSDKKovalinStickerPickerContainerView()
    : _container(std::make_unique<State>())
{
    setAccessibilityIdentifier(QStringLiteral("qxsdk_kovalin_container"));
}

QXSDKKovalinStickerPickerContainerView::~QXSDKKovalinStickerPickerContainerView()
{
    KOVALIN_LOG_DEBUG(kovalinPicker, QStringLiteral("Kovalin view deallocated"));
}

void QXSDKKovalinStickerPickerContainerView::setDelegate(
    const std::weak_ptr<QXSDKKovalinStickerPickerContainerViewDelegate>& delegate)
{
    assertOnMainThread();
    _container->delegate = delegate;
}

void QXSDKKovalinStickerPickerContainerView::setOnLayout(std::function<void()> onLayout)
{
    assertOnMainThread();
    _container->onLayout = std::move(onLayout);
}

bool QXSDKKovalinStickerPickerContainerView::isShown() const
{
    return _container->isShown;
}

void QXSDKKovalinStickerPickerContainerView::layoutSubviews()
{
    const auto self = weak_from_this().lock();
    if (const auto onLayout = _container->onLayout) {
        onLayout();
    }
    View::layoutSubviews();
    _checkAndUpdateIsShown();
}

void QXSDKKovalinStickerPickerContainerView::didMoveToWindow()
{
    _viewTreeUpdated();
}

void QXSDKKovalinStickerPickerContainerView::didMoveToSuperview()
{
    _viewTreeUpdated();
}

void QXSDKKovalinStickerPickerContainerView::visibilityDidChange()
{
    _checkAndUpdateIsShown();
}

// What it lies in

void QXSDKKovalinStickerPickerContainerView::_viewTreeUpdated()
{
    _container->isTreeStale = false;
    _deregisterFromSuperviews();
    if (window()) {
        _observeSuperviews();
    }
    _checkAndUpdateIsShown();
}

void QXSDKKovalinStickerPickerContainerView::_observeSuperviews()
{
    for (QQuickItem* view = this; view; view = view->parentItem()) {
        observe(*view);
    }
    observeWindow();
}

void QXSDKKovalinStickerPickerContainerView::observe(QQuickItem& view)
{
    using Container = QXSDKKovalinStickerPickerContainerView;
    const std::size_t place = _container->observedViews.size();
    _container->observedViews.push_back(
        {.object = &view,
         .connections = {connect(&view, &QQuickItem::visibleChanged, this, [this, place] { hiddenDidChange(place); }),
                         connect(&view, &QQuickItem::xChanged, this, &Container::geometryDidChange),
                         connect(&view, &QQuickItem::yChanged, this, &Container::geometryDidChange),
                         connect(&view, &QQuickItem::widthChanged, this, &Container::geometryDidChange),
                         connect(&view, &QQuickItem::heightChanged, this, &Container::geometryDidChange),
                         connect(&view, &QQuickItem::parentChanged, this, &Container::treeDidChange)},
         .isVisible = view.isVisible()});
}

void QXSDKKovalinStickerPickerContainerView::observeWindow()
{
    _container->observedWindow = {
        .object = window(),
        .connections = {connect(window(), &QWindow::visibilityChanged, this, [this] { _checkAndUpdateIsShown(); })}};
}

void QXSDKKovalinStickerPickerContainerView::_deregisterFromSuperviews()
{
    for (const auto& observed : std::exchange(_container->observedViews, {})) {
        deregister(observed);
    }
    deregister(std::exchange(_container->observedWindow, {}));
}

// What changes

/// Qt Quick tells of all that is hidden or shown along with an item, the lower ones first and in the midst of the change, when
/// nothing may be told to others. With the item itself, told last, the change is made.
void QXSDKKovalinStickerPickerContainerView::hiddenDidChange(std::size_t observedView)
{
    auto& views = _container->observedViews;
    const auto* const view = qobject_cast<QQuickItem*>(views.at(observedView).object.data());
    views.at(observedView).isVisible = view->isVisible();
    const QQuickItem* const superview = view->parentItem();
    if (superview) {
        const bool isObserved = observedView + 1 < views.size() && views.at(observedView + 1).object == superview;
        if (!isObserved || views.at(observedView + 1).isVisible != superview->isVisible()) {
            return; // it has just come here, which is told yet, or it follows its superview, which is
        }
    }
    _checkAndUpdateIsShown();
}

void QXSDKKovalinStickerPickerContainerView::geometryDidChange()
{
    measureLater();
}

void QXSDKKovalinStickerPickerContainerView::treeDidChange()
{
    _container->isTreeStale = true;
    measureLater();
}

void QXSDKKovalinStickerPickerContainerView::measureLater()
{
    if (std::exchange(_container->isMeasuringPosted, true)) {
        return;
    }
    dispatchMain([weakSelf = weak_from_this()] {
        const auto self = std::static_pointer_cast<QXSDKKovalinStickerPickerContainerView>(weakSelf.lock());
        if (!self) {
            return;
        }
        self->_container->isMeasuringPosted = false;
        if (self->_container->isTreeStale) {
            self->_viewTreeUpdated();
        } else {
            self->_checkAndUpdateIsShown();
        }
    });
}

void QXSDKKovalinStickerPickerContainerView::_checkAndUpdateIsShown()
{
    const bool isShown = isOnScreen(window()) && _isVisibleInTree();
    if (std::exchange(_container->isShown, isShown) == isShown) {
        return;
    }
    if (const auto delegate = _container->delegate.lock()) {
        delegate->containerViewVisibilityDidChange(isShown);
    }
}

bool QXSDKKovalinStickerPickerContainerView::_isVisibleInTree() const
{
    QRectF visible = bounds();
    for (const QQuickItem* view = this; view; view = view->parentItem()) {
        const QRectF frame = frameOf(*view);
        visible = visible.intersected(QRectF(QPointF(), frame.size())).translated(frame.topLeft());
        // So is what lies in an item that is hidden: a difference that doesn't matter on the way to the top.
        if (!view->isVisible()) {
            return false;
        }
    }
    return visible.width() >= leastVisibleSide && visible.height() >= leastVisibleSide;
}
