#pragma once

#include "search/KovalinSticker.h"

#include <QtCore/QString>

/// What assistive tools call a sticker: the first tag that people can search for, without its star; for a sticker
/// without one, as popular ones are, the words of its template's identifier; else the product's name for a sticker. Any
/// thread.
[[nodiscard]] QString kovalinStickerName(const KovalinSticker& sticker);
