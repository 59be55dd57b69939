#pragma once

#include "utils/Logging.h"

#include <fmt/format.h>

#include <iterator>
#include <string>
#include <utility>

namespace vole::utils::logging {

/// Logs the line that `message` formats: it is called once, with an output iterator for `fmt::format_to`. The logger's
/// exceptions pass through.
template <LogLevel level, typename Message>
void log(const std::string& tag, Message&& message)
{
    std::string text;
    std::forward<Message>(message)(std::back_inserter(text));
    logToExternalLogger(level, tag, text);
}

/// The same for a line without anything to fill in, at the level that the core uses.
inline void logError(const std::string& tag, const char* message)
{
    log<kErrorLevel>(tag, [message](auto out) { fmt::format_to(out, "{}", message); });
}

} // namespace vole::utils::logging
