// From a login to pictures on the screen's side of the network, with the example content.
#include "content/QXSDKKovalinCache.h"
#include "content/QXSDKKovalinFriendState.h"
#include "content/QXSDKKovalinPacksArchive.h"
#include "content/QXSDKKovalinStickerDataProvider.h"
#include "kits/core/QXSDKClientSetup.h"
#include "kits/login/default/QXSDKOAuthLoginClient.h"
#include "kovalin-backend/Backend.h"
#include "platform/foundation/Application.h"
#include "platform/foundation/CachesDirectory.h"
#include "platform/net/UrlSession.h"
#include "platform/store/ImageStore.h"
#include "support/WaitFor.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <QtCore/QTemporaryDir>
#include <QtCore/QUrlQuery>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <mutex>

using namespace kovalin::platform;
using namespace kovalin::test;
using kovalin::backend::AnswerRule;
using kovalin::backend::Backend;
using State = QXSDKKovalinDataProviderState;

namespace {

class Observer final : public QXSDKKovalinDataUpdateObserver {
public:
    void contentDidLoadWithPacks(const std::optional<KovalinPackList>&) override { ++loads; }
    void contentLoadDidFail(const QXSDKError& error) override { lastStatus = error.statusCode; }
    std::atomic<int> loads = 0;
    std::atomic<int> lastStatus = -1;
};

class FriendObserver final : public QXSDKKovalinFriendAvatarObserver {
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

/// A user who approves what the page asks for.
bool approve(const QUrl& url)
{
    QUrl page = url;
    QUrlQuery query(page);
    query.addQueryItem(QStringLiteral("auto"), QStringLiteral("approve"));
    page.setQuery(query);
    UrlSession::shared().dataTask({.url = page}, [](const auto&, const auto&, const auto&) {})->resume();
    return true;
}

class Content : public testing::Test {
protected:
    Content()
    {
        setCachesDirectory(folder.path());
        const QString base = backend.baseUrl().toString();
        QXSDKClientSetup::setShared({.clientId = QStringLiteral("end-to-end"),
                                     .contentBaseUrl = base,
                                     .authenticationBaseUrl = base + QStringLiteral("/accounts"),
                                     .apiBaseUrl = base + QStringLiteral("/api")});
        start();
    }
    ~Content() override
    {
        QXSDKLoginClient::setShared(nullptr);
        QXSDKClientSetup::setShared({});
        setCachesDirectory(previousCaches);
        Application::setState(ApplicationState::Active);
    }

    /// A start of the host, over what earlier ones left.
    void start()
    {
        login =
            std::make_shared<QXSDKOAuthLoginClient>(QXSDKOAuthLoginOptions{.openUrl = approve, .tokenStore = tokens});
        QXSDKLoginClient::setShared(login);
        archive = QXSDKKovalinPacksArchive::create();
        provider = QXSDKKovalinStickerDataProvider::create(archive);
        pictures = QXSDKKovalinCache::create(std::make_shared<ImageStore>(QStringLiteral("pictures"), folder.path()),
                                             QXSDKKovalinOperationalMetricsLogger::shared(), nullptr);
        observer = std::make_shared<Observer>();
        provider->addDataUpdateObserver(observer);
    }
    void logIn()
    {
        bool isThere = false;
        login->loginFromViewController(nullptr, [&isThere](const std::optional<QXSDKError>& error) {
            EXPECT_FALSE(error);
            isThere = true;
        });
        ASSERT_TRUE(waitFor([&isThere] { return isThere; }));
        ASSERT_TRUE(login->isUserLoggedIn());
    }
    void load(State wanted = State::FreshContent)
    {
        provider->loadContentForLoggedInState();
        ASSERT_TRUE(waitFor([&] { return provider->state() == wanted; }));
    }
    /// To the background and back; what is to be written is.
    void resign()
    {
        Application::setState(ApplicationState::Background);
        Application::setState(ApplicationState::Active);
        ASSERT_TRUE(waitFor([this] { return archive->hasPacksToUnarchiveOnDisk(); }));
    }
    /// The picture at an address; null where it can't be had.
    QImage picture(const QString& url)
    {
        std::mutex mutex;
        std::optional<QImage> given;
        pictures->fetchKovalinWithURL(QUrl(url), std::make_shared<const KovalinImageCallback>([&](const QImage& image) {
                                          const std::scoped_lock lock(mutex);
                                          given = image;
                                      }));
        EXPECT_TRUE(waitFor([&] {
            const std::scoped_lock lock(mutex);
            return given.has_value();
        }));
        return given.value_or(QImage());
    }
    [[nodiscard]] KovalinStickerPtr firstSticker(bool isForTwo) const
    {
        for (const auto& pack : provider->packs().value_or(KovalinPackList())) {
            for (const auto& sticker : pack->stickers()) {
                if (sticker->isFriendvalin() == isForTwo) {
                    return sticker;
                }
            }
        }
        return std::make_shared<KovalinSticker>();
    }
    [[nodiscard]] std::ptrdiff_t requestsFor(const char* beginning) const
    {
        return std::ranges::count_if(backend.requests(),
                                     [&](const auto& request) { return request.path.startsWith(beginning); });
    }
    void answer(const char* path, const AnswerRule& rule) { backend.setAnswer({path, rule}); }

    const QString previousCaches = cachesDirectory();
    QTemporaryDir folder;
    Backend backend{{.contentFolder = QStringLiteral(KOVALIN_EXAMPLE_CONTENT)}};
    const std::shared_ptr<QXSDKTokenStore> tokens = QXSDKTokenStore::memory();
    std::shared_ptr<QXSDKOAuthLoginClient> login;
    std::shared_ptr<QXSDKKovalinPacksArchive> archive;
    std::shared_ptr<QXSDKKovalinStickerDataProvider> provider;
    std::shared_ptr<QXSDKKovalinCache> pictures;
    std::shared_ptr<Observer> observer;
};

TEST_F(Content, ComesFromALoginToPacksAndPictures)
{
    logIn();
    load();
    EXPECT_EQ(observer->loads, 1);
    EXPECT_GE(provider->packs()->size(), 10);
    ASSERT_TRUE(provider->popularKovalins());
    EXPECT_FALSE(provider->popularKovalins()->isEmpty());
    EXPECT_GE(provider->defaultTags()->size(), 9);
    const QImage image = picture(firstSticker(false)->url().value());
    EXPECT_EQ(image.size(), QSize(320, 320));
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
}

TEST_F(Content, DrawsAFriendBesideTheUser)
{
    logIn();
    load();
    QXSDKKovalinStickerPickerSessionManager sessions;
    const auto friends = QXSDKKovalinFriendState::create(sessions);
    const auto friendObserver = std::make_shared<FriendObserver>();
    friends->addFriendAvatarObserver(friendObserver);
    friends->setFriendUserIds({QStringLiteral("user-1")}, 0);
    ASSERT_TRUE(waitFor([&] { return friendObserver->friendAvatar.has_value(); }));
    QString url = firstSticker(true)->url().value();
    ASSERT_TRUE(url.contains(QStringLiteral("%s")));
    EXPECT_EQ(picture(url.replace(QStringLiteral("%s"), *friendObserver->friendAvatar)).size(), QSize(320, 320));
}

TEST_F(Content, ShowsTheArchiveAndStoredPicturesAtAStartWithoutABackend)
{
    logIn();
    load();
    const QString url = firstSticker(false)->url().value();
    const QImage before = picture(url);
    const auto packs = provider->packs()->size();
    resign();

    answer("*", AnswerRule{.kind = AnswerRule::Kind::Refuse});
    start();
    ASSERT_TRUE(waitFor([this] { return login->isUserLoggedIn(); })) << "the kept link";
    provider->loadContentFromArchivedPacks();
    ASSERT_TRUE(waitFor([this] { return provider->state() == State::ArchivedContent; }));
    EXPECT_EQ(provider->packs()->size(), packs);
    const auto downloads = requestsFor("/stickers/");
    EXPECT_EQ(picture(url), before);
    EXPECT_EQ(requestsFor("/stickers/"), downloads);
    load(State::ArchivedContent); // fails, and leaves what is there
    ASSERT_TRUE(waitFor([this] { return observer->lastStatus >= 0; }));
    EXPECT_EQ(observer->lastStatus, 0);
    EXPECT_EQ(provider->packs()->size(), packs);
}

TEST_F(Content, ClearsAllThreeStoresAtAnUnlinkAndLoadsAgainAfterALogin)
{
    logIn();
    load();
    const QString url = firstSticker(false)->url().value();
    static_cast<void>(picture(url));
    resign();
    const auto downloads = requestsFor("/stickers/");

    login->unlink();
    ASSERT_TRUE(waitFor([this] { return provider->state() == State::LoggedOut; }));
    EXPECT_FALSE(provider->packs());
    ASSERT_TRUE(waitFor([this] { return !archive->hasPacksToUnarchiveOnDisk(); }));
    EXPECT_FALSE(picture(url).isNull());
    EXPECT_EQ(requestsFor("/stickers/"), downloads + 1) << "the store was empty";

    logIn();
    EXPECT_EQ(provider->state(), State::NoContent);
    load();
    EXPECT_GE(provider->packs()->size(), 10);
}

TEST_F(Content, TellsHowTheBackendFailsAndLoadsOnceItIsBack)
{
    logIn();
    const auto body = [](const char* json) {
        return AnswerRule::withBody(json);
    };
    const std::vector<std::pair<AnswerRule, int>> failures{
        {AnswerRule{.kind = AnswerRule::Kind::Refuse}, 0},
        {AnswerRule{.kind = AnswerRule::Kind::Cut}, 0},
        {AnswerRule::withStatus(403), 403},
        {AnswerRule::withStatus(500), 500},
        {AnswerRule{.kind = AnswerRule::Kind::Garbage}, 500},
        {body(R"({"data":null})"), 500},
        {body(R"({"data":{"me":null}})"), 500},
        {body(R"({"data":{"me":{"kovalin":{"packs":"no json"}}}})"), 500},
        {body(R"({"data":{"me":{"kovalin":{"packs":"{\"packs\":[]}"}}},"errors":[{"errorType":"ValidationError"}]})"),
         401}};
    for (const auto& [rule, status] : failures) {
        observer->lastStatus = -1;
        answer("/api/graphql", rule);
        provider->loadContentForLoggedInState();
        ASSERT_TRUE(waitFor([this] { return observer->lastStatus >= 0; }));
        EXPECT_EQ(observer->lastStatus, status);
        EXPECT_EQ(provider->state(), State::Uninitialized);
    }
    answer("/api/graphql", AnswerRule::delayed(std::chrono::milliseconds(20)));
    load();
    EXPECT_GE(provider->packs()->size(), 10);
}

TEST_F(Content, GivesNoPictureWhereThatFailsAndGetsItAfterwards)
{
    logIn();
    load();
    const QString url = firstSticker(false)->url().value();
    for (const auto kind : {AnswerRule::Kind::Refuse, AnswerRule::Kind::Cut, AnswerRule::Kind::Garbage}) {
        answer("/stickers/*", AnswerRule{.kind = kind});
        EXPECT_TRUE(picture(url).isNull());
    }
    answer("/stickers/*", AnswerRule::withStatus(404));
    EXPECT_TRUE(picture(url).isNull());
    answer("/stickers/*", {});
    EXPECT_FALSE(picture(url).isNull());
}

} // namespace
