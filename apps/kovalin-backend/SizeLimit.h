#pragma once

#include <QtCore/QtGlobal>

namespace kovalin::backend {

/// The longest body of a request.
inline constexpr qint64 kMostBodyBytes = qint64(4) * 1024 * 1024;

/// The longest request, with its line and its headers.
inline constexpr qint64 kMostRequestBytes = kMostBodyBytes + qint64(64) * 1024;

} // namespace kovalin::backend
