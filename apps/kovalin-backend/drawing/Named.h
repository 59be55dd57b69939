#pragma once

#include <algorithm>
#include <string_view>

namespace kovalin::drawing {

/// The entry of that name in a table of records with names; null when there is none.
template <typename Table>
[[nodiscard]] constexpr const typename Table::value_type* findNamed(const Table& table, std::string_view name)
{
    const auto found = std::find_if(table.begin(), table.end(), [&](const auto& entry) { return entry.name == name; });
    return found == table.end() ? nullptr : &*found;
}

} // namespace kovalin::drawing
