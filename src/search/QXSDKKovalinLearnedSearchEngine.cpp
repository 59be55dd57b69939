#include "search/QXSDKKovalinLearnedSearchEngine.h"

#include "learned_search/generated-src/QXNativeLearnedSearchClassifier.h"
#include "learned_search/generated-src/QXNativeModelFileBuffer.h"
#include "platform/dispatch/LastReference.h"
#include "platform/dispatch/MainQueue.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/PlatformException.h"
#include "platform/foundation/SharedSlot.h"
#include "search/QXSDKKovalinModelManager.h"
#include "search/SearchLog.h"

#include <utility>

using namespace kovalin::platform;

namespace {

constexpr std::int32_t mostPredictions = 1000;
constexpr char16_t leftToRightMark = u'\u200E';

/// The tag that stands for the typed text as it is. The mark keeps it in one piece in a right-to-left row, and can't be seen.
QString catchAllTag(const QString& text)
{
    return QChar(leftToRightMark) + text + QStringLiteral("...");
}

/// What `ask` gives; where the native core fails, nothing, and a line in the log.
template <typename Ask>
auto answerOrNothing(Ask&& ask) -> decltype(ask())
{
    try {
        return ask();
    } catch (const PlatformException& exception) {
        KOVALIN_LOG_ERROR(kovalinSearch, QStringLiteral("The model can't answer: ") + exception.reason());
        return {};
    }
}

} // namespace

class QXSDKKovalinLearnedSearchEngine::State final {
public:
    struct Answer {
        KovalinStickerList stickers;
        QStringList tags;
    };

    explicit State(const std::shared_ptr<QXNativeLearnedSearchClassifier>& classifier)
        : _classifier(classifier)
    {
    }

    void setClassifier(const std::shared_ptr<QXNativeLearnedSearchClassifier>& classifier)
    {
        _classifier.store(classifier);
    }

    [[nodiscard]] bool isInitialized() const
    {
        const auto classifier = _classifier.load();
        return classifier && classifier->modelIsInitialized() && _comicIdToSticker.load();
    }

    [[nodiscard]] std::shared_ptr<const ComicIdToSticker> comicIdToSticker() const { return _comicIdToSticker.load(); }

    void _processPacks(const KovalinPackList& packs)
    {
        queue.assertOnQueue();
        auto map = std::make_unique<ComicIdToSticker>();
        for (const auto& pack : packs) {
            if (!pack) {
                continue;
            }
            for (const auto& sticker : pack->stickers()) {
                const auto comicId = sticker ? sticker->comicId() : std::nullopt;
                if (comicId && !comicId->isEmpty()) {
                    map->insert(*comicId, sticker);
                }
            }
        }
        _comicIdToSticker.store(endingOffTheMainThread(std::move(map)));
        KOVALIN_LOG_DEBUG(kovalinSearch, QStringLiteral("Sticker pack processed in learned search"));
    }

    [[nodiscard]] KovalinStickerList searchWithExactMatch(const QString& tag,
                                                          const QXSDKKovalinSearchResultTypes& resultTypes) const
    {
        return answerOrNothing([&] { return _predict(tag, resultTypes); });
    }

    [[nodiscard]] Answer search(const QString& text, const QXSDKKovalinSearchResultTypes& resultTypes) const
    {
        return answerOrNothing([&] {
            Answer answer;
            answer.stickers = _predict(text, resultTypes);
            answer.tags = _autocompleteTags(text, !answer.stickers.isEmpty());
            return answer;
        });
    }

    SerialQueue queue{QStringLiteral("com.vole.connect.QXSDKKovalinLearnedSearchEngine")};

private:
    [[nodiscard]] KovalinStickerList _predict(const QString& text,
                                              const QXSDKKovalinSearchResultTypes& resultTypes) const
    {
        return _comicIdsToStickers(_classifier.load()->predict(text, mostPredictions), resultTypes);
    }

    [[nodiscard]] QStringList _autocompleteTags(const QString& text, bool appendCatchAll) const
    {
        QStringList tags = _classifier.load()->getAutocompleteSuggestions(text);
        if (appendCatchAll) {
            tags.append(catchAllTag(text));
        }
        return tags;
    }

    /// In the order of the ids; an id without a sticker, or with one of another kind, is left out.
    [[nodiscard]] KovalinStickerList _comicIdsToStickers(const QList<std::int32_t>& comicIds,
                                                         const QXSDKKovalinSearchResultTypes& resultTypes) const
    {
        const auto map = _comicIdToSticker.load();
        const auto isWanted = QXSDKKovalinSearchResultTypeToPredicate(resultTypes);
        KovalinStickerList stickers;
        for (const std::int32_t comicId : comicIds) {
            const auto sticker = map->value(QString::number(comicId));
            if (sticker && isWanted(*sticker)) {
                stickers.append(sticker);
            }
        }
        return stickers;
    }

    SharedSlot<QXNativeLearnedSearchClassifier> _classifier;
    SharedSlot<const ComicIdToSticker> _comicIdToSticker;
};

QXSDKKovalinLearnedSearchEngine::QXSDKKovalinLearnedSearchEngine()
    : QXSDKKovalinLearnedSearchEngine(nullptr)
{
}

QXSDKKovalinLearnedSearchEngine::QXSDKKovalinLearnedSearchEngine(
    const std::shared_ptr<QXNativeLearnedSearchClassifier>& classifier)
    : _state(std::make_shared<State>(classifier))
{
}

QXSDKKovalinLearnedSearchEngine::~QXSDKKovalinLearnedSearchEngine() = default;

void QXSDKKovalinLearnedSearchEngine::loadModel(LoadCallback callback)
{
    std::weak_ptr<State> weakState = _state;
    _state->queue.async([weakState, callback = std::move(callback)] {
        QXSDKKovalinModelManager::shared().loadModel(
            QStringLiteral("LearnedSearch"),
            [weakState, callback](const std::shared_ptr<QXNativeModelFileBuffer>& buffer) {
                const auto state = weakState.lock();
                std::shared_ptr<QXNativeLearnedSearchClassifier> classifier;
                if (state && buffer) {
                    classifier = answerOrNothing(
                        [&] { return QXNativeLearnedSearchClassifier::learnedSearchClassifierWithBuffer(buffer); });
                }
                const bool isLoaded = classifier != nullptr;
                if (isLoaded) {
                    state->setClassifier(classifier);
                }
                dispatchMain([weakState, isLoaded, callback] {
                    const auto loadedState = weakState.lock();
                    callback(isLoaded && loadedState && loadedState->isInitialized());
                });
            });
    });
}

std::shared_ptr<const QXSDKKovalinLearnedSearchEngine::ComicIdToSticker>
QXSDKKovalinLearnedSearchEngine::comicIdToSticker() const
{
    return _state->comicIdToSticker();
}

void QXSDKKovalinLearnedSearchEngine::addObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>&) {}

void QXSDKKovalinLearnedSearchEngine::removeObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>&) {}

void QXSDKKovalinLearnedSearchEngine::processPacks(const KovalinPackList& packs, ProcessCompletion completion)
{
    std::weak_ptr<State> weakState = _state;
    _state->queue.async([weakState, packs, completion = std::move(completion)] {
        if (const auto state = weakState.lock()) {
            state->_processPacks(packs);
        }
        dispatchMain(completion);
    });
}

void QXSDKKovalinLearnedSearchEngine::search(const QString& text, const QXSDKKovalinSearchResultTypes& resultTypes,
                                             SearchCompletion completion)
{
    if (!isInitialized()) {
        KOVALIN_LOG_WARNING(kovalinSearch, QStringLiteral("Attempted search before initialization finished"));
        completion({}, {});
        return;
    }
    std::weak_ptr<State> weakState = _state;
    _state->queue.async([weakState, text, resultTypes, completion = std::move(completion)] {
        State::Answer answer;
        if (const auto state = weakState.lock()) {
            answer = state->search(text, resultTypes);
        }
        dispatchMain([answer = std::move(answer), completion] { completion(answer.stickers, answer.tags); });
    });
}

KovalinStickerList
QXSDKKovalinLearnedSearchEngine::searchWithExactMatch(const QString& tag,
                                                      const QXSDKKovalinSearchResultTypes& resultTypes) const
{
    if (!isInitialized()) {
        KOVALIN_LOG_WARNING(kovalinSearch,
                            QStringLiteral("Attempted searchWithExactMatch before initialization finished"));
        return {};
    }
    return _state->searchWithExactMatch(tag, resultTypes);
}

bool QXSDKKovalinLearnedSearchEngine::isInitialized() const
{
    return _state->isInitialized();
}
