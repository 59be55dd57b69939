#pragma once

#include <CLI/App.hpp>

namespace kovalin::cli {

/// Adds "search": answers queries from the packs of a file.
void addSearchCommand(CLI::App& program);

} // namespace kovalin::cli
