#include "platform/foundation/Log.h"

namespace kovalin::platform {

QString logLine(const char* function, int line, const char* level, const QString& message)
{
    // Put together by appending: a place holder in the message must stay what it is.
    return QString::fromUtf8(function) + QStringLiteral(" [Line ") + QString::number(line) + QStringLiteral("] [") +
           QString::fromUtf8(level) + QStringLiteral("] ") + message;
}

} // namespace kovalin::platform
