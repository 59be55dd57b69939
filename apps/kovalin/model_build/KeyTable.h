#pragma once

#include "search/Numbering.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory_resource>
#include <string_view>

namespace kovalin::cli {

/// Gives different keys the numbers 0, 1, 2, … in the order in which they are met first, and keeps each once. One thread at a
/// time.
class KeyTable final {
public:
    /// Throws std::length_error when there are more keys than numbers.
    std::uint32_t numberOf(std::string_view key);

    /// Lives as long as this object.
    [[nodiscard]] std::string_view key(std::uint32_t number) const { return _keys[number]; }

    [[nodiscard]] std::size_t size() const { return _keys.size(); }

private:
    [[nodiscard]] std::string_view kept(std::string_view key);

    NumberTable _table;
    std::deque<std::string_view> _keys; // by number; a deque grows without a copy of all
    std::pmr::monotonic_buffer_resource _texts;
};

} // namespace kovalin::cli
