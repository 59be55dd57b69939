#pragma once

#include "content/QXSDKKovalinCache.h"
#include "content/QXSDKKovalinFriendState.h"
#include "content/QXSDKKovalinPacksArchive.h"
#include "content/QXSDKKovalinStickerDataProvider.h"
#include "kits/login/default/QXSDKOAuthLoginClient.h"
#include "kovalin-backend/Backend.h"
#include "platform/foundation/CachesDirectory.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>

namespace kovalin::test {

/// What the provider told.
class ToldContent final : public QXSDKKovalinDataUpdateObserver {
public:
    void contentDidLoadWithPacks(const std::optional<KovalinPackList>&) override { ++loads; }
    void contentLoadDidFail(const QXSDKError& error) override { lastStatus = error.statusCode; }
    std::atomic<int> loads = 0;
    std::atomic<int> lastStatus = -1; // until something fails
};

/// What the friend state told last.
class ToldFriend final : public QXSDKKovalinFriendAvatarObserver {
public:
    void kovalinFriendAvatarDidChange(const std::optional<QString>& friendAvatarId,
                                      const QStringList& otherAvatarIds) override
    {
        friendAvatar = friendAvatarId;
        others = otherAvatarIds;
    }
    std::optional<QString> friendAvatar;
    QStringList others;
};

/// A host of the content without views, beside a development server with the example content in the same process. Its user grants
/// all that a login asks for.
class ContentHost : public testing::Test {
protected:
    using State = QXSDKKovalinDataProviderState;

    ContentHost();
    ~ContentHost() override;

    /// A start of the host, over what earlier ones left.
    void start();

    /// The status of the error that a login ended with; absent where it linked an account.
    std::optional<int> tryToLogIn();
    void logIn();

    void load(State wanted = State::FreshContent);

    /// The status of the error that loading ends with.
    int failToLoad();

    /// To the background and back; what is to be written is.
    void resign();

    /// The picture at an address; null where it can't be had.
    QImage picture(const QString& url);

    /// The first sticker of the packs that is for two, or isn't.
    [[nodiscard]] KovalinStickerPtr firstSticker(bool isForTwo) const;

    /// How many requests had a path that begins so.
    [[nodiscard]] std::ptrdiff_t requestsFor(const char* beginning) const;

    void answer(const char* path, const backend::AnswerRule& rule) { server.setAnswer({path, rule}); }

    const QString previousCaches = platform::cachesDirectory();
    QTemporaryDir folder;
    backend::Backend server{{.contentFolder = QStringLiteral(KOVALIN_EXAMPLE_CONTENT)}};
    const std::shared_ptr<QXSDKTokenStore> tokens = QXSDKTokenStore::memory();
    std::shared_ptr<QXSDKOAuthLoginClient> login;
    std::shared_ptr<QXSDKKovalinPacksArchive> archive;
    std::shared_ptr<QXSDKKovalinStickerDataProvider> provider;
    std::shared_ptr<QXSDKKovalinCache> pictures;
    QXSDKKovalinStickerPickerSessionManager sessions;
    std::shared_ptr<QXSDKKovalinFriendState> friends;
    std::shared_ptr<ToldContent> told;
    std::shared_ptr<ToldFriend> toldFriend;
};

} // namespace kovalin::test
