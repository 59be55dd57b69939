#pragma once

#include "search/QXSDKKovalinSearchEngine.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <cstdint>
#include <functional>
#include <memory>

class QXNativeLearnedSearchClassifier;

/// The search engine that works from a learned model: the model's predictions, as far as they are stickers of the packs, and its
/// suggestions as tags, with one more that stands for the typed text as it is.
///
/// Thread: packs, and free text searches, are worked on by a serial queue of the engine's own. All else may be called on any
/// thread and works on the caller's.
///
/// Lifetime: the engine may be destroyed at any time, on any thread. Completions still outstanding then run all the same, a
/// search's with empty lists unless it was under way.
class QXSDKKovalinLearnedSearchEngine final : public QXSDKKovalinSearchEngine {
public:
    using ComicIdToSticker = QHash<QString, KovalinStickerPtr>;
    using LoadCallback = std::function<void(bool isInitialized)>;

    QXSDKKovalinLearnedSearchEngine();

    /// `classifier` may be null: the engine waits for loadModel() then.
    explicit QXSDKKovalinLearnedSearchEngine(const std::shared_ptr<QXNativeLearnedSearchClassifier>& classifier);
    ~QXSDKKovalinLearnedSearchEngine() override;

    QXSDKKovalinLearnedSearchEngine(const QXSDKKovalinLearnedSearchEngine&) = delete;
    QXSDKKovalinLearnedSearchEngine& operator=(const QXSDKKovalinLearnedSearchEngine&) = delete;

    /// Has the model delivered and makes a classifier of it. The callback, which must not be empty, runs exactly once, on the
    /// main queue: true if a model came and the engine can answer at that moment. False also where just the packs are still
    /// missing; the engine can answer once they come.
    void loadModel(LoadCallback callback);

    /// The stickers of the packs by their comic id; null until the first packs. Of several with one id the last one.
    [[nodiscard]] std::shared_ptr<const ComicIdToSticker> comicIdToSticker() const;

    // The engine's contract.

    /// No effect: this engine has nothing to tell.
    void addObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer) override;
    void removeObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer) override;

    void processPacks(const KovalinPackList& packs, ProcessCompletion completion) override;

    /// Before the engine can answer, the completion runs at once, on the calling thread, with empty lists.
    void search(const QString& text, const QXSDKKovalinSearchResultTypes& resultTypes,
                SearchCompletion completion) override;

    /// The stickers that the model predicts for the tag, computed on the caller's thread.
    [[nodiscard]] KovalinStickerList
    searchWithExactMatch(const QString& tag, const QXSDKKovalinSearchResultTypes& resultTypes) const override;

    /// Whether both a usable model and packs are there. Once true, true ever after.
    [[nodiscard]] bool isInitialized() const override;

private:
    // Apart from the engine, so that jobs can outlive it.
    class State;
    std::shared_ptr<State> _state;
};
