#pragma once

#include "search/StickerTable.h"

#include <QtCore/QtGlobal>

#include <span>
#include <vector>

/// One sticker of a StickerTable coming in under a tag.
struct StickerArrival {
    quint32 sticker : 31;
    quint32 isStarTag : 1;
};

/// Puts the stickers of a tag into the order in which they are shown.
///
/// Stickers that carry the tag with a star stand before the others; each sticker stands once, by identity, and a star wins
/// over plain whichever came first. In both segments the two-person stickers lead, the last to arrive first, and the
/// one-person stickers follow in order of arrival. One thread at a time; keeps its working memory between calls.
class StickerDisplayOrder final {
public:
    struct Outcome {
        quint32 starCount; // how many of the numbers written are the star segment
        bool hasSolovalin; // whether a one-person sticker came in that no star had come in before
    };

    /// The table must outlive this object and have all its stickers.
    explicit StickerDisplayOrder(const StickerTable& table);

    /// Appends the stickers' numbers to `order`.
    Outcome arrange(std::span<const StickerArrival> arrivals, std::vector<quint32>& order);

private:
    enum class Segment : quint32 { None, Plain, Star };

    [[nodiscard]] Segment segmentOf(quint32 identity) const;
    void setSegment(quint32 identity, Segment segment);

    const StickerTable& _table;
    std::vector<quint32> _segments; // by identity: the round it was set in << 2 | segment
    quint32 _round = 0;
    std::vector<quint32> _starFriendvalins, _starSolovalins, _plainFriendvalins, _plainSolovalins;
};
