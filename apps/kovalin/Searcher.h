#pragma once

#include "kovalin/SearchOutput.h"
#include "search/KovalinPack.h"
#include "search/QXSDKKovalinSearchResultType.h"

#include <QtCore/QString>

#include <memory>

class QXSDKKovalinLearnedSearchEngine;
class QXSDKKovalinPrefixSearchEngine;
class QXSDKKovalinSearchEngine;

namespace vole::learned_search {
class ModelFileBuffer;
}

namespace kovalin::cli {

/// The library's engines, used as a host uses them: what they do in the background is waited for with the event loop running.
/// But the model is one that is at hand, so none is delivered: no server is asked, and nothing is stored. Main thread only.
class Searcher final {
public:
    enum class Engine { Prefix, Learned, Fusion };

    /// Returns when the engine can answer. `model` is a mapped file that passes verification; null for the prefix engine,
    /// which takes none.
    Searcher(Engine engine, const KovalinPackList& packs,
             const std::shared_ptr<vole::learned_search::ModelFileBuffer>& model);

    /// What a search by text finds; without scores.
    [[nodiscard]] SearchAnswer search(const QString& query, const QXSDKKovalinSearchResultTypes& types) const;

    /// What a search for exactly this tag or title finds, which is stickers alone.
    [[nodiscard]] SearchAnswer searchWithExactMatch(const QString& query,
                                                    const QXSDKKovalinSearchResultTypes& types) const;

    /// Gives each tag that the prefix engine finds for the query its rank and score, and every other none.
    void explain(SearchAnswer& answer, const QXSDKKovalinSearchResultTypes& types) const;

private:
    std::shared_ptr<QXSDKKovalinPrefixSearchEngine> _prefix;   // null when only the learned engine is asked
    std::shared_ptr<QXSDKKovalinLearnedSearchEngine> _learned; // null when only the prefix engine is asked
    std::shared_ptr<QXSDKKovalinSearchEngine> _asked;
};

} // namespace kovalin::cli
