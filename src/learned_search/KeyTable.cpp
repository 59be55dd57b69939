#include "learned_search/KeyTable.h"

#include <bit>

namespace vole::learned_search {

namespace {

constexpr std::size_t mostBytes = std::size_t{1} << 20;
// Far beyond what chance brings: only keys chosen to collide get there.
constexpr std::size_t mostProbes = 256;

} // namespace

std::optional<KeyTable> KeyTable::withRoomFor(std::size_t size)
{
    const std::size_t slots = std::bit_ceil(size + size / 2 + 2);
    if (slots * sizeof(std::uint32_t) > mostBytes) {
        return std::nullopt;
    }
    KeyTable table;
    table._slots.assign(slots, kFree);
    table._mask = slots - 1;
    return table;
}

/// False where the table gets too crowded in one place.
bool KeyTable::insert(std::uint64_t hash, std::size_t row)
{
    std::size_t slot = slotOf(hash);
    for (std::size_t probes = 0; _slots[slot] != kFree; ++probes) {
        if (probes == mostProbes) {
            return false;
        }
        slot = (slot + 1) & _mask;
    }
    _slots[slot] = tagOf(hash) << kRowBits | static_cast<std::uint32_t>(row + 1);
    return true;
}

} // namespace vole::learned_search
