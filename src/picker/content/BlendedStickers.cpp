#include "picker/content/BlendedStickers.h"

#include <cstddef>
#include <unordered_set>

namespace {

struct HashOfSticker {
    std::size_t operator()(const KovalinSticker* sticker) const { return sticker->hash(); }
};
struct EqualSticker {
    bool operator()(const KovalinSticker* a, const KovalinSticker* b) const { return a->isEqual(*b); }
};

} // namespace

KovalinStickerListPtr blendedStickers(const KovalinStickerList& first, const KovalinStickerListPtr& then)
{
    auto blended = std::make_shared<KovalinStickerList>();
    std::unordered_set<const KovalinSticker*, HashOfSticker, EqualSticker> known;
    const auto append = [&](const KovalinStickerList& stickers) {
        for (const KovalinStickerPtr& sticker : stickers) {
            if (known.insert(sticker.get()).second) {
                blended->append(sticker);
            }
        }
    };
    append(first);
    if (then) {
        append(*then);
    }
    return blended;
}
