#pragma once

#include "search/KovalinSticker.h"
#include "search/Numbering.h"

#include <QtCore/QtGlobal>

#include <vector>

/// Numbers the stickers of several lists in their order, and keeps beside each number what searching asks for, so that a
/// search doesn't touch the stickers themselves.
///
/// Built by one thread, then immutable and readable on any.
class StickerTable final {
public:
    StickerTable() = default;

    StickerTable(StickerTable&&) = default;
    StickerTable& operator=(StickerTable&&) = default;

    /// Makes room for this many stickers in all.
    void reserve(std::size_t count);

    /// Appends a list; its stickers get the next numbers in order. Returns the number of its first.
    quint32 append(const KovalinStickerList& stickers);

    /// Forgets how equal stickers are found, once nothing more will be appended.
    void finish();

    [[nodiscard]] quint32 count() const { return static_cast<quint32>(_stickers.size()); }
    [[nodiscard]] const KovalinStickerPtr& sticker(quint32 number) const { return _stickers[number]; }
    /// The stickers of these numbers, in their order.
    [[nodiscard]] KovalinStickerList stickers(const std::vector<quint32>& numbers) const;

    [[nodiscard]] bool isFriendvalin(quint32 number) const { return (_identityAndKind[number] & 1U) != 0; }

    /// Equal for equal stickers and only for these; below identityCount().
    [[nodiscard]] quint32 identity(quint32 number) const { return _identityAndKind[number] >> 1U; }
    [[nodiscard]] quint32 identityCount() const { return _identityCount; }

private:
    std::vector<KovalinStickerPtr> _stickers;
    std::vector<quint32> _identityAndKind; // identity << 1 | is a two-person sticker
    NumberTable _identities;
    std::vector<quint32> _firstOfIdentity; // by identity: the number of the first sticker that has it
    quint32 _identityCount = 0;
};
