#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace vole::learned_search {

/// The row of each key in a dictionary that holds no key twice, by the keys' hashes. Immutable; any thread.
///
/// A query asks for every run of its words, and most runs are no keys: a slot carries so much of its key's hash that these are
/// told without a look into the model, whose pages are far from each other and seldom in a cache.
class KeyTable final {
public:
    /// `keyAt` gives the key of each of the `size` rows. nullopt where the table would take more than 1 MiB.
    template <typename KeyAt>
    [[nodiscard]] static std::optional<KeyTable> of(std::size_t size, KeyAt&& keyAt)
    {
        auto table = withRoomFor(size);
        for (std::size_t row = 0; table && row < size; ++row) {
            if (!table->insert(hashOf(keyAt(row)), row)) {
                return std::nullopt;
            }
        }
        return table;
    }

    /// The row of the key; nullopt where there is none. `isKeyOf` says whether the key is that of a row.
    template <typename IsKeyOf>
    [[nodiscard]] std::optional<std::size_t> find(std::string_view key, IsKeyOf&& isKeyOf) const
    {
        const std::uint64_t hash = hashOf(key);
        for (std::size_t slot = slotOf(hash); _slots[slot] != kFree; slot = (slot + 1) & _mask) {
            if ((_slots[slot] >> kRowBits) == tagOf(hash) && isKeyOf(rowIn(_slots[slot]))) {
                return rowIn(_slots[slot]);
            }
        }
        return std::nullopt;
    }

private:
    // A slot holds the row's number, counted from 1, and above it the first bits of the key's hash.
    static constexpr unsigned kRowBits = 18;
    static constexpr std::uint32_t kFree = 0;

    [[nodiscard]] static std::uint64_t hashOf(std::string_view key)
    {
        return std::hash<std::string_view>()(key) * std::uint64_t{0x9E37'79B9'7F4A'7C15};
    }
    [[nodiscard]] static std::uint32_t tagOf(std::uint64_t hash)
    {
        return static_cast<std::uint32_t>(hash >> 32) >> kRowBits;
    }
    [[nodiscard]] static std::size_t rowIn(std::uint32_t slot)
    {
        return (slot & ((std::uint32_t{1} << kRowBits) - 1)) - 1;
    }
    [[nodiscard]] std::size_t slotOf(std::uint64_t hash) const { return static_cast<std::size_t>(hash >> 8) & _mask; }

    [[nodiscard]] static std::optional<KeyTable> withRoomFor(std::size_t size);
    [[nodiscard]] bool insert(std::uint64_t hash, std::size_t row);

    std::vector<std::uint32_t> _slots; // open addressing, a power of two, at most two thirds full
    std::size_t _mask = 0;
};

} // namespace vole::learned_search
