#pragma once

#include "content/ContentTest.h"
#include "content/QXSDKKovalinFriendState.h"
#include "content/QXSDKKovalinPacksArchive.h"
#include "picker/config/QXSDKKovalinViewType.h"
#include "picker/content/ContentViewParts.h"
#include "picker/content/ScriptedSearchEngine.h"
#include "picker/grid/LoopbackPictures.h"
#include "picker/manager/ManagerObservers.h"
#include "picker/manager/QXSDKKovalinViewManager.h"
#include "picker/manager/ScriptedConfigs.h"
#include "picker/visibility/QXSDKKovalinStickerPickerContainerView.h"
#include "platform/foundation/KeyedArchiver.h"
#include "support/DecodedMessage.h"
#include "support/LogLines.h"
#include "support/ManualAnimationDriver.h"
#include "support/QtPrinting.h"
#include "support/RecordingAnalyticsQueue.h"
#include "support/ViewTest.h"
#include "telemetry/QXSDKKovalinViewControllerLogger.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <vector>

namespace kovalin::test {

/// A view manager whose container lies in a window, with an account that is linked and has granted the scope, over a data
/// provider and an engine of its own. The engine and the backend answer when a test says, the configurations at once. Time
/// passes in `settle` alone.
class ViewManagerTest : protected WithLoopbackPictures, public ViewTest {
protected:
    using Manager = QXSDKKovalinViewManager;

    /// Of the container, in the root view.
    static constexpr QRectF place{10, 20, 320, 402};
    static constexpr QRectF containerBounds{0, 0, 320, 402};

    ViewManagerTest()
    {
        window().resize(340, 440);
        root()->setFrame({0, 0, 340, 440});
        pictures.script("/red", Qt::red);
        container->setFrame(place);
        root()->addSubview(container);
        manager->setContainerView(container);
        manager->registerWeakObserver(observer);
    }

    [[nodiscard]] std::shared_ptr<Manager> newManager(const QXSDKKovalinStickerPickerConfigPtr& config = nullptr) const
    {
        return Manager::create(sessions, friends, logger, config,
                               {{engine, engine, provider, pictures.cache}, searchEngine});
    }

    // Content

    [[nodiscard]] KovalinStickerPtr sticker(const QString& comicId) const
    {
        auto made = std::make_shared<KovalinSticker>();
        made->setComicId(comicId);
        made->setUrl(pictures.url("/red").toString());
        return made;
    }
    [[nodiscard]] KovalinPackList packs(const QString& comicId = QStringLiteral("popular1")) const
    {
        auto popular = std::make_shared<KovalinPack>();
        popular->setPackId(QStringLiteral("popular"));
        popular->setName(QStringLiteral("Popular"));
        popular->setVisible(true);
        popular->setStickers({sticker(comicId)});
        return {popular};
    }
    /// The backend's answer with the same packs.
    void answerPacks(std::size_t request, const QString& comicId = QStringLiteral("popular1"))
    {
        const QJsonObject one{{QStringLiteral("comic_id"), comicId},
                              {QStringLiteral("url"), pictures.url("/red").toString()}};
        const QJsonObject popular{{QStringLiteral("id"), QStringLiteral("popular")},
                                  {QStringLiteral("title"), QStringLiteral("Popular")},
                                  {QStringLiteral("visible"), true},
                                  {QStringLiteral("stickers"), QJsonArray{one}}};
        const QJsonDocument document(QJsonObject{{QStringLiteral("packs"), QJsonArray{popular}}});
        answerKovalin(request, {{QStringLiteral("packs"), QString::fromUtf8(document.toJson())}});
    }
    /// Without packs, the user has no content.
    void answerKovalin(std::size_t request, const QJsonObject& kovalin)
    {
        const QJsonObject me{{QStringLiteral("kovalin"), kovalin}};
        login->request(request).success({{QStringLiteral("data"), QJsonObject{{QStringLiteral("me"), me}}}});
        settle();
    }
    void answerFailure(std::size_t request, int code)
    {
        login->request(request).failure(errorWithStatusCode(code, {}, {}), false);
        settle();
    }

    /// Leaves packs on disk, as of an earlier run.
    void storeArchive(const QString& comicId)
    {
        ASSERT_TRUE(platform::KeyedArchiver::archiveRootObject(
            packs(comicId), caches.path(QStringLiteral("qxsdk-kovalin-packs.plist"))));
    }

    // As if the provider told it

    void tellContent(const std::optional<KovalinPackList>& content)
    {
        manager->contentDidLoadWithPacks(content);
        settle();
    }
    void tellFailure(int code)
    {
        manager->contentLoadDidFail(errorWithStatusCode(code, {}, {}));
        settle();
    }
    void showContent()
    {
        provider->setPacks(packs());
        tellContent(packs());
    }
    void showNoPermission()
    {
        login->hasScope = false;
        tellFailure(401);
    }
    void showLogin()
    {
        login->isLinked = false;
        update();
    }
    void update()
    {
        manager->update();
        settle();
    }

    /// What was told by now has been decided, and what came of that has been drawn.
    void settle()
    {
        for (int turn = 0; turn < 3; ++turn) { // the client's answers take two
            drainMainQueue();
        }
        driver.step(std::chrono::milliseconds(0));
        driver.step(std::chrono::milliseconds(1000));
        drainMainQueue();
        grab();
    }

    // What came of it

    [[nodiscard]] std::shared_ptr<platform::View> current() const { return manager->currentViewItem(); }
    [[nodiscard]] qint32 currentType() const { return QXSDKKovalinViewProtocol::typeOf(manager->currentView()); }
    /// A view of the type is current, and fills the container alone.
    void expectShown(QXSDKKovalinViewType type) const
    {
        EXPECT_EQ(currentType(), type);
        ASSERT_TRUE(current());
        EXPECT_EQ(dynamic_cast<QXSDKKovalinViewProtocol*>(current().get()), manager->currentView());
        EXPECT_EQ(container->subviews(), QList<std::shared_ptr<platform::View>>{current()});
        EXPECT_EQ(current()->frame(), containerBounds);
    }

    /// The events of that name so far.
    [[nodiscard]] std::vector<DecodedMessage> eventsNamed(const std::string& name) const
    {
        std::vector<DecodedMessage> named;
        for (const QByteArray& event : events->events()) {
            if (const auto decoded = decodedEvents(QStringLiteral("ServerEventData"), event)) {
                for (const DecodedMessage& message : decoded->all(name)) {
                    named.push_back(message);
                }
            }
        }
        return named;
    }

    InstalledLoginClient login;
    InstalledConfigs configs;
    InstalledAnalyticsQueue events;
    OwnCachesDirectory caches;
    ManualAnimationDriver driver;
    std::shared_ptr<QXSDKKovalinStickerPickerSessionManager> sessions =
        std::make_shared<QXSDKKovalinStickerPickerSessionManager>();
    std::shared_ptr<QXSDKKovalinViewControllerLogger> logger = QXSDKKovalinViewControllerLogger::create(sessions);
    std::shared_ptr<QXSDKKovalinFriendState> friends = QXSDKKovalinFriendState::create(*sessions);
    std::shared_ptr<QXSDKKovalinPacksArchive> archive = QXSDKKovalinPacksArchive::create();
    std::shared_ptr<QXSDKKovalinStickerDataProvider> provider = QXSDKKovalinStickerDataProvider::create(archive);
    std::shared_ptr<ScriptedSearchEngine> engine = std::make_shared<ScriptedSearchEngine>();
    std::shared_ptr<CountingContentObserver> searchEngine = std::make_shared<CountingContentObserver>();
    std::shared_ptr<RecordingManagerObserver> observer = std::make_shared<RecordingManagerObserver>();
    std::shared_ptr<QXSDKKovalinStickerPickerContainerView> container =
        platform::makeView<QXSDKKovalinStickerPickerContainerView>();
    std::shared_ptr<Manager> manager = newManager();
};

} // namespace kovalin::test
