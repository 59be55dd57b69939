#pragma once

#include "content/ContentTest.h"
#include "content/QXSDKKovalinPacksArchive.h"
#include "kits/core/QXSDKDynamicConfigManager.h"
#include "picker/content/ScriptedSearchEngine.h"
#include "picker/controller/PickerObjects.h"
#include "picker/grid/LoopbackPictures.h"
#include "picker/icon/QXSDKKovalinIconView.h"
#include "picker/visibility/QXSDKKovalinStickerPickerContainerView.h"
#include "picker/visibility/QXSDKKovalinViewVisibilityState.h"
#include "platform/foundation/Application.h"
#include "support/ManualClock.h"
#include "support/QtPrinting.h"
#include "support/RecordingAnalyticsQueue.h"
#include "support/ScriptedLoginClient.h"
#include "support/ViewTest.h"
#include "telemetry/QXSDKKovalinViewControllerLogger.h"
#include "telemetry/WireFields.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kovalin::test {

/// The process's configurations for as long as this lives: none, and refreshed at once.
class InstalledDynamicConfigs final {
public:
    class Configs final : public QXSDKDynamicConfigManager {
    public:
        [[nodiscard]] std::shared_ptr<const QXSDKDynamicConfig> dynamicConfig(const QString&) const override
        {
            return nullptr;
        }
        void updateIfNecessary(UpdateCompletion completion) override
        {
            ++updates;
            completion(true);
        }

        int updates = 0;
    };

    InstalledDynamicConfigs() { QXSDKDynamicConfigManager::setShared(_configs); }
    ~InstalledDynamicConfigs() { QXSDKDynamicConfigManager::setShared(nullptr); }
    InstalledDynamicConfigs(const InstalledDynamicConfigs&) = delete;
    InstalledDynamicConfigs& operator=(const InstalledDynamicConfigs&) = delete;

    [[nodiscard]] const Configs* operator->() const { return _configs.get(); }

private:
    std::shared_ptr<Configs> _configs = std::make_shared<Configs>();
};

/// A full-size view of any type, in place of the product's.
class PlainFullSizeView final : public platform::View, public QXSDKKovalinViewProtocol {
public:
    explicit PlainFullSizeView(QXSDKKovalinViewType type)
        : _type(type)
    {
    }
    [[nodiscard]] QXSDKKovalinViewType type() const override { return _type; }

private:
    const QXSDKKovalinViewType _type;
};

class IgnoringDataObserver final : public QXSDKKovalinDataUpdateObserver {
public:
    void contentDidLoadWithPacks(const std::optional<KovalinPackList>&) override {}
    void contentLoadDidFail(const QXSDKError&) override {}
};

/// Events of the analytics by their number in the outermost message.
enum EventNumber : std::uint32_t {
    OpenEvent = 30,
    CloseEvent = 31,
    ShareEvent = 32,
    SearchEvent = 33,
    LinkTapEvent = 34,
    CreateAvatarTapEvent = 36,
    MountEvent = 73,
};

/// What the objects of a picker need, over content of a test's own: a window of 320 × 402 points, an active application with a
/// linked account, and a clock that stands still. Nothing of it asks the network by itself.
class PickerTest : protected WithLoopbackPictures, public ViewTest {
protected:
    using Container = QXSDKKovalinStickerPickerContainerView;

    static constexpr int width = 320;
    static constexpr int height = 402;

    PickerTest()
    {
        window().resize(width, height);
        root()->setFrame({0, 0, width, height});
        EXPECT_TRUE(waitFor([this] { return window().contentItem()->size() == QSizeF(width, height); }));
        platform::Application::setState(platform::ApplicationState::Active);
    }
    ~PickerTest() override { platform::Application::setState(platform::ApplicationState::Active); }

    static void goTo(platform::ApplicationState state) { platform::Application::setState(state); }
    /// What is told in later turns is told by now.
    static void settle()
    {
        for (int turn = 0; turn < 4; ++turn) {
            drainMainQueue();
        }
    }

    [[nodiscard]] QXSDKKovalinViewManager::Sources sources() const
    {
        return {{engine, engine, provider, pictures.cache}, indexed};
    }
    [[nodiscard]] KovalinStickerPtr sticker(const QString& comicId, const char* path = "/red") const
    {
        auto made = std::make_shared<KovalinSticker>();
        made->setComicId(comicId);
        made->setUrl(pictures.url(path).toString());
        return made;
    }
    [[nodiscard]] std::shared_ptr<QXSDKKovalinIconView> icon(const KovalinStickerPtr& sticker) const
    {
        auto made = QXSDKKovalinIconView::create(pictures.cache);
        made->setSticker(sticker);
        return made;
    }

    static void showView(const PickerObjects& picker, QXSDKKovalinViewType type)
    {
        const auto view = platform::makeView<PlainFullSizeView>(type);
        picker.viewManager->setCurrentView({view, view.get()});
    }

    [[nodiscard]] std::vector<std::uint32_t> eventNumbers() const
    {
        std::vector<std::uint32_t> numbers;
        for (const QByteArray& event : events->events()) {
            numbers.push_back(wireFields(event).at(0).number);
        }
        return numbers;
    }

    ManualClock clock;
    OwnCachesDirectory caches;
    InstalledLoginClient login;
    InstalledAnalyticsQueue events;
    InstalledDynamicConfigs configs;
    std::shared_ptr<ScriptedSearchEngine> engine = std::make_shared<ScriptedSearchEngine>();
    std::shared_ptr<IgnoringDataObserver> indexed = std::make_shared<IgnoringDataObserver>();
    std::shared_ptr<QXSDKKovalinStickerDataProvider> provider =
        QXSDKKovalinStickerDataProvider::create(QXSDKKovalinPacksArchive::create());
};

} // namespace kovalin::test
