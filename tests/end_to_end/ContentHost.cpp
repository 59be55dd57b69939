#include "end_to_end/ContentHost.h"

#include "kits/core/QXSDKClientSetup.h"
#include "platform/foundation/Application.h"
#include "platform/store/ImageStore.h"
#include "support/ApproveLogin.h"
#include "support/WaitFor.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <algorithm>
#include <mutex>

using namespace kovalin::platform;

namespace kovalin::test {

ContentHost::ContentHost()
{
    setCachesDirectory(folder.path());
    const QString base = server.baseUrl().toString();
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("end-to-end"),
                                 .contentBaseUrl = base,
                                 .authenticationBaseUrl = base + QStringLiteral("/accounts"),
                                 .apiBaseUrl = base + QStringLiteral("/api")});
    start();
}

ContentHost::~ContentHost()
{
    QXSDKLoginClient::setShared(nullptr);
    QXSDKClientSetup::setShared({});
    setCachesDirectory(previousCaches);
    Application::setState(ApplicationState::Active);
}

void ContentHost::start()
{
    login =
        std::make_shared<QXSDKOAuthLoginClient>(QXSDKOAuthLoginOptions{.openUrl = approveLogin, .tokenStore = tokens});
    QXSDKLoginClient::setShared(login);
    archive = QXSDKKovalinPacksArchive::create();
    provider = QXSDKKovalinStickerDataProvider::create(archive);
    pictures = QXSDKKovalinCache::create(std::make_shared<ImageStore>(QStringLiteral("pictures"), folder.path()),
                                         QXSDKKovalinOperationalMetricsLogger::shared(), nullptr);
    told = std::make_shared<ToldContent>();
    provider->addDataUpdateObserver(told);
    friends = QXSDKKovalinFriendState::create(sessions);
    toldFriend = std::make_shared<ToldFriend>();
    friends->addFriendAvatarObserver(toldFriend);
}

std::optional<int> ContentHost::tryToLogIn()
{
    bool isThere = false;
    std::optional<int> status;
    login->loginFromViewController(nullptr, [&](const std::optional<QXSDKError>& error) {
        isThere = true;
        status = error ? std::optional(error->statusCode) : std::nullopt;
    });
    EXPECT_TRUE(waitFor([&isThere] { return isThere; }));
    return status;
}

void ContentHost::logIn()
{
    ASSERT_EQ(tryToLogIn(), std::nullopt);
    ASSERT_TRUE(login->isUserLoggedIn());
}

void ContentHost::load(State wanted)
{
    provider->loadContentForLoggedInState();
    ASSERT_TRUE(waitFor([&] { return provider->state() == wanted; }));
}

int ContentHost::failToLoad()
{
    told->lastStatus = -1;
    provider->loadContentForLoggedInState();
    EXPECT_TRUE(waitFor([this] { return told->lastStatus >= 0; }));
    return told->lastStatus;
}

void ContentHost::resign()
{
    Application::setState(ApplicationState::Background);
    Application::setState(ApplicationState::Active);
    ASSERT_TRUE(waitFor([this] { return archive->hasPacksToUnarchiveOnDisk(); }));
}

QImage ContentHost::picture(const QString& url)
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

KovalinStickerPtr ContentHost::firstSticker(bool isForTwo) const
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

std::ptrdiff_t ContentHost::requestsFor(const char* beginning) const
{
    return std::ranges::count_if(server.requests(),
                                 [&](const auto& request) { return request.path.startsWith(beginning); });
}

} // namespace kovalin::test
