#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "search/QXSDKKovalinSearchEngine.h"
#include "search/QXSDKKovalinTagIndex.h"
#include "search/QXSDKKovalinTagRank.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

#include <memory>

/// The search engine that works without a model: it ranks the tags of the packs by how the words of the query match their
/// words, and answers with these tags and their stickers.
///
/// Thread: building and free text searches run on a serial queue of the engine's own, in the order of the calls, so that
/// a search sees every build called for before it. All else may be called on any thread, and reads the index of the last
/// finished build, whole, without waiting for one under way.
///
/// Lifetime: the engine may be destroyed at any time, on any thread. Completions still outstanding then run all the same,
/// a search's with empty lists unless it was under way; observers aren't told any more.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinPrefixSearchEngine final : public QXSDKKovalinSearchEngine,
                                                                    public QXSDKKovalinTagIndex {
public:
    QXSDKKovalinPrefixSearchEngine();
    ~QXSDKKovalinPrefixSearchEngine() override;

    QXSDKKovalinPrefixSearchEngine(const QXSDKKovalinPrefixSearchEngine&) = delete;
    QXSDKKovalinPrefixSearchEngine& operator=(const QXSDKKovalinPrefixSearchEngine&) = delete;

    // The engine's contract.

    void addObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer) override;
    void removeObserver(const std::shared_ptr<QXSDKKovalinSearchEngineObserver>& observer) override;
    void processPacks(const KovalinPackList& packs, ProcessCompletion completion) override;
    void search(const QString& text, const QXSDKKovalinSearchResultTypes& resultTypes,
                SearchCompletion completion) override;

    /// The stickers of the visible pack of exactly this title, in the pack's order, or else of exactly this tag. Upper and
    /// lower case differ. Empty when it is neither.
    [[nodiscard]] KovalinStickerList
    searchWithExactMatch(const QString& tag, const QXSDKKovalinSearchResultTypes& resultTypes) const override;

    /// False until the first build has ended, true ever after.
    [[nodiscard]] bool isInitialized() const override;

    [[nodiscard]] QXSDKKovalinEmotion emotionForTag(const QString& tag) const override;
    [[nodiscard]] KovalinPackPtr packForTag(const QString& tag) const override;

    // The parts of a free text search.

    /// The tags that match the text, best first: by rank, then by falling count of stickers; the order of tags alike in both
    /// isn't defined. A tag with no one-person sticker is left out unless two-person stickers are wanted; there is no such
    /// test the other way round. Empty for a text without words.
    [[nodiscard]] QStringList tagsForSearchTerm(const QString& text,
                                                const QXSDKKovalinSearchResultTypes& resultTypes) const;

    /// How many stickers the tag has less than the most frequent tag, which has 0. A tag that is unknown counts as having
    /// none.
    [[nodiscard]] qint64 occurenceRankForTag(const QString& tag) const;

    /// What a rank adds to a tag's score. The score is this plus occurenceRankForTag(); the lowest is best.
    [[nodiscard]] qint64 rankValueForRank(QXSDKKovalinTagRank rank) const;

    /// The rank of a tag for search words as wordsForSearchTerm() makes them.
    [[nodiscard]] static QXSDKKovalinTagRank rankForTag(const QString& tag, const QStringList& termWords);

    /// Whether both lists hold the same words in the same order.
    [[nodiscard]] static bool hasExactMatchWithTagWords(const QStringList& tagWords, const QStringList& termWords);

    /// Whether every search word is one of the tag's words.
    [[nodiscard]] static bool containsExactWordsWithTagWords(const QStringList& tagWords, const QStringList& termWords);

    /// Whether every search word begins one of the tag's words.
    [[nodiscard]] static bool prefixMatchesWordsWithTagWords(const QStringList& tagWords, const QStringList& termWords);

    /// The words of a search text or tag: lower-cased, without straight apostrophes, split at punctuation, spaces and tabs.
    [[nodiscard]] static QStringList wordsForSearchTerm(const QString& text);

private:
    // Apart from the engine, so that jobs can outlive it.
    class State;
    std::shared_ptr<State> _state;
};
