#pragma once

#include <CLI/App.hpp>

namespace kovalin::cli {

/// Adds "suggest": how a model would go on with a text.
void addSuggestCommand(CLI::App& program);

} // namespace kovalin::cli
