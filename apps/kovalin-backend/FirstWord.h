#pragma once

#include <QtCore/QByteArray>

#include <utility>

namespace kovalin::backend {

/// The text up to the first white space, and what follows it; neither begins or ends with any.
[[nodiscard]] std::pair<QByteArray, QByteArray> firstWord(const QByteArray& text);

} // namespace kovalin::backend
