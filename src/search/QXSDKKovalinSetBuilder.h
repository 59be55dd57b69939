#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "search/KovalinSticker.h"
#include "search/QXSDKKovalinSet.h"

#include <vector>

/// Collects the stickers of one tag and puts them into display order: those that carry the tag with a star first; within
/// both segments two-person stickers before one-person stickers, the last two-person sticker to come in leading. A sticker
/// stands once, and a star wins over plain.
///
/// One thread at a time.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinSetBuilder final {
public:
    /// Takes in a sticker, which must not be null, as it carries the tag with a star or without.
    void addKovalin(const KovalinStickerPtr& sticker, bool isStarTag);

    /// The stickers that carry the tag with a star, in display order.
    [[nodiscard]] KovalinStickerList starTagged() const;

    /// The stickers that carry the tag in plain form only, in display order.
    [[nodiscard]] KovalinStickerList nonStarTagged() const;

    /// Whether a one-person sticker came in. One that a starred equal had come in before doesn't count.
    [[nodiscard]] bool hasSolovalin() const;

    /// All of starTagged() followed by all of nonStarTagged(). The builder may be used on.
    [[nodiscard]] QXSDKKovalinSet build() const;

private:
    struct Arranged;
    [[nodiscard]] Arranged arranged() const;

    KovalinStickerList _stickers;
    std::vector<bool> _isStarTag; // beside _stickers
};
