#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "search/KovalinPack.h"
#include "search/KovalinSticker.h"
#include "search/QXSDKKovalinSearchResultType.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <memory>

/// Told when an engine's answers may have changed.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinSearchEngineObserver {
public:
    virtual ~QXSDKKovalinSearchEngineObserver();

    /// Called on the main queue after an index was rebuilt.
    virtual void searchEngineDidProcessPacks() = 0;
};

/// What every search engine offers. A search never reports an error: what can't be answered is an empty list.
///
/// Completions run exactly once as long as there is an application object; those outstanding when it dies are dropped.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinSearchEngine {
public:
    using ProcessCompletion = std::function<void()>;
    using SearchCompletion = std::function<void(const KovalinStickerList& stickers, const QStringList& tags)>;

    virtual ~QXSDKKovalinSearchEngine();

    /// Registers an observer, which is held weakly and needn't be removed before it dies. Main thread.
    virtual void addObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer) = 0;

    /// Takes an observer out; one that is unknown is ignored. Main thread.
    virtual void removeObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer) = 0;

    /// Rebuilds the index from nothing but these packs. Any thread; returns at once. The completion, which must not be
    /// empty, runs exactly once, on the main queue, after the observers were told.
    virtual void processPacks(const KovalinPackList& packs, ProcessCompletion completion) = 0;

    /// Searches by free text. Any thread; returns at once. The completion runs exactly once, on the main queue unless an
    /// engine says otherwise, with the stickers and the suggested tags, both best first.
    virtual void search(const QString& text, const QXSDKKovalinSearchResultTypes& resultTypes,
                        SearchCompletion completion) = 0;

    /// The stickers of exactly this tag, at once. Any thread.
    [[nodiscard]] virtual KovalinStickerList
    searchWithExactMatch(const QString& tag, const QXSDKKovalinSearchResultTypes& resultTypes) const = 0;

    /// Whether the engine can answer. Any thread.
    [[nodiscard]] virtual bool isInitialized() const = 0;
};
