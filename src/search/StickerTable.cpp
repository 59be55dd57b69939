#include "search/StickerTable.h"

#include <cstddef>
#include <iterator>

namespace {

/// Tells the processor that this memory will be needed soon; a hint that may do nothing.
void prefetch([[maybe_unused]] const void* address)
{
#if defined(__GNUC__)
    __builtin_prefetch(address);
#endif
}

/// How many stickers ahead memory is asked for: about as long as it takes to come, at a few nanoseconds a sticker.
constexpr qsizetype prefetchDistance = 12;

/// Walks over stickers by their numbers, and asks for those ahead: a pointer that is copied counts up in memory beside its
/// sticker, which is cold more often than not.
class FetchedSticker {
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = KovalinStickerPtr;
    using difference_type = std::ptrdiff_t;
    using pointer = const KovalinStickerPtr*;
    using reference = const KovalinStickerPtr&;

    FetchedSticker(const KovalinStickerPtr* stickers, const quint32* number, const quint32* end)
        : _stickers(stickers)
        , _number(number)
        , _end(end)
    {
    }

    reference operator*() const
    {
        if (_end - _number > 2 * prefetchDistance) {
            prefetch(&_stickers[_number[2 * prefetchDistance]]);
        }
        if (_end - _number > prefetchDistance) {
            prefetch(_stickers[_number[prefetchDistance]].get());
        }
        return _stickers[*_number];
    }
    FetchedSticker& operator++()
    {
        ++_number;
        return *this;
    }
    FetchedSticker operator++(int)
    {
        const FetchedSticker before = *this;
        ++_number;
        return before;
    }
    friend bool operator==(const FetchedSticker& a, const FetchedSticker& b) { return a._number == b._number; }

private:
    const KovalinStickerPtr* _stickers;
    const quint32* _number;
    const quint32* _end;
};

} // namespace

quint32 StickerTable::append(const KovalinStickerList& stickers)
{
    const quint32 first = count();
    for (qsizetype i = 0; i < stickers.size(); ++i) {
        if (i + prefetchDistance < stickers.size()) {
            prefetch(stickers[i + prefetchDistance].get());
        }
        const KovalinStickerPtr& sticker = stickers[i];
        const quint32 identity = _identities.numberOf(sticker->hash(), _identityCount, [&](quint32 known) {
            return _stickers[_firstOfIdentity[known]]->isEqual(*sticker);
        });
        if (identity == _identityCount) {
            ++_identityCount;
            _firstOfIdentity.push_back(count());
        }
        _stickers.push_back(sticker);
        _identityAndKind.push_back(identity << 1U | (sticker->isFriendvalin() ? 1U : 0U));
    }
    return first;
}

void StickerTable::reserve(std::size_t count)
{
    _stickers.reserve(count);
    _identityAndKind.reserve(count);
    _identities.reserve(count);
    _firstOfIdentity.reserve(count);
}

void StickerTable::finish()
{
    _identities = {};
    _firstOfIdentity = {};
    _stickers.shrink_to_fit();
    _identityAndKind.shrink_to_fit();
}

KovalinStickerList StickerTable::stickers(const std::vector<quint32>& numbers) const
{
    const quint32* const end = numbers.data() + numbers.size();
    // From a range, a list is filled without asking for room sticker by sticker.
    return KovalinStickerList(FetchedSticker(_stickers.data(), numbers.data(), end),
                              FetchedSticker(_stickers.data(), end, end));
}
