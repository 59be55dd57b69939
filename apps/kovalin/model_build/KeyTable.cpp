#include "kovalin/model_build/KeyTable.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <stdexcept>

namespace kovalin::cli {

namespace {

constexpr std::size_t mostKeys = std::numeric_limits<std::uint32_t>::max() / 2; // the table has twice as many slots

} // namespace

std::uint32_t KeyTable::numberOf(std::string_view key)
{
    if (_keys.size() >= mostKeys) {
        throw std::length_error("more different keys than can be counted");
    }
    const auto next = static_cast<std::uint32_t>(_keys.size());
    const auto number = _table.numberOf(std::hash<std::string_view>()(key), next,
                                        [this, key](std::uint32_t other) { return _keys[other] == key; });
    if (number == next) {
        _keys.push_back(kept(key));
    }
    return number;
}

std::string_view KeyTable::kept(std::string_view key)
{
    auto* const text = static_cast<char*>(_texts.allocate(key.size() + 1, 1)); // at least a byte
    std::ranges::copy(key, text);
    return {text, key.size()};
}

} // namespace kovalin::cli
