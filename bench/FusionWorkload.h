#pragma once

#include "search/KovalinPack.h"
#include "support/ModelContent.h"

#include <QtCore/QList>
#include <QtCore/QStringList>

#include <cstddef>

namespace kovalin::bench {

/// Packs and a model that belong together: the model's comics are stickers of the packs, and its words are the words of
/// their tags, the popular ones first, as far as there are as many.
struct FusionWorkload {
    struct Size {
        int tags;
        std::size_t keys;
        std::size_t comics; // at most as many as there are stickers
        std::size_t rows;
        int texts; // that are typed
    };

    explicit FusionWorkload(const Size& size);

    KovalinPackList packs;
    vole::learned_search::test::ModelContent model;
    /// Texts that somebody types, each as its beginnings from the second letter on.
    QList<QStringList> typedTexts;
};

} // namespace kovalin::bench
