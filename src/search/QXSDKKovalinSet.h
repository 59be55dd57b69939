#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "search/KovalinSticker.h"

#include <QtCore/QtGlobal>

#include <memory>

struct ArrangedStickers;

/// The stickers of one tag in display order. Immutable; any thread.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinSet final {
public:
    QXSDKKovalinSet(const KovalinStickerList& array, bool hasSolovalin);

    /// A run of `count` places in the order of `stickers`, from `start` on; the stickers are shared, not copied.
    QXSDKKovalinSet(std::shared_ptr<const ArrangedStickers> stickers, quint32 start, quint32 count, bool hasSolovalin);

    /// Whether a one-person sticker went into the set.
    [[nodiscard]] bool hasSolovalin() const;

    /// How many stickers the set holds.
    [[nodiscard]] qsizetype count() const;

    /// The stickers in display order, as a list made anew at each call.
    [[nodiscard]] KovalinStickerList array() const;

private:
    std::shared_ptr<const ArrangedStickers> _stickers;
    quint32 _start;
    quint32 _count;
    bool _hasSolovalin;
};
