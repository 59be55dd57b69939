#pragma once

#include <CLI/App.hpp>

namespace kovalin::cli {

/// Adds "events": shows analytics events as they are sent.
void addEventsCommand(CLI::App& program);

} // namespace kovalin::cli
