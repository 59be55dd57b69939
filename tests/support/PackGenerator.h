#pragma once

#include "search/KovalinPack.h"

#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

namespace kovalin::test {

// Content and queries from a seed. All functions here are pure: equal arguments give equal answers with every compiler and
// standard library. Any thread.

/// How much content to make.
struct PackShape {
    int stickers = 50'000;
    int tags = 20'000; ///< different ones, stars aside; each occurs, so at most stickers * tagsPerSticker
    int tagsPerSticker = 6;
    int packs = 40;
    quint64 seed = 1;
    /// Whether equal tags of different stickers share their text. Tags read from a document don't.
    bool sharesTagStrings = false;
};

/// Content as a backend may send it, for measuring: tags of one to three invented words, a few of them on very many
/// stickers and most on few, a fifth with a star; every third sticker for two persons; titles of which half are also tags.
[[nodiscard]] KovalinPackList generatePacks(const PackShape& shape);

/// A few hundred stickers at most, with all that may confuse a search: equal stickers that differ in kind and tags, absent
/// fields, decorations, letters and punctuation of many scripts, titles that are tags.
[[nodiscard]] KovalinPackList generateOddPacks(quint64 seed);

/// Queries of every kind around the tags of the packs, whether they match or not.
[[nodiscard]] QStringList generateQueries(const KovalinPackList& packs, int count, quint64 seed);

/// What a search box asks while somebody types: for each of `textCount` texts of one or two words all its beginnings from
/// the second letter on. The texts are tags, in equal parts of the most used, of all, and of the least used; but one in
/// eight joins the words of two tags, and one in eight runs on into letters that no tag has.
[[nodiscard]] QStringList typedQueries(const KovalinPackList& packs, int textCount, quint64 seed);

} // namespace kovalin::test
