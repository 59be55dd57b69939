#pragma once

#include "search/ArrangedStickers.h"
#include "search/KovalinPack.h"
#include "search/QXSDKKovalinEmotion.h"
#include "search/QXSDKKovalinSearchResultType.h"
#include "search/QXSDKKovalinSet.h"
#include "search/TagWordIndex.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

/// All that the prefix engine knows of the packs: the maps by tag and by title, and beside them the same numbered for free
/// text search. Made whole from a list of packs and immutable from then on, so that any number of threads may read one
/// while the engine swaps in the next.
///
/// Tags are numbered by falling count of stickers: among tags of equal rank the lower number is the better one, and no
/// score needs computing or sorting.
class PrefixSearchIndex final {
public:
    explicit PrefixSearchIndex(const KovalinPackList& packs);

    PrefixSearchIndex(const PrefixSearchIndex&) = delete;
    PrefixSearchIndex& operator=(const PrefixSearchIndex&) = delete;

    /// Every usable tag, in its cleaned form, with its stickers.
    [[nodiscard]] const QHash<QString, QXSDKKovalinSet>& tagToKovalins() const { return _parts.tagToKovalins; }

    /// The visible packs that have stickers, by title.
    [[nodiscard]] const QHash<QString, KovalinPackPtr>& tagToPack() const { return _parts.tagToPack; }

    /// The emotion of the pack in which a tag occurs; tags without one have no entry.
    [[nodiscard]] const QHash<QString, QXSDKKovalinEmotion>& tagToEmotion() const { return _parts.tagToEmotion; }

    /// The largest count of stickers under any tag.
    [[nodiscard]] qint64 maxTagOccurrence() const { return _parts.maxTagOccurrence; }

    struct SearchResult {
        KovalinStickerList stickers;
        QStringList tags;
    };

    /// The tags that match the text, best first, without those that hold nothing the request wants.
    [[nodiscard]] QStringList tagsForSearchTerm(const QString& text,
                                                const QXSDKKovalinSearchResultTypes& resultTypes) const;

    /// The same with the stickers of all these tags, each once, under the best tag that carries it.
    [[nodiscard]] SearchResult search(const QString& text, const QXSDKKovalinSearchResultTypes& resultTypes) const;

    /// The stickers of the pack of exactly this title, or else of exactly this tag.
    [[nodiscard]] KovalinStickerList searchWithExactMatch(const QString& tag,
                                                          const QXSDKKovalinSearchResultTypes& resultTypes) const;

private:
    class Builder;

    /// A run of places in the order of the stickers.
    struct Run {
        quint32 start = 0;
        quint32 count = 0;
    };

    /// All but the words; a builder leaves the first and the third map to fillMaps().
    struct Parts {
        QHash<QString, QXSDKKovalinSet> tagToKovalins;
        QHash<QString, KovalinPackPtr> tagToPack;
        QHash<QString, QXSDKKovalinEmotion> tagToEmotion;
        qint64 maxTagOccurrence = 0;

        std::shared_ptr<const ArrangedStickers> stickers;
        std::vector<QString> tags;        // by number
        std::vector<Run> runs;            // by number: what an exact search for the tag answers, before the filter
        std::vector<quint8> hasSolovalin; // by number

        // Only until the maps are filled.
        std::vector<quint8> emotions;                         // by number
        std::vector<std::pair<quint32, Run>> ownRunsOfTitles; // of the tags for which a title's run stands in `runs`
    };

    [[nodiscard]] static Parts partsOf(const KovalinPackList& packs);
    void fillMaps();

    [[nodiscard]] std::vector<quint32> matchingTags(const QString& text,
                                                    const QXSDKKovalinSearchResultTypes& resultTypes) const;
    [[nodiscard]] QStringList namesOf(const std::vector<quint32>& tags) const;

    Parts _parts;
    TagWordIndex _words;
};
