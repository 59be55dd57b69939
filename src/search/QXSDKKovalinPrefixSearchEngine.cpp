#include "search/QXSDKKovalinPrefixSearchEngine.h"

#include "platform/dispatch/LastReference.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/foundation/SharedSlot.h"
#include "platform/foundation/WeakSet.h"
#include "search/PrefixSearchIndex.h"
#include "search/SearchWords.h"

#include <algorithm>
#include <atomic>
#include <utility>

using namespace kovalin::platform;

class QXSDKKovalinPrefixSearchEngine::State final {
public:
    /// Null until the first build has ended. Holding it keeps that index readable while the next is swapped in.
    [[nodiscard]] std::shared_ptr<const PrefixSearchIndex> index() const { return _index.load(); }

    /// On processQueue only, since builds would overtake each other elsewhere.
    void _processPacks(const KovalinPackList& packs)
    {
        processQueue.assertOnQueue();
        _index.store(endingOffTheMainThread(std::make_unique<const PrefixSearchIndex>(packs)));
    }

    SerialQueue processQueue{QStringLiteral("KovalinSearchIndexProcessQueue")};
    WeakSet<QXSDKKovalinSearchEngineObserver> observers; // main thread only
    std::atomic<bool> hasEngine = true;                  // a build under way may keep the state a little longer

private:
    SharedSlot<const PrefixSearchIndex> _index;
};

QXSDKKovalinPrefixSearchEngine::QXSDKKovalinPrefixSearchEngine()
    : _state(std::make_shared<State>())
{
}

QXSDKKovalinPrefixSearchEngine::~QXSDKKovalinPrefixSearchEngine()
{
    _state->hasEngine = false;
}

void QXSDKKovalinPrefixSearchEngine::addObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer)
{
    _state->observers.add(observer);
}

void QXSDKKovalinPrefixSearchEngine::removeObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer)
{
    _state->observers.remove(observer);
}

void QXSDKKovalinPrefixSearchEngine::processPacks(const KovalinPackList& packs, ProcessCompletion completion)
{
    std::weak_ptr<State> weakState = _state;
    _state->processQueue.async([weakState, packs, completion = std::move(completion)] {
        if (const auto state = weakState.lock()) {
            state->_processPacks(packs);
        }
        dispatchMain([weakState, completion] {
            if (const auto state = weakState.lock(); state && state->hasEngine) {
                state->observers.forEach([](auto& observer) { observer.searchEngineDidProcessPacks(); });
            }
            completion();
        });
    });
}

void QXSDKKovalinPrefixSearchEngine::search(const QString& text, const QXSDKKovalinSearchResultTypes& resultTypes,
                                            SearchCompletion completion)
{
    std::weak_ptr<State> weakState = _state;
    _state->processQueue.async([weakState, text, resultTypes, completion = std::move(completion)] {
        PrefixSearchIndex::SearchResult result;
        if (const auto state = weakState.lock()) {
            if (const auto index = state->index()) {
                result = index->search(text, resultTypes);
            }
        }
        dispatchMain([result = std::move(result), completion] { completion(result.stickers, result.tags); });
    });
}

KovalinStickerList
QXSDKKovalinPrefixSearchEngine::searchWithExactMatch(const QString& tag,
                                                     const QXSDKKovalinSearchResultTypes& resultTypes) const
{
    const auto index = _state->index();
    return index ? index->searchWithExactMatch(tag, resultTypes) : KovalinStickerList();
}

bool QXSDKKovalinPrefixSearchEngine::isInitialized() const
{
    return _state->index() != nullptr;
}

QXSDKKovalinEmotion QXSDKKovalinPrefixSearchEngine::emotionForTag(const QString& tag) const
{
    const auto index = _state->index();
    return index ? index->tagToEmotion().value(tag, QXSDKKovalinEmotionUnknown) : QXSDKKovalinEmotionUnknown;
}

KovalinPackPtr QXSDKKovalinPrefixSearchEngine::packForTag(const QString& tag) const
{
    const auto index = _state->index();
    return index ? index->tagToPack().value(tag) : nullptr;
}

QStringList QXSDKKovalinPrefixSearchEngine::tagsForSearchTerm(const QString& text,
                                                              const QXSDKKovalinSearchResultTypes& resultTypes) const
{
    const auto index = _state->index();
    return index ? index->tagsForSearchTerm(text, resultTypes) : QStringList();
}

qint64 QXSDKKovalinPrefixSearchEngine::occurenceRankForTag(const QString& tag) const
{
    const auto index = _state->index();
    if (!index) {
        return 0;
    }
    const auto set = index->tagToKovalins().constFind(tag);
    return index->maxTagOccurrence() - (set == index->tagToKovalins().constEnd() ? 0 : set->count());
}

qint64 QXSDKKovalinPrefixSearchEngine::rankValueForRank(QXSDKKovalinTagRank rank) const
{
    const auto index = _state->index();
    return index ? rank * index->maxTagOccurrence() : 0;
}

QXSDKKovalinTagRank QXSDKKovalinPrefixSearchEngine::rankForTag(const QString& tag, const QStringList& termWords)
{
    const QStringList tagWords = wordsForSearchTerm(tag);
    if (hasExactMatchWithTagWords(tagWords, termWords)) {
        return QXSDKKovalinTagRankExact;
    }
    const bool firstWordsAreEqual =
        !tagWords.isEmpty() && !termWords.isEmpty() && tagWords.first() == termWords.first();
    if (containsExactWordsWithTagWords(tagWords, termWords)) {
        return firstWordsAreEqual ? QXSDKKovalinTagRankWordsLeading : QXSDKKovalinTagRankWords;
    }
    if (prefixMatchesWordsWithTagWords(tagWords, termWords)) {
        return firstWordsAreEqual ? QXSDKKovalinTagRankPrefixLeading : QXSDKKovalinTagRankPrefix;
    }
    return QXSDKKovalinTagRankNone;
}

bool QXSDKKovalinPrefixSearchEngine::hasExactMatchWithTagWords(const QStringList& tagWords,
                                                               const QStringList& termWords)
{
    return tagWords == termWords;
}

bool QXSDKKovalinPrefixSearchEngine::containsExactWordsWithTagWords(const QStringList& tagWords,
                                                                    const QStringList& termWords)
{
    return std::ranges::all_of(termWords, [&tagWords](const QString& termWord) { return tagWords.contains(termWord); });
}

bool QXSDKKovalinPrefixSearchEngine::prefixMatchesWordsWithTagWords(const QStringList& tagWords,
                                                                    const QStringList& termWords)
{
    return std::ranges::all_of(termWords, [&tagWords](const QString& termWord) {
        return std::ranges::any_of(tagWords,
                                   [&termWord](const QString& tagWord) { return tagWord.startsWith(termWord); });
    });
}

QStringList QXSDKKovalinPrefixSearchEngine::wordsForSearchTerm(const QString& text)
{
    return SearchWords(text).toStringList();
}
