#pragma once

#include <CLI/App.hpp>

namespace kovalin::cli {

/// Adds "build" to "model": makes a model file of what people typed and chose.
void addModelBuildCommand(CLI::App& model);

} // namespace kovalin::cli
