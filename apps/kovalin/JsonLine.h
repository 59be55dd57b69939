#pragma once

#include <nlohmann/json.hpp>

namespace kovalin::cli {

/// Writes the value as compact JSON on one line of standard output and flushes it. Members keep their order; "�" stands for
/// bytes of a text that are not UTF-8, null for a number that is infinite or none. Throws what `writeOutput` throws.
void writeJsonLine(const nlohmann::ordered_json& value);

} // namespace kovalin::cli
