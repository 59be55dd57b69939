#include "search/StickerTable.h"

#include <ranges>

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
    // A pointer that is copied counts up in memory beside its sticker, which is cold more often than not.
    const quint32* const end = numbers.data() + numbers.size();
    const auto fetched = numbers | std::views::transform([&](const quint32& number) -> const KovalinStickerPtr& {
                             const quint32* const next = &number;
                             if (end - next > 2 * prefetchDistance) {
                                 prefetch(&_stickers[next[2 * prefetchDistance]]);
                             }
                             if (end - next > prefetchDistance) {
                                 prefetch(_stickers[next[prefetchDistance]].get());
                             }
                             return _stickers[number];
                         });
    // From a range, a list is filled without asking for room sticker by sticker.
    return KovalinStickerList(fetched.begin(), fetched.end());
}
