#include "picker/manager/QXSDKKovalinViewManager.h"

#include "content/QXSDKKovalinClientRequiredScope.h"
#include "content/QXSDKKovalinFriendState.h"
#include "kits/core/QXSDKDynamicConfigManager.h"
#include "kits/login/QXSDKLoginClient.h"
#include "picker/config/KovalinString.h"
#include "picker/icon/QXSDKKovalinIconView.h"
#include "picker/status/QXSDKKovalinCreateAvatarView.h"
#include "picker/status/QXSDKKovalinErrorView.h"
#include "picker/status/QXSDKKovalinLoginView.h"
#include "picker/status/QXSDKKovalinNoPermissionView.h"
#include "picker/views/PickerLog.h"
#include "picker/visibility/QXSDKKovalinStickerPickerContainerView.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/NotificationCenter.h"
#include "search/QXSDKKovalinFusionSearchEngine.h"
#include "telemetry/QXSDKKovalinViewControllerLogger.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <utility>

using namespace kovalin::platform;

namespace {

using Manager = QXSDKKovalinViewManager;

/// The number of an error that never got to a server.
constexpr int networkErrorCode = 0;
/// The HTTP status of what the account doesn't allow.
constexpr int unauthorizedCode = 401;

/// How a login for the sake of the permission ended, as analytics have it.
enum PermissionStatus : qint32 {
    PermissionGranted = 1,
    PermissionRefused = 2,
    PermissionLoginFailed = 3,
};

bool hasRequiredScope()
{
    return QXSDKLoginClient::shared()->hasAccessToScope(kQXSDKKovalinClientRequiredScope());
}

QString configUpdateText(bool success)
{
    return QStringLiteral("[VoleKit] Dynamic config update status: ") +
           (success ? QStringLiteral("success") : QStringLiteral("failure"));
}

/// A full-size view in both its roles.
template <class FullSizeView>
Manager::CurrentView currentViewOf(const std::shared_ptr<FullSizeView>& view)
{
    return {view, view.get()};
}

} // namespace

QXSDKKovalinViewManagerObserver::~QXSDKKovalinViewManagerObserver() = default;

struct QXSDKKovalinViewManager::State {
    State(const std::shared_ptr<QXSDKKovalinStickerPickerSessionManager>& itsSessionManager,
          const std::shared_ptr<QXSDKKovalinFriendState>& itsFriendState,
          const std::shared_ptr<QXSDKKovalinViewControllerLogger>& itsLogger,
          const QXSDKKovalinStickerPickerConfigPtr& itsConfig, const Sources& itsSources)
        : sessionManager(itsSessionManager)
        , friendState(itsFriendState)
        , logger(itsLogger)
        , config(itsConfig)
        , sources(itsSources)
    {
    }

    const std::shared_ptr<QXSDKKovalinStickerPickerSessionManager> sessionManager; // lives as long as the manager
    const std::shared_ptr<QXSDKKovalinFriendState> friendState;
    const std::shared_ptr<QXSDKKovalinViewControllerLogger> logger;
    const QXSDKKovalinStickerPickerConfigPtr config; // never null
    const Sources sources;

    WeakSet<QXSDKKovalinViewManagerObserver> observers;
    WeakSet<QXSDKKovalinIconView> kovalinIcons;
    std::weak_ptr<View> containerView;
    CurrentView currentView;
    std::optional<QString> searchTerm; // the host's last
    QXSDKKovalinSearchMode searchMode = QXSDKKovalinSearchModeReplace;
};

// Making

Manager::Sources QXSDKKovalinViewManager::Sources::shared()
{
    return {QXSDKKovalinStickerPickerContentView::Sources::shared(), QXSDKKovalinFusionSearchEngine::shared()};
}

std::shared_ptr<Manager>
QXSDKKovalinViewManager::create(const std::shared_ptr<QXSDKKovalinStickerPickerSessionManager>& sessionManager,
                                const std::shared_ptr<QXSDKKovalinFriendState>& friendState,
                                const std::shared_ptr<QXSDKKovalinViewControllerLogger>& logger,
                                const QXSDKKovalinStickerPickerConfigPtr& config, const Sources& sources)
{
    const auto chosen = config ? config : std::make_shared<QXSDKKovalinStickerPickerConfig>();
    const std::shared_ptr<Manager> made(
        new Manager(std::make_unique<State>(sessionManager, friendState, logger, chosen, sources)));
    QXSDKLoginClient::addLoginStatusObserver(made);
    sessionManager->registerWeakObserver(made);
    const auto& dataProvider = sources.contentSources.dataProvider;
    dataProvider->addDataUpdateObserver(made);
    dataProvider->addDataUpdateObserver(sources.searchEngine);
    NotificationCenter::qxsdkCenter().addObserver(made, &QXSDKKovalinViewManager::_loginStateChanged,
                                                  kQXSDKLoginClientStateChangeNotification);
    return made;
}

QXSDKKovalinViewManager::QXSDKKovalinViewManager(std::unique_ptr<State> state)
    : _manager(std::move(state))
{
}

QXSDKKovalinViewManager::~QXSDKKovalinViewManager() = default;

// Loading

void QXSDKKovalinViewManager::loadPacks()
{
    QXSDKDynamicConfigManager::shared()->updateIfNecessary(
        [dataProvider = _manager->sources.contentSources.dataProvider](bool success) {
            KOVALIN_LOG_DEBUG(kovalinPicker, configUpdateText(success));
            dataProvider->loadContentFromArchivedPacks();
        });
}

void QXSDKKovalinViewManager::update()
{
    QXSDKDynamicConfigManager::shared()->updateIfNecessary([self = shared_from_this()](bool success) {
        KOVALIN_LOG_DEBUG(kovalinPicker, configUpdateText(success));
        if (QXSDKLoginClient::shared()->isUserLoggedIn()) {
            self->_manager->sources.contentSources.dataProvider->loadContentForLoggedInState();
            return;
        }
        dispatchMain([self] { self->showLogin(); });
    });
}

void QXSDKKovalinViewManager::_loginStateChanged()
{
    update();
}

// What is shown

void QXSDKKovalinViewManager::showLogin()
{
    if (QXSDKKovalinViewProtocol::typeOf(currentView()) != QXSDKKovalinViewTypeLogin) {
        setCurrentView(currentViewOf(QXSDKKovalinLoginView::create(containerBounds(), _manager->config)));
    }
}

void QXSDKKovalinViewManager::contentDidLoadWithPacks(const std::optional<KovalinPackList>& packs)
{
    dispatchMain([self = shared_from_this(), packs] { self->contentDidLoad(packs.has_value()); });
}

void QXSDKKovalinViewManager::contentDidLoad(bool hasContent)
{
    if (!hasContent) {
        setCurrentView(currentViewOf(makeView<QXSDKKovalinCreateAvatarView>(containerBounds(), _manager->config)));
    } else if (!stickerView()) {
        _showStickerContentView();
    }
}

void QXSDKKovalinViewManager::contentLoadDidFail(const QXSDKError& error)
{
    dispatchMain([self = shared_from_this(), error] { self->loadDidFail(error); });
}

void QXSDKKovalinViewManager::loadDidFail(const QXSDKError& error)
{
    if (error.code() == unauthorizedCode && !hasRequiredScope()) {
        setCurrentView(currentViewOf(QXSDKKovalinNoPermissionView::create(containerBounds(), _manager->config)));
    } else if (stickerView()) {
        KOVALIN_LOG_ERROR(kovalinPicker, QStringLiteral("failed fetching Kovalin sticker packs"));
    } else {
        // The view may outlive this.
        const auto dataProvider = _manager->sources.contentSources.dataProvider;
        setCurrentView(_errorViewForError(error, [dataProvider] { dataProvider->loadContentForLoggedInState(); }));
    }
}

Manager::CurrentView QXSDKKovalinViewManager::_errorViewForError(const QXSDKError& error,
                                                                 std::function<void()> retryBlock) const
{
    const bool isNetworkError = error.code() == networkErrorCode;
    const QString title = isNetworkError ? QStringLiteral("network_error_title") : QStringLiteral("server_error_title");
    const QString message =
        isNetworkError ? QStringLiteral("network_error_message") : QStringLiteral("server_error_message");
    return currentViewOf(makeView<QXSDKKovalinErrorView>(kovalinStringWithKey(title), kovalinStringWithKey(message),
                                                         std::move(retryBlock), _manager->config));
}

void QXSDKKovalinViewManager::_showStickerContentView()
{
    // Observers may let the manager go, or have it show another view.
    const auto self = shared_from_this();
    if (!stickerView()) {
        setCurrentView(currentViewOf(QXSDKKovalinStickerPickerContentView::create(
            containerBounds(), _manager->friendState, _manager->config, _manager->sources.contentSources)));
        const std::optional<QString> searchTerm = _manager->searchTerm;
        if (const auto stickers = stickerView(); stickers && searchTerm) {
            stickers->setSearchTerm(*searchTerm, _manager->searchMode, QXSDKKovalinCategoryHostTerm);
        }
    }
    if (const auto stickers = stickerView()) {
        stickers->showPopularKovalinsAndDefaultTagTiles();
    }
    _manager->friendState->update();
}

// The current view

const QXSDKKovalinStickerPickerConfigPtr& QXSDKKovalinViewManager::config() const
{
    return _manager->config;
}

void QXSDKKovalinViewManager::setContainerView(
    const std::shared_ptr<QXSDKKovalinStickerPickerContainerView>& containerView)
{
    assertOnMainThread();
    _manager->containerView = containerView;
}

QRectF QXSDKKovalinViewManager::containerBounds() const
{
    const auto container = _manager->containerView.lock();
    return container ? container->bounds() : QRectF();
}

QXSDKKovalinViewProtocol* QXSDKKovalinViewManager::currentView() const
{
    return _manager->currentView.protocol;
}

std::shared_ptr<View> QXSDKKovalinViewManager::currentViewItem() const
{
    return _manager->currentView.view;
}

std::shared_ptr<QXSDKKovalinStickerPickerContentView> QXSDKKovalinViewManager::stickerView() const
{
    return std::dynamic_pointer_cast<QXSDKKovalinStickerPickerContentView>(_manager->currentView.view);
}

void QXSDKKovalinViewManager::setCurrentView(const CurrentView& view)
{
    assertOnMainThread();
    // Who hears that the former view loses the focus, or that there is another, may let all of these go.
    const auto self = shared_from_this();
    const CurrentView former = _manager->currentView;
    const CurrentView shown = view;
    if (shown.view == former.view) {
        return;
    }
    if (former.view) {
        former.view->removeFromSuperview();
    }
    _manager->currentView = shown;
    if (shown.view) {
        shown.view->setFrame(containerBounds());
        if (const auto container = _manager->containerView.lock()) {
            container->addSubview(shown.view);
        }
    }
    _notifyCurrentViewChanged(shown);
}

void QXSDKKovalinViewManager::_notifyCurrentViewChanged(const CurrentView& view)
{
    _manager->observers.forEach(
        [&view](QXSDKKovalinViewManagerObserver& observer) { observer.currentViewChanged(view.protocol); });
}

void QXSDKKovalinViewManager::registerWeakObserver(const std::shared_ptr<QXSDKKovalinViewManagerObserver>& observer)
{
    assertOnMainThread();
    _manager->observers.add(observer);
}

void QXSDKKovalinViewManager::deregisterWeakObserver(const std::shared_ptr<QXSDKKovalinViewManagerObserver>& observer)
{
    assertOnMainThread();
    _manager->observers.remove(observer);
}

// A search of the host's

WeakSet<QXSDKKovalinIconView>& QXSDKKovalinViewManager::kovalinIcons()
{
    return _manager->kovalinIcons;
}

void QXSDKKovalinViewManager::setSearchTerm(const QString& searchTerm, QXSDKKovalinSearchMode searchMode)
{
    assertOnMainThread();
    _manager->searchTerm = searchTerm;
    _manager->searchMode = searchMode;
    if (const auto stickers = stickerView()) {
        stickers->setSearchTerm(searchTerm, searchMode, QXSDKKovalinCategoryHostTerm,
                                [weakSelf = weak_from_this(), searchTerm](const KovalinStickerPtr& sticker) {
                                    if (const auto self = weakSelf.lock()) {
                                        self->hostSearchDidEnd(searchTerm, sticker);
                                    }
                                });
    }
}

/// An answer counts if its term is the last one by now, whichever search of it that answers.
void QXSDKKovalinViewManager::hostSearchDidEnd(const QString& searchTerm, const KovalinStickerPtr& sticker)
{
    if (_manager->searchTerm != searchTerm) {
        return;
    }
    const auto& logger = _manager->logger;
    const QXSDKKovalinFriendState& friendState = *_manager->friendState;
    _manager->kovalinIcons.forEach([&](QXSDKKovalinIconView& icon) {
        icon.updateWithKovalinSticker(sticker, friendState, [logger, sticker](bool isChanged) {
            if (isChanged) {
                logger->logPreviewIconChange(sticker);
            }
        });
    });
}

// Events

void QXSDKKovalinViewManager::qxsdkLoginLinkDidSucceed()
{
    if (QXSDKKovalinViewProtocol::typeOf(currentView()) == QXSDKKovalinViewTypeNoPermission) {
        _manager->logger->logPermissionUpdateWithStatus(hasRequiredScope() ? PermissionGranted : PermissionRefused);
        update();
    }
}

void QXSDKKovalinViewManager::qxsdkLoginLinkDidFail()
{
    if (QXSDKKovalinViewProtocol::typeOf(currentView()) == QXSDKKovalinViewTypeNoPermission) {
        _manager->logger->logPermissionUpdateWithStatus(PermissionLoginFailed);
    }
}

void QXSDKKovalinViewManager::sessionDidStart() {}

void QXSDKKovalinViewManager::sessionDidEnd()
{
    if (const auto stickers = stickerView()) {
        if (const auto searchTerms = stickers->popAllSearchSequence(); !searchTerms.isEmpty()) {
            _manager->logger->logSearch(searchTerms);
        }
    }
}
