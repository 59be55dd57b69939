#include "kovalin-backend/ControlLine.h"

namespace kovalin::backend {

std::variant<PathRule, QString> readControlLine(QByteArrayView line)
{
    const QByteArray words = line.toByteArray().simplified();
    constexpr QByteArrayView command = "backend ";
    if (!words.startsWith(command)) {
        return QStringLiteral("no such command: a line is \"backend PATH RULE\"");
    }
    return PathRule::fromText(words.sliced(command.size()));
}

} // namespace kovalin::backend
