#pragma once

#include "search/QXSDKKovalinDataUpdateObserver.h"
#include "search/QXSDKKovalinSearchEngine.h"
#include "search/QXSDKKovalinTagIndex.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

class QXSDKKovalinLearnedSearchConfig;
class QXSDKKovalinLearnedSearchEngine;
class QXSDKKovalinPrefixSearchEngine;

/// The one search engine that the rest of the library sees: it feeds a prefix engine and a learned engine with packs, runs both on
/// each query, waits a bounded time for them, and merges their answers.
///
/// Thread: any, for all operations but those of observers, which are for the main thread. Nothing but searchWithExactMatch()
/// works on the caller's thread, and nothing waits on it.
///
/// Lifetime: may be destroyed at any time, on any thread. Completions still outstanding run all the same.
class QXSDKKovalinFusionSearchEngine final : public QXSDKKovalinSearchEngine,
                                             public QXSDKKovalinTagIndex,
                                             public QXSDKKovalinDataUpdateObserver {
public:
    /// The instance of the process, made on first use, which starts the model's delivery, and never destroyed. Shared for those
    /// who register it as an observer; never null.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinFusionSearchEngine> shared();

    /// With engines and a configuration of its own.
    QXSDKKovalinFusionSearchEngine();

    /// Has the learned engine load its model, if the configuration enables it. None may be null.
    QXSDKKovalinFusionSearchEngine(const std::shared_ptr<QXSDKKovalinPrefixSearchEngine>& prefixSearch,
                                   const std::shared_ptr<QXSDKKovalinLearnedSearchEngine>& learnedSearch,
                                   const std::shared_ptr<QXSDKKovalinLearnedSearchConfig>& config);
    ~QXSDKKovalinFusionSearchEngine() override;

    QXSDKKovalinFusionSearchEngine(const QXSDKKovalinFusionSearchEngine&) = delete;
    QXSDKKovalinFusionSearchEngine& operator=(const QXSDKKovalinFusionSearchEngine&) = delete;

    // The engine's contract. Observers are those of the prefix engine.

    void addObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer) override;
    void removeObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer) override;

    /// The completion waits for the prefix engine alone.
    void processPacks(const KovalinPackList& packs, ProcessCompletion completion) override;

    /// The wait for both engines lasts 2 seconds at the longest, and one query waits after the other. What an engine hasn't found
    /// by then isn't in the answer.
    void search(const QString& text, const QXSDKKovalinSearchResultTypes& resultTypes,
                SearchCompletion completion) override;

    [[nodiscard]] KovalinStickerList
    searchWithExactMatch(const QString& tag, const QXSDKKovalinSearchResultTypes& resultTypes) const override;

    /// Whether any engine that takes part can answer.
    [[nodiscard]] bool isInitialized() const override;

    [[nodiscard]] QXSDKKovalinEmotion emotionForTag(const QString& tag) const override;
    [[nodiscard]] KovalinPackPtr packForTag(const QString& tag) const override;

    // Content. Any thread.

    /// Rebuilds both indexes; absent packs leave them as they are.
    void contentDidLoadWithPacks(const std::optional<KovalinPackList>& packs) override;

    /// No effect.
    void contentLoadDidFail(const QXSDKError& error) override;

    /// The prefix results that equal no learned one, and then all learned results, both in their order.
    [[nodiscard]] static KovalinStickerList
    _fusePrefixAndLearnedSearchResults(const KovalinStickerList& prefixResults,
                                       const KovalinStickerList& learnedResults);
    [[nodiscard]] static QStringList _fusePrefixAndLearnedSearchResults(const QStringList& prefixResults,
                                                                        const QStringList& learnedResults);

private:
    class Search;
    struct State;
    std::shared_ptr<const State> _state;
};
