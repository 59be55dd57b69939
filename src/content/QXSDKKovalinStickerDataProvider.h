#pragma once

#include "kits/core/QXSDKError.h"
#include "kits/login/QXSDKLoginStatusObserver.h"
#include "platform/foundation/SharedSlot.h"
#include "platform/foundation/SharedWeakSet.h"
#include "search/KovalinPack.h"
#include "search/QXSDKKovalinDataUpdateObserver.h"

#include <QtCore/QStringList>

#include <atomic>
#include <memory>
#include <optional>

class QXSDKKovalinPacksArchive;

enum class QXSDKKovalinDataProviderState : quint64 {
    Uninitialized = 0,   ///< Nothing is known yet, and no archive was seen.
    NoContent = 1,       ///< No packs in memory; content may be loaded.
    ArchivedContent = 2, ///< Packs that aren't known to be current.
    FreshContent = 3,    ///< Packs fetched since the application came to the front.
    LoadingArchive = 4,  ///< The archive is being read.
    LoadingRemote = 5,   ///< The backend is being asked.
    LoggedOut = 6,       ///< No account, or linking one failed.
};

/// A shared list whose identity counts; null where nothing is known.
using KovalinStickerListPtr = std::shared_ptr<const KovalinStickerList>;

/// Owns the current packs and what follows from them. Decides whether the archive or the backend brings them, and tells
/// observers.
///
/// Any thread. Observers are held weakly and are called on the main thread or on the archive's queue, while the state still is
/// the old one.
class QXSDKKovalinStickerDataProvider final : public QXSDKLoginStatusObserver,
                                              public std::enable_shared_from_this<QXSDKKovalinStickerDataProvider> {
public:
    using State = QXSDKKovalinDataProviderState;

    /// The instance of the process, made on first use and never destroyed.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinStickerDataProvider> shared();

    /// A provider over an archive, told of resignations and of the login status.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinStickerDataProvider>
    create(const std::shared_ptr<QXSDKKovalinPacksArchive>& archive);
    ~QXSDKKovalinStickerDataProvider() override;
    Q_DISABLE_COPY_MOVE(QXSDKKovalinStickerDataProvider)

    // Loading. Observers are told of the outcome.

    /// Brings content from memory or from the archive; nothing while something is loading, without an account, and at the start
    /// without an archive.
    void loadContentFromArchivedPacks();

    /// Brings content from the backend; nothing while it is being asked, without an account, and while packs are fresh.
    void loadContentForLoggedInState();

    /// There is no removal: an observer leaves by dying.
    void addDataUpdateObserver(const std::shared_ptr<QXSDKKovalinDataUpdateObserver>& observer);

    // What is there now.

    [[nodiscard]] State state() const;

    /// The current packs; absent without content.
    [[nodiscard]] std::optional<KovalinPackList> packs() const;

    /// The stickers of the last pack named "popular" by its id, and the names of the visible packs. Both outlive the packs: a
    /// screen without content still begins with them.
    [[nodiscard]] KovalinStickerListPtr popularKovalins() const;
    [[nodiscard]] std::optional<QStringList> defaultTags() const;

    /// Takes over packs, and what follows from them if there are any. Tells nobody.
    void setPacks(const std::optional<KovalinPackList>& packs);

    // Events.

    /// What was fresh isn't any more.
    void willResignActive();
    void qxsdkLoginLinkDidSucceed() override;
    void qxsdkLoginLinkDidFail() override;

private:
    /// What was loaded last, of each kind; `packs` are null where there is no content.
    struct Content {
        std::shared_ptr<const KovalinPackList> packs;
        KovalinStickerListPtr popularKovalins;
        std::shared_ptr<const QStringList> defaultTags;
    };
    using ContentPtr = std::shared_ptr<const Content>;

    explicit QXSDKKovalinStickerDataProvider(const std::shared_ptr<QXSDKKovalinPacksArchive>& archive);

    void _loginStateChanged();
    void _archiveDidLoad(const std::optional<KovalinPackList>& packs, State savedState);
    void _fetchDidEnd(const std::optional<KovalinPackList>& packs, const std::optional<QXSDKError>& error,
                      State savedState);
    void _notifyStateChange(State newState, const std::optional<QXSDKError>& error = std::nullopt,
                            const ContentPtr& unlessReplaced = nullptr);
    void _notifyContentDidLoad();
    void _notifyContentLoadDidFailWithError(const QXSDKError& error);
    [[nodiscard]] static ContentPtr _contentAfter(const ContentPtr& former,
                                                  const std::optional<KovalinPackList>& packs);
    [[nodiscard]] std::shared_ptr<const KovalinPackList> _currentPacks() const;
    [[nodiscard]] static QStringList _tagsFromPacks(const KovalinPackList& packs);

    const std::shared_ptr<QXSDKKovalinPacksArchive> _archive;
    kovalin::platform::SharedWeakSet<QXSDKKovalinDataUpdateObserver> _observers;
    std::atomic<State> _state = State::Uninitialized;
    kovalin::platform::SharedSlot<const Content> _content; // replaced whole; null before the first packs
};
