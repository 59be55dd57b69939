#include "search/QXSDKKovalinFusionSearchEngine.h"

#include "platform/dispatch/DispatchGroup.h"
#include "platform/dispatch/GlobalQueue.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/foundation/Clock.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/SharedSlot.h"
#include "search/FusedResults.h"
#include "search/QXSDKKovalinLearnedSearchConfig.h"
#include "search/QXSDKKovalinLearnedSearchEngine.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"
#include "search/SearchLog.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <chrono>
#include <utility>

using namespace kovalin::platform;

namespace {

constexpr std::chrono::nanoseconds longestWait = std::chrono::seconds(2);

template <typename Equals, typename Element>
QList<Element> fuse(const QList<Element>& prefixResults, const QList<Element>& learnedResults)
{
    if (learnedResults.isEmpty()) {
        return prefixResults;
    }
    const Equals learned(learnedResults);
    QList<Element> results;
    results.reserve(prefixResults.size() + learnedResults.size());
    for (const Element& result : prefixResults) {
        if (!learned.contains(result)) {
            results.append(result);
        }
    }
    results.append(learnedResults);
    return results;
}

} // namespace

struct QXSDKKovalinFusionSearchEngine::State final {
    std::shared_ptr<QXSDKKovalinPrefixSearchEngine> prefixSearch;
    std::shared_ptr<QXSDKKovalinLearnedSearchEngine> learnedSearch;
    std::shared_ptr<QXSDKKovalinLearnedSearchConfig> config;
    QXSDKKovalinOperationalMetricsLogger& metricsLogger;
    // Labelled as the learned engine's is; the two are separate.
    std::shared_ptr<SerialQueue> queue;
};

/// One query: what the engines have found so far, and the latch that they leave. An engine that comes too late fills a slot that
/// nobody reads any more.
class QXSDKKovalinFusionSearchEngine::Search final {
public:
    /// Has the engine answer into its slot; the engine lives until it has been asked.
    void ask(const std::shared_ptr<QXSDKKovalinSearchEngine>& engine, const QString& text,
             const QXSDKKovalinSearchResultTypes& resultTypes, const std::shared_ptr<Search>& self, bool isLearned)
    {
        _group.enter();
        dispatchGlobal([engine, text, resultTypes, self, isLearned] {
            engine->search(text, resultTypes, [self, isLearned](const auto& stickers, const auto& tags) {
                (isLearned ? self->_learned : self->_prefix)
                    .store(std::make_shared<const Answer>(Answer{stickers, tags}));
                self->_group.leave();
            });
        });
    }

    /// Blocks until all engines that were asked have answered, or too much time has passed. Then it fuses what there is, so that
    /// the main thread has nothing left to do but to look whether it still is all.
    void waitAndFuse()
    {
        static_cast<void>(_group.wait(longestWait));
        fuseAnswers();
    }

    /// Main queue.
    void complete(const SearchCompletion& completion)
    {
        if (_prefix.load() != _fused.prefix || _learned.load() != _fused.learned) {
            fuseAnswers(); // one came at the last moment
        }
        completion(_fused.stickers, _fused.tags);
    }

private:
    struct Answer {
        KovalinStickerList stickers;
        QStringList tags;
    };
    using Slot = SharedSlot<const Answer>;

    struct Fused {
        // What it was made of; null where there was nothing yet.
        std::shared_ptr<const Answer> prefix;
        std::shared_ptr<const Answer> learned;
        KovalinStickerList stickers;
        QStringList tags;
    };

    void fuseAnswers()
    {
        const Answer nothing;
        _fused.prefix = _prefix.load();
        _fused.learned = _learned.load();
        const Answer& prefix = _fused.prefix ? *_fused.prefix : nothing;
        const Answer& learned = _fused.learned ? *_fused.learned : nothing;
        _fused.stickers = _fusePrefixAndLearnedSearchResults(prefix.stickers, learned.stickers);
        _fused.tags = _fusePrefixAndLearnedSearchResults(prefix.tags, learned.tags);
    }

    Slot _prefix;
    Slot _learned;
    DispatchGroup _group;
    Fused _fused; // the fusion queue's until it posts to the main queue, then that one's
};

std::shared_ptr<QXSDKKovalinFusionSearchEngine> QXSDKKovalinFusionSearchEngine::shared()
{
    // Never destroyed, since queues may still run when statics are.
    static const auto& engine =
        *new std::shared_ptr<QXSDKKovalinFusionSearchEngine>(std::make_shared<QXSDKKovalinFusionSearchEngine>());
    return engine;
}

QXSDKKovalinFusionSearchEngine::QXSDKKovalinFusionSearchEngine()
    : QXSDKKovalinFusionSearchEngine(std::make_shared<QXSDKKovalinPrefixSearchEngine>(),
                                     std::make_shared<QXSDKKovalinLearnedSearchEngine>(),
                                     std::make_shared<QXSDKKovalinLearnedSearchConfig>())
{
}

QXSDKKovalinFusionSearchEngine::QXSDKKovalinFusionSearchEngine(
    const std::shared_ptr<QXSDKKovalinPrefixSearchEngine>& prefixSearch,
    const std::shared_ptr<QXSDKKovalinLearnedSearchEngine>& learnedSearch,
    const std::shared_ptr<QXSDKKovalinLearnedSearchConfig>& config)
    : _state(std::make_shared<const State>(
          State{prefixSearch, learnedSearch, config, QXSDKKovalinOperationalMetricsLogger::shared(),
                std::make_shared<SerialQueue>(QStringLiteral("com.vole.connect.QXSDKKovalinLearnedSearchEngine"))}))
{
    const double start = currentTimeSeconds();
    if (!config->isLearnedSearchEnabled()) {
        KOVALIN_LOG_DEBUG(kovalinSearch, QStringLiteral("Learned search disabled"));
        return;
    }
    learnedSearch->loadModel([start, &metrics = _state->metricsLogger](bool isInitialized) {
        metrics.addLatencyFromTime(start, QStringLiteral("search:learned:init"));
        if (!isInitialized) {
            metrics.addCount(1, QStringLiteral("search:learned:init:failure"));
        }
        KOVALIN_LOG_DEBUG(kovalinSearch,
                          QStringLiteral("Learned search initialization status = %1").arg(isInitialized ? 1 : 0));
    });
}

QXSDKKovalinFusionSearchEngine::~QXSDKKovalinFusionSearchEngine() = default;

void QXSDKKovalinFusionSearchEngine::addObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer)
{
    _state->prefixSearch->addObserver(observer);
}

void QXSDKKovalinFusionSearchEngine::removeObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer)
{
    _state->prefixSearch->removeObserver(observer);
}

void QXSDKKovalinFusionSearchEngine::processPacks(const KovalinPackList& packs, ProcessCompletion completion)
{
    const double start = currentTimeSeconds();
    auto& metrics = _state->metricsLogger;
    _state->prefixSearch->processPacks(packs, [start, &metrics, completion = std::move(completion)] {
        metrics.addLatencyFromTime(start, QStringLiteral("search:indexing"));
        completion();
    });
    if (_state->config->isLearnedSearchEnabled()) {
        _state->learnedSearch->processPacks(packs, [] {});
    }
}

void QXSDKKovalinFusionSearchEngine::search(const QString& text, const QXSDKKovalinSearchResultTypes& resultTypes,
                                            SearchCompletion completion)
{
    auto search = std::make_shared<Search>();
    search->ask(_state->prefixSearch, text, resultTypes, search, false);
    if (_state->config->isLearnedSearchEnabled()) {
        search->ask(_state->learnedSearch, text, resultTypes, search, true);
    }
    _state->queue->async([search = std::move(search), completion = std::move(completion)]() mutable {
        search->waitAndFuse();
        dispatchMain([search = std::move(search), completion = std::move(completion)]() mutable {
            search->complete(completion);
            // Thousands of references may go with it.
            dispatchGlobal([search = std::move(search)] {});
        });
    });
}

KovalinStickerList
QXSDKKovalinFusionSearchEngine::searchWithExactMatch(const QString& tag,
                                                     const QXSDKKovalinSearchResultTypes& resultTypes) const
{
    const auto prefixResults = _state->prefixSearch->searchWithExactMatch(tag, resultTypes);
    if (!_state->config->isLearnedSearchEnabled()) {
        return prefixResults;
    }
    return _fusePrefixAndLearnedSearchResults(prefixResults,
                                              _state->learnedSearch->searchWithExactMatch(tag, resultTypes));
}

bool QXSDKKovalinFusionSearchEngine::isInitialized() const
{
    return _state->prefixSearch->isInitialized() ||
           (_state->config->isLearnedSearchEnabled() && _state->learnedSearch->isInitialized());
}

QXSDKKovalinEmotion QXSDKKovalinFusionSearchEngine::emotionForTag(const QString& tag) const
{
    return _state->prefixSearch->emotionForTag(tag);
}

KovalinPackPtr QXSDKKovalinFusionSearchEngine::packForTag(const QString& tag) const
{
    return _state->prefixSearch->packForTag(tag);
}

void QXSDKKovalinFusionSearchEngine::contentDidLoadWithPacks(const std::optional<KovalinPackList>& packs)
{
    if (packs) {
        processPacks(*packs, [] {});
    }
}

void QXSDKKovalinFusionSearchEngine::contentLoadDidFail(const QXSDKError&) {}

KovalinStickerList
QXSDKKovalinFusionSearchEngine::_fusePrefixAndLearnedSearchResults(const KovalinStickerList& prefixResults,
                                                                   const KovalinStickerList& learnedResults)
{
    return fuse<EqualStickers>(prefixResults, learnedResults);
}

QStringList QXSDKKovalinFusionSearchEngine::_fusePrefixAndLearnedSearchResults(const QStringList& prefixResults,
                                                                               const QStringList& learnedResults)
{
    return fuse<EqualTexts>(prefixResults, learnedResults);
}
