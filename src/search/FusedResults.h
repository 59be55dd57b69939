#pragma once

#include "search/KovalinSticker.h"

#include <QtCore/QList>
#include <QtCore/QSet>
#include <QtCore/QString>

#include <cstddef>
#include <unordered_set>

// Tells the elements of a list that equal one of another list, in time that grows with both and not with their product.

class EqualStickers final {
public:
    explicit EqualStickers(const KovalinStickerList& stickers)
    {
        _stickers.reserve(static_cast<std::size_t>(stickers.size()));
        for (const auto& sticker : stickers) {
            _stickers.insert(sticker.get());
        }
    }

    [[nodiscard]] bool contains(const KovalinStickerPtr& sticker) const { return _stickers.contains(sticker.get()); }

private:
    struct Hash {
        std::size_t operator()(const KovalinSticker* sticker) const { return sticker->hash(); }
    };
    struct Equal {
        bool operator()(const KovalinSticker* a, const KovalinSticker* b) const { return a->isEqual(*b); }
    };

    std::unordered_set<const KovalinSticker*, Hash, Equal> _stickers; // live in the list
};

class EqualTexts final {
public:
    explicit EqualTexts(const QList<QString>& texts)
        : _texts(texts.cbegin(), texts.cend())
    {
    }

    [[nodiscard]] bool contains(const QString& text) const { return _texts.contains(text); }

private:
    QSet<QString> _texts;
};
