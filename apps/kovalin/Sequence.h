#pragma once

#include <CLI/App.hpp>

namespace kovalin::cli {

/// Adds "sequence": plays searches into a search sequence and shows what it keeps.
void addSequenceCommand(CLI::App& program);

} // namespace kovalin::cli
