#include "end_to_end/SearchStart.h"

#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/QXSDKOperationalMetricsQueue.h"
#include "kits/core/default/QXSDKHttpDynamicConfigManager.h"
#include "search/QXSDKKovalinFusionSearchEngine.h"
#include "search/QXSDKKovalinLearnedSearchConfig.h"
#include "search/QXSDKKovalinLearnedSearchEngine.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"
#include "support/WaitFor.h"

#include <atomic>
#include <memory>
#include <stdexcept>

namespace kovalin::test {

namespace {

/// Tells when the model's delivery has ended: the library measures how long it took.
class DeliveryWatch final : public QXSDKOperationalMetricsQueue {
public:
    void addCount(qint64, const QString&) override {}
    void addLatencyFromTime(double, const QString& name) override
    {
        if (name.endsWith(QStringLiteral(":kovalin:search:learned:init"))) {
            hasEnded = true;
        }
    }
    std::atomic<bool> hasEnded = false;
};

KovalinStickerPtr stickerOf(const QString& comicId, const QStringList& tags)
{
    auto sticker = std::make_shared<KovalinSticker>();
    sticker->setComicId(comicId);
    sticker->setUrl(QStringLiteral("https://stickers.example/") + comicId);
    sticker->setTags(tags);
    return sticker;
}

KovalinPackList startPacks()
{
    KovalinStickerList stickers{stickerOf(taggedComic, {startQuery})};
    for (int comic = 1; comic <= startComics; ++comic) {
        stickers.append(stickerOf(QString::number(comic), {}));
    }
    auto pack = std::make_shared<KovalinPack>();
    pack->setPackId(QStringLiteral("all"));
    pack->setVisible(true);
    pack->setStickers(stickers);
    return {pack};
}

void waitUntil(const std::function<bool()>& condition, const char* what)
{
    if (!waitFor(condition)) {
        throw std::runtime_error(what);
    }
}

} // namespace

SearchStart startAndSearch(const QString& baseUrl)
{
    const auto delivery = std::make_shared<DeliveryWatch>();
    QXSDKOperationalMetricsQueue::setSharedInstance(delivery);
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("end-to-end"),
                                 .contentBaseUrl = baseUrl,
                                 .apiBaseUrl = baseUrl + QStringLiteral("/api")});
    const auto configs = std::make_shared<QXSDKHttpDynamicConfigManager>();
    QXSDKDynamicConfigManager::setShared(configs);
    std::atomic<bool> isConfigured = false;
    configs->updateIfNecessary([&isConfigured](bool) { isConfigured = true; });
    waitUntil([&] { return isConfigured.load(); }, "no configuration came");

    const auto learned = std::make_shared<QXSDKKovalinLearnedSearchEngine>();
    QXSDKKovalinFusionSearchEngine engine(std::make_shared<QXSDKKovalinPrefixSearchEngine>(), learned,
                                          std::make_shared<QXSDKKovalinLearnedSearchConfig>());
    bool isIndexed = false;
    engine.processPacks(startPacks(), [&isIndexed] { isIndexed = true; });
    waitUntil([&] { return isIndexed && learned->comicIdToSticker() && delivery->hasEnded; },
              "the engines never came up");

    SearchStart start;
    start.isLearnedEngineReady = learned->isInitialized();
    bool isAnswered = false;
    engine.search(startQuery, {QXSDKKovalinSearchResultTypeSolovalin},
                  [&](const KovalinStickerList& stickers, const QStringList& tags) {
                      for (const auto& sticker : stickers) {
                          start.comicIds.append(sticker->comicId().value_or(QString()));
                      }
                      start.tags = tags;
                      isAnswered = true;
                  });
    waitUntil([&] { return isAnswered; }, "the query was never answered");
    QXSDKDynamicConfigManager::setShared(nullptr);
    QXSDKOperationalMetricsQueue::setSharedInstance(nullptr);
    QXSDKClientSetup::setShared({});
    return start;
}

} // namespace kovalin::test
