#include "picker/controller/QXSDKKovalinStickerPickerViewController.h"

#include "content/QXSDKKovalinFriendState.h"
#include "kits/core/QXSDKTweaks.h"
#include "picker/content/QXSDKKovalinStickerPickerContentView.h"
#include "picker/controller/PickerObjects.h"
#include "picker/icon/QXSDKKovalinIconView.h"
#include "picker/status/QXSDKKovalinCreateAvatarView.h"
#include "picker/status/QXSDKKovalinLoginView.h"
#include "picker/visibility/QXSDKKovalinStickerPickerContainerView.h"
#include "picker/visibility/QXSDKKovalinViewVisibilityState.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Clock.h"
#include "telemetry/QXSDKKovalinViewControllerLogger.h"

#include <QtQml/QQmlEngine>

using namespace kovalin::platform;

namespace {

using Controller = QXSDKKovalinStickerPickerViewController;

constexpr double topBorderHeight = 0.5; // points
/// Above every view that may become current.
constexpr double topBorderZPosition = 100;

} // namespace

// The delegate

QXSDKKovalinStickerPickerViewControllerDelegate::~QXSDKKovalinStickerPickerViewControllerDelegate() = default;

void QXSDKKovalinStickerPickerViewControllerDelegate::kovalinStickerPickerViewControllerDidSelectSearchTag(
    Controller& /*controller*/)
{
}

void QXSDKKovalinStickerPickerViewControllerDelegate::
    kovalinStickerPickerViewControllerSearchFieldFocusDidChangeWithFocus(Controller& /*controller*/, bool /*hasFocus*/)
{
}

// The controller's inside. Whoever is told of something may let go of the controller: callers hold what they call.

class QXSDKKovalinStickerPickerViewController::Impl final : public KovalinStickerPickerContentViewDelegate,
                                                            public QXSDKKovalinLoginViewDelegate,
                                                            public QXSDKKovalinCreateAvatarViewDelegate,
                                                            public QXSDKKovalinViewManagerObserver,
                                                            public std::enable_shared_from_this<Impl> {
public:
    explicit Impl(const PickerObjects& objects)
        : _objects(objects)
    {
    }

    /// Held weakly.
    void attach(const std::shared_ptr<Controller>& controller);
    /// The controller ends.
    void detach();

    void setDelegate(const std::weak_ptr<QXSDKKovalinStickerPickerViewControllerDelegate>& delegate);
    void setFriendUserId(const std::optional<QString>& friendUserId);
    void setSearchTerm(const std::optional<QString>& searchTerm, QXSDKKovalinSearchMode searchMode);
    [[nodiscard]] WeakSet<QXSDKKovalinIconView>& kovalinIcons();

    [[nodiscard]] QQuickItem* view();
    void viewWillAppear();
    void viewWillDisappear();
    void setSafeAreaInsets(const QMarginsF& insets);

    // From the view manager.

    void currentViewChanged(QXSDKKovalinViewProtocol* view) override;

    // From the current view.

    void kovalinStickerPickerContentViewDidSelectSticker(QXSDKKovalinStickerPickerContentView& contentView,
                                                         const KovalinStickerPtr& sticker, const QImage& image,
                                                         QXSDKKovalinCategory category,
                                                         const QXSDKKovalinSearchTermList& searchSequence) override;
    void
    kovalinStickerPickerContentViewSearchFieldFocusDidChangeWithFocus(QXSDKKovalinStickerPickerContentView& contentView,
                                                                      bool hasFocus) override;
    void kovalinStickerPickerContentViewDidSelectSearchTag(QXSDKKovalinStickerPickerContentView& contentView) override;
    void kovalinStickerPickerContentViewDidRenderFirstSticker(QXSDKKovalinStickerPickerContentView& contentView,
                                                              double contentViewStartTime) override;
    void loginViewDidTapLoginButton() override;
    void createAvatarViewDidTapCreateAvatarButton() override;

private:
    void loadView();
    void viewDidLoad();
    void viewWillLayoutSubviews();

    /// Tells the delegate, if there are both, and holds both meanwhile.
    template <class Tell>
    void tellDelegate(Tell&& tell)
    {
        const auto controller = _controller.lock();
        const auto delegate = _delegate.lock();
        if (controller && delegate) {
            tell(*delegate, *controller);
        }
    }

    const PickerObjects _objects;
    std::weak_ptr<Controller> _controller;
    std::weak_ptr<QXSDKKovalinStickerPickerViewControllerDelegate> _delegate;
    std::shared_ptr<QXSDKKovalinStickerPickerContainerView> _containerView; // null before the view is asked for
    std::shared_ptr<View> _topBorder;                                       // as well
    QMarginsF _safeAreaInsets;
};

// Making and ending

std::shared_ptr<Controller> PickerObjects::makeController() const
{
    assertOnMainThread();
    const std::shared_ptr<Controller> made(new Controller(*this));
    made->_impl->attach(made);
    return made;
}

std::shared_ptr<Controller>
QXSDKKovalinStickerPickerViewController::create(const QXSDKKovalinStickerPickerConfigPtr& config)
{
    assertOnMainThread();
    return PickerObjects::make(config).makeController();
}

QXSDKKovalinStickerPickerViewController::QXSDKKovalinStickerPickerViewController(const PickerObjects& objects)
    : _impl(std::make_shared<Impl>(objects))
{
}

QXSDKKovalinStickerPickerViewController::~QXSDKKovalinStickerPickerViewController()
{
    _impl->detach();
}

void Controller::Impl::attach(const std::shared_ptr<Controller>& controller)
{
    _controller = controller;
    _objects.viewManager->registerWeakObserver(shared_from_this());
}

/// What is gone isn't on screen: a session ends here, and the view leaves its parent, whoever may hold it yet.
void Controller::Impl::detach()
{
    _objects.visibilityState->viewWillDisappear();
    if (_containerView) {
        _containerView->removeFromSuperview();
    }
}

// Commands

void QXSDKKovalinStickerPickerViewController::setDelegate(
    const std::weak_ptr<QXSDKKovalinStickerPickerViewControllerDelegate>& delegate)
{
    assertOnMainThread();
    _impl->setDelegate(delegate);
}

void Controller::Impl::setDelegate(const std::weak_ptr<QXSDKKovalinStickerPickerViewControllerDelegate>& delegate)
{
    _delegate = delegate;
}

void QXSDKKovalinStickerPickerViewController::setFriendUserId(const std::optional<QString>& friendUserId)
{
    assertOnMainThread();
    const auto impl = _impl;
    impl->setFriendUserId(friendUserId);
}

void Controller::Impl::setFriendUserId(const std::optional<QString>& friendUserId)
{
    const bool hasFriend = friendUserId && !friendUserId->isEmpty();
    _objects.friendState->setFriendUserIds(hasFriend ? QStringList{*friendUserId} : QStringList(), 0);
}

void QXSDKKovalinStickerPickerViewController::setSearchTerm(const std::optional<QString>& searchTerm,
                                                            QXSDKKovalinSearchMode searchMode)
{
    assertOnMainThread();
    const auto impl = _impl;
    impl->setSearchTerm(searchTerm, searchMode);
}

void Controller::Impl::setSearchTerm(const std::optional<QString>& searchTerm, QXSDKKovalinSearchMode searchMode)
{
    _objects.viewManager->setSearchTerm(searchTerm.value_or(QString()), searchMode);
}

void QXSDKKovalinStickerPickerViewController::attachKovalinIcon(const std::shared_ptr<QXSDKKovalinIconView>& icon)
{
    assertOnMainThread();
    _impl->kovalinIcons().add(icon);
}

void QXSDKKovalinStickerPickerViewController::removeKovalinIcon(const std::shared_ptr<QXSDKKovalinIconView>& icon)
{
    assertOnMainThread();
    _impl->kovalinIcons().remove(icon);
}

WeakSet<QXSDKKovalinIconView>& Controller::Impl::kovalinIcons()
{
    return _objects.viewManager->kovalinIcons();
}

// The view

QQuickItem* QXSDKKovalinStickerPickerViewController::view()
{
    assertOnMainThread();
    const auto impl = _impl;
    return impl->view();
}

QQuickItem* Controller::Impl::view()
{
    if (!_containerView) {
        loadView();
        viewDidLoad();
    }
    return _containerView.get();
}

void Controller::Impl::loadView()
{
    _containerView = makeView<QXSDKKovalinStickerPickerContainerView>();
    // A host's script that sees the item doesn't become its owner.
    QQmlEngine::setObjectOwnership(_containerView.get(), QQmlEngine::CppOwnership);
    _containerView->setClipsToBounds(true);
    _containerView->setBackgroundColor(_objects.config->theme()->backgroundColor());
    _containerView->setSafeAreaInsets(_safeAreaInsets);
    _containerView->setOnLayout([weakSelf = weak_from_this()] {
        if (const auto self = weakSelf.lock()) {
            self->viewWillLayoutSubviews();
        }
    });
    _objects.viewManager->setContainerView(_containerView);
    _objects.visibilityState->setContainerView(_containerView);
}

void Controller::Impl::viewDidLoad()
{
    _objects.logger->setColdStartTime(currentTimeSeconds());
    _objects.logger->logStickerPickerMount();
    _topBorder = makeView<View>();
    _topBorder->setBackgroundColor(_objects.config->theme()->borderColor());
    _topBorder->setZPosition(topBorderZPosition);
    _containerView->addSubview(_topBorder);
    _objects.viewManager->loadPacks();
    _objects.viewManager->update();
    addTweaksGesture(*_containerView);
}

void QXSDKKovalinStickerPickerViewController::viewWillAppear()
{
    assertOnMainThread();
    const auto impl = _impl;
    impl->viewWillAppear();
}

void Controller::Impl::viewWillAppear()
{
    _objects.visibilityState->viewWillAppear();
}

void QXSDKKovalinStickerPickerViewController::viewWillDisappear()
{
    assertOnMainThread();
    const auto impl = _impl;
    impl->viewWillDisappear();
}

void Controller::Impl::viewWillDisappear()
{
    _objects.visibilityState->viewWillDisappear();
}

void Controller::Impl::viewWillLayoutSubviews()
{
    const QRectF bounds = _containerView->bounds();
    if (const auto currentView = _objects.viewManager->currentViewItem()) {
        currentView->setFrame(bounds);
    }
    if (_topBorder) {
        _topBorder->setFrame({0, 0, bounds.width(), topBorderHeight});
    }
}

void QXSDKKovalinStickerPickerViewController::setSafeAreaInsets(const QMarginsF& insets)
{
    assertOnMainThread();
    _impl->setSafeAreaInsets(insets);
}

void Controller::Impl::setSafeAreaInsets(const QMarginsF& insets)
{
    _safeAreaInsets = insets;
    if (_containerView) {
        _containerView->setSafeAreaInsets(insets);
    }
}

// From the parts

void Controller::Impl::currentViewChanged(QXSDKKovalinViewProtocol* view)
{
    if (auto* const loginView = dynamic_cast<QXSDKKovalinLoginView*>(view)) {
        loginView->setDelegate(weak_from_this());
    } else if (auto* const createAvatarView = dynamic_cast<QXSDKKovalinCreateAvatarView*>(view)) {
        createAvatarView->setDelegate(weak_from_this());
    } else if (auto* const contentView = dynamic_cast<QXSDKKovalinStickerPickerContentView*>(view)) {
        contentView->setDelegate(weak_from_this());
    }
}

void Controller::Impl::kovalinStickerPickerContentViewDidSelectSticker(
    QXSDKKovalinStickerPickerContentView& /*contentView*/, const KovalinStickerPtr& sticker, const QImage& image,
    QXSDKKovalinCategory category, const QXSDKKovalinSearchTermList& searchSequence)
{
    _objects.logger->logSearchAndShare(*sticker, category, searchSequence);
    const QString url = sticker->imageURLWithFriendAvatarId(_objects.friendState->friendAvatarId()).value_or(QString());
    tellDelegate([&](auto& delegate, Controller& controller) {
        delegate.kovalinStickerPickerViewControllerDidSelectKovalinWithURL(controller, url, image);
    });
}

void Controller::Impl::kovalinStickerPickerContentViewSearchFieldFocusDidChangeWithFocus(
    QXSDKKovalinStickerPickerContentView& /*contentView*/, bool hasFocus)
{
    tellDelegate([hasFocus](auto& delegate, Controller& controller) {
        delegate.kovalinStickerPickerViewControllerSearchFieldFocusDidChangeWithFocus(controller, hasFocus);
    });
}

void Controller::Impl::kovalinStickerPickerContentViewDidSelectSearchTag(
    QXSDKKovalinStickerPickerContentView& /*contentView*/)
{
    tellDelegate([](auto& delegate, Controller& controller) {
        delegate.kovalinStickerPickerViewControllerDidSelectSearchTag(controller);
    });
}

void Controller::Impl::kovalinStickerPickerContentViewDidRenderFirstSticker(
    QXSDKKovalinStickerPickerContentView& /*contentView*/, double contentViewStartTime)
{
    _objects.logger->logFirstRender(contentViewStartTime);
}

void Controller::Impl::loginViewDidTapLoginButton()
{
    _objects.logger->logHearthLinkTap();
}

void Controller::Impl::createAvatarViewDidTapCreateAvatarButton()
{
    _objects.logger->logCreateAvatarTap();
}
