#pragma once

#include <CLI/App.hpp>

namespace kovalin::cli {

/// Adds "info" to "model": what is in a model file, and which of the rules for such files it breaks.
void addModelInfoCommand(CLI::App& model);

} // namespace kovalin::cli
