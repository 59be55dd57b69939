#pragma once

#include <CLI/App.hpp>

namespace kovalin::cli {

/// Adds "predict": the comics that a model finds for a text, best first.
void addPredictCommand(CLI::App& program);

} // namespace kovalin::cli
