#pragma once

#include "kovalin_learned_search/Export.h"

#include <memory>
#include <string>

/// Where the native core's lines go: to a logger that the host attaches, or nowhere. Any thread.
namespace vole::utils::logging {

/// How grave a line is. The core logs at level 1 alone, whatever made a model unusable.
enum class LogLevel : int {};

inline constexpr LogLevel kErrorLevel{1};

/// What a host derives to receive the lines.
class KOVALIN_LEARNED_SEARCH_EXPORT Logger {
public:
    virtual ~Logger();

    /// Called on whatever thread has something to say, on several at once too. `tag` names a subsystem and a class, as in
    /// "[learned_search][ModelFileBuffer]"; `message` has no line end. An exception passes into what was logging.
    virtual void log(LogLevel level, const std::string& tag, const std::string& message) = 0;
};

/// Replaces the logger, atomically: a line that is being logged reaches the old one or the new one, and keeps it alive until
/// it is through. A null pointer removes the logger. None is installed at start.
KOVALIN_LEARNED_SEARCH_EXPORT void setExternalLogger(const std::shared_ptr<Logger>& logger);

/// The level from which on a logger of the core's own would print. There is no such logger, so this changes nothing that can
/// be seen. Not synchronised: to be set before other threads log.
KOVALIN_LEARNED_SEARCH_EXPORT void setInternalLoggerLogLevel(LogLevel level);

/// Hands a line to the external logger; without one nothing happens.
KOVALIN_LEARNED_SEARCH_EXPORT void logToExternalLogger(LogLevel level, const std::string& tag,
                                                       const std::string& message);

} // namespace vole::utils::logging
