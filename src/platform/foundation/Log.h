#pragma once

#include <QtCore/QDebug>
#include <QtCore/QLoggingCategory>
#include <QtCore/QString>

// The log lines of the library. Any thread.
//
// Each folder has one logging category, declared with Q_DECLARE_LOGGING_CATEGORY in a header of the folder and defined
// with Q_LOGGING_CATEGORY, named "kovalin." and the folder, without a threshold: all levels are written unless the host
// turns some off, with QT_LOGGING_RULES or QLoggingCategory::setFilterRules().
//
// `message` is an expression that converts to QString. It goes out as it is, behind the lead-in "function [Line n]
// [LEVEL] "; nothing in it is quoted or expanded. It isn't evaluated while the category's level is turned off.

#define KOVALIN_LOG_DEBUG(category, message) KOVALIN_LOG_LINE(qCDebug, "DEBUG", category, message)
#define KOVALIN_LOG_WARNING(category, message) KOVALIN_LOG_LINE(qCWarning, "WARNING", category, message)
#define KOVALIN_LOG_ERROR(category, message) KOVALIN_LOG_LINE(qCCritical, "ERROR", category, message)

/// What the three above are made of; not for use elsewhere.
#define KOVALIN_LOG_LINE(write, level, category, message)                                                              \
    do {                                                                                                               \
        write(category).noquote().nospace() << ::kovalin::platform::logLine(Q_FUNC_INFO, __LINE__, level, message);    \
    } while (false)

namespace kovalin::platform {

/// The text of one log line: "function [Line n] [LEVEL] " and the message.
[[nodiscard]] QString logLine(const char* function, int line, const char* level, const QString& message);

} // namespace kovalin::platform
