#include "content/QXSDKKovalinStickerDataProvider.h"

#include "content/QXSDKKovalinClient.h"
#include "content/QXSDKKovalinPacksArchive.h"
#include "kits/login/QXSDKLoginClient.h"
#include "platform/foundation/Application.h"

#include <algorithm>

using namespace kovalin::platform;

std::shared_ptr<QXSDKKovalinStickerDataProvider> QXSDKKovalinStickerDataProvider::shared()
{
    // Never destroyed, since queues may still run when statics are.
    static const auto& provider =
        *new std::shared_ptr<QXSDKKovalinStickerDataProvider>(create(QXSDKKovalinPacksArchive::shared()));
    return provider;
}

std::shared_ptr<QXSDKKovalinStickerDataProvider>
QXSDKKovalinStickerDataProvider::create(const std::shared_ptr<QXSDKKovalinPacksArchive>& archive)
{
    const std::shared_ptr<QXSDKKovalinStickerDataProvider> provider(new QXSDKKovalinStickerDataProvider(archive));
    QXSDKLoginClient::addLoginStatusObserver(provider);
    NotificationCenter::qxsdkCenter().addObserver(provider, &QXSDKKovalinStickerDataProvider::_loginStateChanged,
                                                  kQXSDKLoginClientStateChangeNotification);
    NotificationCenter::defaultCenter().addObserver(provider, &QXSDKKovalinStickerDataProvider::willResignActive,
                                                    UIApplicationWillResignActiveNotification);
    return provider;
}

QXSDKKovalinStickerDataProvider::QXSDKKovalinStickerDataProvider(
    const std::shared_ptr<QXSDKKovalinPacksArchive>& archive)
    : _archive(archive)
{
}

QXSDKKovalinStickerDataProvider::~QXSDKKovalinStickerDataProvider() = default;

void QXSDKKovalinStickerDataProvider::loadContentFromArchivedPacks()
{
    if (State uninitialized = State::Uninitialized; _state == uninitialized && _archive->hasPacksToUnarchiveOnDisk()) {
        _state.compare_exchange_strong(uninitialized, State::NoContent);
    }
    // What is read is what is left: another thread may begin to load at any moment.
    State savedState = _state;
    do {
        if (savedState == State::LoadingArchive || savedState == State::LoadingRemote ||
            savedState == State::Uninitialized || savedState == State::LoggedOut) {
            return;
        }
        if (_currentPacks()) {
            _notifyContentDidLoad();
            return;
        }
    } while (!_state.compare_exchange_weak(savedState, State::LoadingArchive));
    _archive->unarchivePacksWithCompletion(
        [weakSelf = weak_from_this(), savedState](const std::optional<KovalinPackList>& packs) {
            if (const auto self = weakSelf.lock()) {
                self->_archiveDidLoad(packs, savedState);
            }
        });
}

void QXSDKKovalinStickerDataProvider::_archiveDidLoad(const std::optional<KovalinPackList>& packs, State savedState)
{
    if (!packs) {
        if (_currentPacks()) {
            _notifyContentDidLoad();
        } else {
            _notifyStateChange(State::NoContent);
        }
        return;
    }
    // Fresh packs may land on the main queue at any moment. They stay, and so does their state.
    auto former = _content.load();
    ContentPtr archived;
    do {
        if (former && former->packs) {
            _notifyContentDidLoad();
            return;
        }
        archived = _contentAfter(former, packs);
    } while (!_content.compareExchange(former, archived));
    _notifyStateChange(savedState == State::FreshContent ? State::FreshContent : State::ArchivedContent, std::nullopt,
                       archived);
}

void QXSDKKovalinStickerDataProvider::loadContentForLoggedInState()
{
    State savedState = _state;
    do {
        if (savedState == State::LoadingRemote || savedState == State::LoggedOut ||
            (savedState == State::FreshContent && _currentPacks())) {
            return;
        }
    } while (!_state.compare_exchange_weak(savedState, State::LoadingRemote));
    QXSDKKovalinClient::fetchStickersWithCompletion(
        [weakSelf = weak_from_this(), savedState](const std::optional<KovalinPackList>& packs,
                                                  const std::optional<QXSDKError>& error) {
            if (const auto self = weakSelf.lock()) {
                self->_fetchDidEnd(packs, error, savedState);
            }
        });
}

void QXSDKKovalinStickerDataProvider::_fetchDidEnd(const std::optional<KovalinPackList>& packs,
                                                   const std::optional<QXSDKError>& error, State savedState)
{
    if (!QXSDKLoginClient::shared()->isUserLoggedIn()) {
        _notifyStateChange(State::LoggedOut, error);
    } else if (error) {
        _notifyStateChange(savedState, error);
    } else if (packs) {
        setPacks(packs);
        _notifyStateChange(State::FreshContent);
        _archive->archivePacks(*packs);
    } else {
        _archive->clear();
        setPacks(std::nullopt);
        _notifyStateChange(State::NoContent);
    }
}

void QXSDKKovalinStickerDataProvider::addDataUpdateObserver(
    const std::shared_ptr<QXSDKKovalinDataUpdateObserver>& observer)
{
    _observers.add(observer);
}

QXSDKKovalinDataProviderState QXSDKKovalinStickerDataProvider::state() const
{
    return _state;
}

std::shared_ptr<const KovalinPackList> QXSDKKovalinStickerDataProvider::_currentPacks() const
{
    const auto content = _content.load();
    return content ? content->packs : nullptr;
}

std::optional<KovalinPackList> QXSDKKovalinStickerDataProvider::packs() const
{
    const auto packs = _currentPacks();
    return packs ? std::optional(*packs) : std::nullopt;
}

KovalinStickerListPtr QXSDKKovalinStickerDataProvider::popularKovalins() const
{
    const auto content = _content.load();
    return content ? content->popularKovalins : nullptr;
}

std::optional<QStringList> QXSDKKovalinStickerDataProvider::defaultTags() const
{
    const auto content = _content.load();
    return content && content->defaultTags ? std::optional(*content->defaultTags) : std::nullopt;
}

void QXSDKKovalinStickerDataProvider::setPacks(const std::optional<KovalinPackList>& packs)
{
    auto former = _content.load();
    while (!_content.compareExchange(former, _contentAfter(former, packs))) {
    }
}

QXSDKKovalinStickerDataProvider::ContentPtr
QXSDKKovalinStickerDataProvider::_contentAfter(const ContentPtr& former, const std::optional<KovalinPackList>& packs)
{
    auto content = former ? std::make_shared<Content>(*former) : std::make_shared<Content>();
    content->packs = packs ? std::make_shared<const KovalinPackList>(*packs) : nullptr;
    if (!packs) {
        return content;
    }
    const auto popular = std::ranges::find_if(
        *packs, [](const KovalinPackPtr& pack) { return pack->packId() == QStringLiteral("popular"); });
    if (popular != packs->cend()) {
        content->popularKovalins = std::make_shared<const KovalinStickerList>((*popular)->stickers());
    }
    content->defaultTags = std::make_shared<const QStringList>(_tagsFromPacks(*packs));
    return content;
}

void QXSDKKovalinStickerDataProvider::willResignActive()
{
    State fresh = State::FreshContent;
    _state.compare_exchange_strong(fresh, State::ArchivedContent);
}

void QXSDKKovalinStickerDataProvider::_loginStateChanged()
{
    if (!QXSDKLoginClient::shared()->isUserLoggedIn()) {
        _archive->clear();
        setPacks(std::nullopt);
        _state = State::LoggedOut;
    }
}

void QXSDKKovalinStickerDataProvider::qxsdkLoginLinkDidSucceed()
{
    State loggedOut = State::LoggedOut;
    _state.compare_exchange_strong(loggedOut, _currentPacks() ? State::ArchivedContent : State::NoContent);
}

void QXSDKKovalinStickerDataProvider::qxsdkLoginLinkDidFail()
{
    _state = State::LoggedOut;
}

/// Loading is entered silently, also when a failed fetch goes back to reading the archive. A state that doesn't change is told to
/// nobody, not even an error with it. A state that comes with content isn't taken once that content was replaced.
void QXSDKKovalinStickerDataProvider::_notifyStateChange(State newState, const std::optional<QXSDKError>& error,
                                                         const ContentPtr& unlessReplaced)
{
    if (newState == State::LoadingArchive || newState == State::LoadingRemote) {
        _state = newState;
        return;
    }
    if (newState == _state) {
        return;
    }
    if (error) {
        _notifyContentLoadDidFailWithError(*error);
    } else {
        _notifyContentDidLoad();
    }
    if (!unlessReplaced) {
        _state = newState;
        return;
    }
    State current = _state;
    while (_content.load() == unlessReplaced && !_state.compare_exchange_weak(current, newState)) {
    }
}

void QXSDKKovalinStickerDataProvider::_notifyContentDidLoad()
{
    const auto current = packs();
    _observers.forEach(
        [&current](QXSDKKovalinDataUpdateObserver& observer) { observer.contentDidLoadWithPacks(current); });
}

void QXSDKKovalinStickerDataProvider::_notifyContentLoadDidFailWithError(const QXSDKError& error)
{
    _observers.forEach([&error](QXSDKKovalinDataUpdateObserver& observer) { observer.contentLoadDidFail(error); });
}

/// In the order of the packs, with what repeats; a pack without a name has no tag.
QStringList QXSDKKovalinStickerDataProvider::_tagsFromPacks(const KovalinPackList& packs)
{
    QStringList tags;
    tags.reserve(packs.size());
    for (const KovalinPackPtr& pack : packs) {
        if (const auto& name = pack->name(); name && pack->visible()) {
            tags.append(*name);
        }
    }
    return tags;
}
