#pragma once

#include <CLI/App.hpp>

namespace kovalin::cli {

/// Adds "model", whose subcommands work on model files.
void addModelCommand(CLI::App& program);

} // namespace kovalin::cli
