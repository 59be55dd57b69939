#pragma once

#include "content/QXSDKKovalinStickerDataProvider.h"
#include "search/KovalinSticker.h"

/// `first`, and behind it what `then`, which may be null, adds to it: each sticker once, where it comes first. A new list,
/// never null. Any thread.
[[nodiscard]] KovalinStickerListPtr blendedStickers(const KovalinStickerList& first, const KovalinStickerListPtr& then);
