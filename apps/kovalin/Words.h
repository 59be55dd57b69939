#pragma once

#include <CLI/App.hpp>

namespace kovalin::cli {

/// Adds "words": what a model takes a text for, its words and those of its keys that cover them.
void addWordsCommand(CLI::App& program);

} // namespace kovalin::cli
