#include "kovalin/Searcher.h"

#include "learned_search/generated-src/ModelFileBufferConversion.h"
#include "learned_search/generated-src/QXNativeLearnedSearchClassifier.h"
#include "search/QXSDKKovalinFusionSearchEngine.h"
#include "search/QXSDKKovalinLearnedSearchConfig.h"
#include "search/QXSDKKovalinLearnedSearchEngine.h"
#include "search/QXSDKKovalinPrefixSearchEngine.h"

#include <QtCore/QEventLoop>
#include <QtCore/QSet>

#include <atomic>
#include <functional>
#include <utility>

namespace kovalin::cli {

namespace {

/// A fusion engine that is made while learned search is enabled has its model delivered, in place of the one at hand. So it is
/// enabled afterwards.
class LateLearnedSearch final : public QXSDKKovalinLearnedSearchConfig {
public:
    void enable() { _isEnabled = true; }
    [[nodiscard]] bool isLearnedSearchEnabled() const override { return _isEnabled; }

private:
    std::atomic<bool> _isEnabled = false;
};

/// Calls what is given and returns when `done` has been called, which comes from the main queue.
void waitFor(const std::function<void(std::function<void()> done)>& start)
{
    QEventLoop loop;
    start([&loop] { loop.quit(); });
    loop.exec();
}

void process(QXSDKKovalinSearchEngine& engine, const KovalinPackList& packs)
{
    waitFor([&](std::function<void()> done) { engine.processPacks(packs, std::move(done)); });
}

std::shared_ptr<QXNativeLearnedSearchClassifier>
classifierOn(const std::shared_ptr<vole::learned_search::ModelFileBuffer>& model)
{
    // The very mapping that was looked at: a file that is opened again may have become another one.
    return QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(
        djinni::ModelFileBufferConversion::fromCpp(model));
}

} // namespace

Searcher::Searcher(Engine engine, const KovalinPackList& packs,
                   const std::shared_ptr<vole::learned_search::ModelFileBuffer>& model)
{
    // Each engine is fed by itself, since the fusion engine's completion doesn't wait for the learned one.
    if (engine != Engine::Learned) {
        _prefix = std::make_shared<QXSDKKovalinPrefixSearchEngine>();
        process(*_prefix, packs);
        _asked = _prefix;
    }
    if (engine != Engine::Prefix) {
        _learned = std::make_shared<QXSDKKovalinLearnedSearchEngine>(classifierOn(model));
        process(*_learned, packs);
        _asked = _learned;
    }
    if (engine == Engine::Fusion) {
        const auto config = std::make_shared<LateLearnedSearch>();
        _asked = std::make_shared<QXSDKKovalinFusionSearchEngine>(_prefix, _learned, config);
        config->enable();
    }
}

SearchAnswer Searcher::search(const QString& query, const QXSDKKovalinSearchResultTypes& types) const
{
    SearchAnswer answer{query, {}, {}, {}};
    waitFor([&](const std::function<void()>& done) {
        _asked->search(query, types, [&answer, done](const auto& stickers, const auto& tags) {
            answer.stickers = stickers;
            answer.tags = tags;
            done();
        });
    });
    return answer;
}

SearchAnswer Searcher::searchWithExactMatch(const QString& query, const QXSDKKovalinSearchResultTypes& types) const
{
    return {query, _asked->searchWithExactMatch(query, types), {}, {}};
}

void Searcher::explain(SearchAnswer& answer, const QXSDKKovalinSearchResultTypes& types) const
{
    QSet<QString> ranked;
    if (_prefix) {
        const QStringList tags = _prefix->tagsForSearchTerm(answer.query, types);
        ranked = QSet<QString>(tags.cbegin(), tags.cend());
    }
    const QStringList words = QXSDKKovalinPrefixSearchEngine::wordsForSearchTerm(answer.query);
    answer.scores.reserve(answer.tags.size());
    for (const QString& tag : std::as_const(answer.tags)) {
        if (!ranked.contains(tag)) {
            answer.scores.append(std::nullopt);
            continue;
        }
        const auto rank = QXSDKKovalinPrefixSearchEngine::rankForTag(tag, words);
        answer.scores.append(TagScore{rank, _prefix->rankValueForRank(rank) + _prefix->occurenceRankForTag(tag)});
    }
}

} // namespace kovalin::cli
