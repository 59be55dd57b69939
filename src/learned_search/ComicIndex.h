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
    /// nullopt where a comic is listed twice, or where there are so many that the index would take more than 1 MiB.
    [[nodiscard]] static std::optional<ComicIndex> of(const SearchModel& model);

    static constexpr std::uint32_t kNone = 0xFFFF'FFFF;

    [[nodiscard]] std::size_t size() const { return _comics.size(); }

    /// kNone where the comic isn't listed.
    [[nodiscard]] std::uint32_t positionOf(std::int32_t comic) const
    {
        for (std::size_t slot = slotOf(comic);; slot = (slot + 1) & _mask) {
            const std::uint32_t position = _positions[slot];
            if (position == kNone || _comics[position] == comic) {
                return position;
            }
        }
    }

    [[nodiscard]] std::int32_t comicAt(std::uint32_t position) const { return _comics[position]; }

private:
    [[nodiscard]] std::size_t slotOf(std::int32_t comic) const
    {
        return static_cast<std::size_t>((static_cast<std::uint32_t>(comic) * 0x9E37'79B9'7F4A'7C15U) >> _shift);
    }

    std::vector<std::int32_t> _comics; // by position
    // Open addressing, at most two thirds full, and a power of two.
    std::vector<std::uint32_t> _positions;
    std::size_t _mask = 0;
    unsigned _shift = 0;
};

} // namespace vole::learned_search
