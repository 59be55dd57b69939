#pragma once

#include "kovalin-backend/AnswerRule.h"

#include <QtCore/QByteArrayView>
#include <QtCore/QString>

#include <variant>

namespace kovalin::backend {

/// What a line of a script tells a backend: "backend PATH RULE", as "backend /api/configs 503". Otherwise what is
/// wrong with it, in one line.
[[nodiscard]] std::variant<PathRule, QString> readControlLine(QByteArrayView line);

} // namespace kovalin::backend
