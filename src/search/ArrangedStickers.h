#pragma once

#include "search/StickerTable.h"

#include <QtCore/QtGlobal>

#include <vector>

/// Stickers with their numbers, and runs of these numbers in display order, one after the other. One of these serves all
/// the sets of an index.
struct ArrangedStickers {
    StickerTable table;
    std::vector<quint32> order;
};
