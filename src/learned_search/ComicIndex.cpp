#include "learned_search/ComicIndex.h"

#include "learned_search/search_model_generated.h"

#include <bit>

namespace vole::learned_search {

namespace {

constexpr std::size_t mostBytes = std::size_t{1} << 19;
// Far beyond what chance brings: only ids chosen to collide get there, and looking them up would take as long as a walk.
constexpr std::size_t mostProbes = 256;

} // namespace

std::optional<ComicIndex> ComicIndex::of(const SearchModel& model)
{
    const auto* priors = model.comicPriors();
    const std::size_t count = priors ? priors->size() : 0;
    const std::size_t slots = std::bit_ceil(count + count / 2 + 2);
    if (slots * sizeof(Slot) > mostBytes) {
        return std::nullopt;
    }
    ComicIndex index;
    index._slots.assign(slots, {0, kNone});
    index._size = count;
    index._mask = slots - 1;
    index._shift = 64U - static_cast<unsigned>(std::countr_zero(slots));
    for (std::uint32_t position = 0; position < count; ++position) {
        const std::int32_t comic = priors->Get(position)->comicId();
        std::size_t slot = index.slotOf(comic);
        for (std::size_t probes = 0; index._slots[slot].position != kNone; ++probes) {
            if (index._slots[slot].comic == comic || probes == mostProbes) {
                return std::nullopt;
            }
            slot = (slot + 1) & index._mask;
        }
        index._slots[slot] = {comic, position};
    }
    return index;
}

} // namespace vole::learned_search
