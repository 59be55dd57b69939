#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace vole::learned_search {

struct SearchModel;

/// The place of each comic in a model's `comicPriors`. Immutable; any thread.
class ComicIndex final {
public:
    /// nullopt where a comic is listed twice, or where there are so many that the index would take more than 512 KiB,
    /// which is beyond 43 000.
    [[nodiscard]] static std::optional<ComicIndex> of(const SearchModel& model);

    static constexpr std::uint32_t kNone = 0xFFFF'FFFF;

    [[nodiscard]] std::size_t size() const { return _size; }

    /// kNone where the comic isn't listed.
    [[nodiscard]] std::uint32_t positionOf(std::int32_t comic) const
    {
        std::size_t slot = slotOf(comic);
        while (_slots[slot].comic != comic && _slots[slot].position != kNone) {
            slot = (slot + 1) & _mask;
        }
        return _slots[slot].position;
    }

    /// Has the memory brought near in which `positionOf` will look for the comic.
    void prefetch(std::int32_t comic) const
    {
#if defined(__GNUC__)
        __builtin_prefetch(&_slots[slotOf(comic)]);
#else
        static_cast<void>(comic);
#endif
    }

private:
    struct Slot {
        std::int32_t comic;
        std::uint32_t position; // kNone: the slot is free
    };

    [[nodiscard]] std::size_t slotOf(std::int32_t comic) const
    {
        return static_cast<std::size_t>((static_cast<std::uint32_t>(comic) * 0x9E37'79B9'7F4A'7C15U) >> _shift);
    }

    // Open addressing, a power of two, at most two thirds full.
    std::vector<Slot> _slots;
    std::size_t _size = 0;
    std::size_t _mask = 0;
    unsigned _shift = 0;
};

} // namespace vole::learned_search
