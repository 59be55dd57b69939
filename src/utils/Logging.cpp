#include "utils/Logging.h"

#include "utils/platform/JvmUtils.h"

namespace vole::utils::logging {

namespace {

// Never destroyed: threads may still log while statics are.
std::shared_ptr<Logger>& gExternalLogger = *new std::shared_ptr<Logger>();

LogLevel gMaxInternalLogLevel{0};

} // namespace

Logger::~Logger() = default;

void setExternalLogger(const std::shared_ptr<Logger>& logger)
{
    std::atomic_store(&gExternalLogger, logger);
}

void setInternalLoggerLogLevel(LogLevel level)
{
    gMaxInternalLogLevel = level;
}

void logToExternalLogger(LogLevel level, const std::string& tag, const std::string& message)
{
    if (const auto logger = std::atomic_load(&gExternalLogger)) {
        platform::attachThreadIfNeeded("jni-logger");
        logger->log(level, tag, message);
        return;
    }
    if (level < gMaxInternalLogLevel) {
        return;
    }
    // An internal logger would print here; this build has none.
}

} // namespace vole::utils::logging
