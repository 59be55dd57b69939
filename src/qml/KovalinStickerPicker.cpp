#include "qml/KovalinStickerPicker.h"

#include "picker/config/QXSDKKovalinStickerPickerConfigBuilder.h"
#include "picker/controller/QXSDKKovalinStickerPickerViewController.h"
#include "picker/icon/QXSDKKovalinIconView.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/ui/WindowVisibility.h"

#include <QtQuick/QQuickWindow>

#include <utility>

using kovalin::platform::dispatchMain;
using kovalin::platform::isOnScreen;

/// Hands on what a picker tells, for as long as the item has that picker.
class KovalinStickerPicker::Delegate final : public QXSDKKovalinStickerPickerViewControllerDelegate {
public:
    explicit Delegate(KovalinStickerPicker& item)
        : _item(&item)
    {
    }

    void end() { _item = nullptr; }

    void
    kovalinStickerPickerViewControllerDidSelectKovalinWithURL(QXSDKKovalinStickerPickerViewController& /*controller*/,
                                                              const QString& url, const QImage& image) override
    {
        if (_item) {
            Q_EMIT _item->stickerSelected(url, image);
        }
    }

    void kovalinStickerPickerViewControllerDidSelectSearchTag(
        QXSDKKovalinStickerPickerViewController& /*controller*/) override
    {
        if (_item) {
            Q_EMIT _item->searchTagSelected();
        }
    }

    void kovalinStickerPickerViewControllerSearchFieldFocusDidChangeWithFocus(
        QXSDKKovalinStickerPickerViewController& /*controller*/, bool hasFocus) override
    {
        if (_item) {
            Q_EMIT _item->searchFieldFocusChanged(hasFocus);
        }
    }

private:
    KovalinStickerPicker* _item;
};

KovalinStickerPicker::KovalinStickerPicker(QQuickItem* parent)
    : QQuickItem(parent)
{
    const auto follow = [this](auto signal, auto handler) {
        connect(this, signal, this, handler);
    };
    follow(&KovalinStickerPicker::friendUserIdChanged, &KovalinStickerPicker::setFriend);
    follow(&KovalinStickerPicker::searchTermChanged, &KovalinStickerPicker::search);
    follow(&KovalinStickerPicker::searchModeChanged, &KovalinStickerPicker::search);
    follow(&KovalinStickerPicker::safeAreaChanged, &KovalinStickerPicker::setSafeArea);
    follow(&KovalinStickerPicker::showSearchBarChanged, &KovalinStickerPicker::makeLater);
    follow(&KovalinStickerPicker::showSearchPillsChanged, &KovalinStickerPicker::makeLater);
    follow(&KovalinStickerPicker::themeChanged, &KovalinStickerPicker::makeLater);
}

KovalinStickerPicker::~KovalinStickerPicker()
{
    end();
}

void KovalinStickerPicker::setTheme(KovalinTheme* theme)
{
    if (theme == _theme) {
        return;
    }
    if (_theme) {
        disconnect(_theme, &KovalinTheme::changed, this, &KovalinStickerPicker::makeLater);
    }
    _theme = theme;
    if (_theme) {
        connect(_theme, &KovalinTheme::changed, this, &KovalinStickerPicker::makeLater);
    }
    Q_EMIT themeChanged();
}

// The picker

void KovalinStickerPicker::componentComplete()
{
    QQuickItem::componentComplete();
    makeLater();
}

void KovalinStickerPicker::makeLater()
{
    if (!isComponentComplete() || std::exchange(_isMakingDue, true)) {
        return;
    }
    dispatchMain([self = QPointer(this)] {
        if (self) {
            self->_isMakingDue = false;
            self->make();
        }
    });
}

void KovalinStickerPicker::make()
{
    end();
    _controller = QXSDKKovalinStickerPickerViewController::create(config());
    _delegate = std::make_shared<Delegate>(*this);
    _controller->setDelegate(_delegate);
    _icons.forEach([this](QXSDKKovalinIconView& icon) {
        _controller->attachKovalinIcon(std::static_pointer_cast<QXSDKKovalinIconView>(icon.shared_from_this()));
    });
    setFriend();
    if (!_searchTerm.isEmpty()) {
        search();
    }

    QQuickItem* const view = _controller->view();
    view->setZ(belowTheHostsChildren);
    view->setParentItem(this);
    view->setSize(size());
    setSafeArea();
    updateAppearance();
}

void KovalinStickerPicker::end()
{
    if (!_controller) {
        return;
    }
    _delegate->end();
    if (std::exchange(_hasAppeared, false)) {
        _controller->viewWillDisappear();
    }
    _controller.reset();
}

QXSDKKovalinStickerPickerConfigPtr KovalinStickerPicker::config() const
{
    return QXSDKKovalinStickerPickerConfigBuilder()
        .withShowSearchBar(_showSearchBar)
        .withShowSearchPills(_showSearchPills)
        .withTheme(_theme ? _theme->theme() : nullptr)
        .build();
}

// What it is told

void KovalinStickerPicker::setFriend()
{
    if (_controller) {
        _controller->setFriendUserId(_friendUserId);
    }
}

void KovalinStickerPicker::search()
{
    if (_controller) {
        _controller->setSearchTerm(_searchTerm, static_cast<QXSDKKovalinSearchMode>(_searchMode));
    }
}

void KovalinStickerPicker::setSafeArea()
{
    if (_controller) {
        _controller->setSafeAreaInsets({_safeAreaLeft, _safeAreaTop, _safeAreaRight, _safeAreaBottom});
    }
}

void KovalinStickerPicker::attachIcon(const std::shared_ptr<QXSDKKovalinIconView>& icon)
{
    if (!icon) {
        return;
    }
    _icons.add(icon);
    if (_controller) {
        _controller->attachKovalinIcon(icon);
    }
}

void KovalinStickerPicker::removeIcon(const std::shared_ptr<QXSDKKovalinIconView>& icon)
{
    if (!icon) {
        return;
    }
    _icons.remove(icon);
    if (_controller) {
        _controller->removeKovalinIcon(icon);
    }
}

// Where it is

void KovalinStickerPicker::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (_controller) {
        _controller->view()->setSize(newGeometry.size());
    }
}

void KovalinStickerPicker::itemChange(ItemChange change, const ItemChangeData& data)
{
    // The tree is half built in here: only notes are taken.
    if (change == ItemSceneChange) {
        watchWindow(data.window);
    }
    if (change == ItemSceneChange || change == ItemVisibleHasChanged) {
        updateAppearanceLater();
    }
    QQuickItem::itemChange(change, data);
}

void KovalinStickerPicker::watchWindow(QQuickWindow* window)
{
    if (_watchedWindow) {
        disconnect(_watchedWindow, &QWindow::visibilityChanged, this, &KovalinStickerPicker::updateAppearanceLater);
    }
    _watchedWindow = window;
    if (window) {
        connect(window, &QWindow::visibilityChanged, this, &KovalinStickerPicker::updateAppearanceLater);
    }
}

void KovalinStickerPicker::updateAppearanceLater()
{
    if (std::exchange(_isAppearanceDue, true)) {
        return;
    }
    dispatchMain([self = QPointer(this)] {
        if (self) {
            self->_isAppearanceDue = false;
            self->updateAppearance();
        }
    });
}

void KovalinStickerPicker::updateAppearance()
{
    const bool hasAppeared = _controller && isVisible() && isOnScreen(window());
    if (std::exchange(_hasAppeared, hasAppeared) == hasAppeared) {
        return;
    }
    if (hasAppeared) {
        _controller->viewWillAppear();
    } else {
        _controller->viewWillDisappear();
    }
}
