#pragma once

#include "kits/login/QXSDKLoginStatusObserver.h"
#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/config/QXSDKKovalinViewProtocol.h"
#include "picker/content/QXSDKKovalinSearchMode.h"
#include "picker/content/QXSDKKovalinStickerPickerContentView.h"
#include "picker/manager/QXSDKKovalinViewManagerObserver.h"
#include "platform/foundation/WeakSet.h"
#include "platform/ui/View.h"
#include "search/QXSDKKovalinDataUpdateObserver.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManagerObserver.h"

#include <QtCore/QRectF>
#include <QtCore/QString>

#include <functional>
#include <memory>
#include <optional>

class QXSDKKovalinFriendState;
class QXSDKKovalinIconView;
class QXSDKKovalinStickerPickerContainerView;
class QXSDKKovalinStickerPickerSessionManager;
class QXSDKKovalinViewControllerLogger;

/// Decides which full-size view fills a picker, places it in the container, and hands a search term of the host's to the
/// content view and to the icons. One for each picker.
///
/// Main thread only, but for what the data provider tells, which may come on any thread. Held weakly by what it observes; an
/// `update` and what the provider told hold it until they are decided, so the last reference may go on any thread.
class QXSDKKovalinViewManager final : public QXSDKLoginStatusObserver,
                                      public QXSDKKovalinStickerPickerSessionManagerObserver,
                                      public QXSDKKovalinDataUpdateObserver,
                                      public std::enable_shared_from_this<QXSDKKovalinViewManager> {
public:
    /// A view that the manager may show: a full-size view and the same object as what says its type; both or neither null.
    struct CurrentView {
        std::shared_ptr<kovalin::platform::View> view;
        QXSDKKovalinViewProtocol* protocol = nullptr;
    };

    /// Where content comes from, and who is told of it beside the manager; never null.
    struct Sources {
        /// For content views; the manager loads from their data provider.
        QXSDKKovalinStickerPickerContentView::Sources contentSources;
        std::shared_ptr<QXSDKKovalinDataUpdateObserver> searchEngine;

        /// Those of the process: what content views use, and the fusion engine.
        [[nodiscard]] static Sources shared();
    };

    /// A manager without a view, told of logins, of the session manager's sessions and of the data provider's content; it
    /// also has the search engine told of that content. None is null, but for `config`, which is the default one then.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinViewManager>
    create(const std::shared_ptr<QXSDKKovalinStickerPickerSessionManager>& sessionManager,
           const std::shared_ptr<QXSDKKovalinFriendState>& friendState,
           const std::shared_ptr<QXSDKKovalinViewControllerLogger>& logger,
           const QXSDKKovalinStickerPickerConfigPtr& config, const Sources& sources = Sources::shared());
    ~QXSDKKovalinViewManager() override;
    Q_DISABLE_COPY_MOVE(QXSDKKovalinViewManager)

    // Loading. What comes of it is decided when it is told.

    /// Has the dynamic configuration refreshed where that is due, and the archived content loaded then, whatever came of it.
    void loadPacks();
    /// Has the dynamic configuration refreshed where that is due, and decides by the login state then.
    void update();

    // Observers, held weakly. Told at once, in no defined order.

    void registerWeakObserver(const std::shared_ptr<QXSDKKovalinViewManagerObserver>& observer);
    void deregisterWeakObserver(const std::shared_ptr<QXSDKKovalinViewManagerObserver>& observer);

    /// A search of the host's, remembered for a content view that comes later. The icons are given what is found, if the
    /// term is still the last one by then.
    void setSearchTerm(const QString& searchTerm, QXSDKKovalinSearchMode searchMode);

    // The views

    /// Never null.
    [[nodiscard]] const QXSDKKovalinStickerPickerConfigPtr& config() const;
    /// Held weakly; null for none. Views that become current later lie in it.
    void setContainerView(const std::shared_ptr<QXSDKKovalinStickerPickerContainerView>& containerView);
    /// Null before the first decision.
    [[nodiscard]] QXSDKKovalinViewProtocol* currentView() const;
    /// The same as an item.
    [[nodiscard]] std::shared_ptr<kovalin::platform::View> currentViewItem() const;
    /// Null while another view is current.
    [[nodiscard]] std::shared_ptr<QXSDKKovalinStickerPickerContentView> stickerView() const;
    /// Takes the former view out of the container, puts this one in, with its size, and tells the observers. Nothing, if it is
    /// the present one.
    void setCurrentView(const CurrentView& view);
    /// The icons that are given what a search of the host's finds.
    [[nodiscard]] kovalin::platform::WeakSet<QXSDKKovalinIconView>& kovalinIcons();

    // From the data provider. Any thread; they take effect in a later turn of the main thread.

    void contentDidLoadWithPacks(const std::optional<KovalinPackList>& packs) override;
    void contentLoadDidFail(const QXSDKError& error) override;

    // From the login.

    void qxsdkLoginLinkDidSucceed() override;
    void qxsdkLoginLinkDidFail() override;

    // From the session.

    void sessionDidStart() override;
    void sessionDidEnd() override;

private:
    struct State;

    explicit QXSDKKovalinViewManager(std::unique_ptr<State> state);

    void _loginStateChanged();
    void _notifyCurrentViewChanged(const CurrentView& view);
    void _showStickerContentView();
    [[nodiscard]] CurrentView _errorViewForError(const QXSDKError& error, std::function<void()> retryBlock) const;
    void showLogin();
    void contentDidLoad(bool hasContent);
    void loadDidFail(const QXSDKError& error);
    void hostSearchDidEnd(const QString& searchTerm, const KovalinStickerPtr& sticker);
    [[nodiscard]] QRectF containerBounds() const;

    const std::unique_ptr<State> _manager;
};
