#pragma once

#include <CLI/App.hpp>

namespace kovalin::cli {

/// Adds "verify" to "model": whether the library would use a file.
void addModelVerifyCommand(CLI::App& model);

} // namespace kovalin::cli
