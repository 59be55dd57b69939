#pragma once

#include "search/KovalinPack.h"
#include "search/QXSDKKovalinEmotion.h"
#include "search/QXSDKKovalinSearchResultType.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace kovalin::test {

/// The prefix search in its plainest form: maps by text, ordered sets by hashed stickers, and a walk over all tags that
/// splits each into words anew. It shares nothing with the engine but the records, so that it can tell whether the engine
/// answers rightly, and how much faster it is.
class PlainPrefixSearch final {
public:
    void processPacks(const KovalinPackList& packs);

    /// A tag with its score, the lower the better.
    struct ScoredTag {
        QString tag;
        qint64 score;
    };
    struct Result {
        KovalinStickerList stickers;
        QList<ScoredTag> tags;
    };

    [[nodiscard]] QList<ScoredTag> tagsForSearchTerm(const QString& text,
                                                     const QXSDKKovalinSearchResultTypes& types) const;
    [[nodiscard]] Result search(const QString& text, const QXSDKKovalinSearchResultTypes& types) const;

    /// The stickers for tags in a given order, which is open among equal scores.
    [[nodiscard]] KovalinStickerList stickersForTags(const QStringList& tags,
                                                     const QXSDKKovalinSearchResultTypes& types) const;
    [[nodiscard]] KovalinStickerList searchWithExactMatch(const QString& tag,
                                                          const QXSDKKovalinSearchResultTypes& types) const;
    [[nodiscard]] QXSDKKovalinEmotion emotionForTag(const QString& tag) const;
    [[nodiscard]] KovalinPackPtr packForTag(const QString& tag) const;

    [[nodiscard]] static QStringList wordsForSearchTerm(const QString& text);
    [[nodiscard]] static int rankForTag(const QString& tag, const QStringList& termWords);

    /// Each sticker once, in the order in which they came in.
    class OrderedSet final {
    public:
        [[nodiscard]] bool contains(const KovalinStickerPtr& sticker) const { return _members.contains({sticker}); }
        void append(const KovalinStickerPtr& sticker);
        void prepend(const KovalinStickerPtr& sticker);
        void remove(const KovalinStickerPtr& sticker);
        [[nodiscard]] const KovalinStickerList& list() const { return _list; }

    private:
        struct Member {
            KovalinStickerPtr sticker;

            friend bool operator==(const Member& a, const Member& b) { return a.sticker->isEqual(*b.sticker); }
            friend std::size_t qHash(const Member& member, std::size_t seed) { return member.sticker->hash() ^ seed; }
        };

        KovalinStickerList _list;
        QSet<Member> _members;
    };

    struct SetBuilder {
        OrderedSet starTagged;
        OrderedSet nonStarTagged;
        bool hasSolovalin = false;

        void addKovalin(const KovalinStickerPtr& sticker, bool isStarTag);
        [[nodiscard]] KovalinStickerList build() const;
    };

    struct BuiltSet {
        bool hasSolovalin = false;
        KovalinStickerList array;
    };

    QHash<QString, BuiltSet> tagToKovalins;
    QHash<QString, KovalinPackPtr> tagToPack;
    QHash<QString, QXSDKKovalinEmotion> tagToEmotion;
    qint64 maxTagOccurrence = 0;
};

} // namespace kovalin::test
