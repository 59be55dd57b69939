#include "kovalin-backend/ControlLine.h"

#include "kovalin-backend/FirstWord.h"

namespace kovalin::backend {

std::variant<PathRule, QString> readControlLine(QByteArrayView line)
{
    const auto [command, order] = firstWord(line.toByteArray());
    if (command != "backend" || order.isEmpty()) {
        return QStringLiteral("no such command: a line is \"backend PATH RULE\"");
    }
    return PathRule::fromText(order);
}

} // namespace kovalin::backend
