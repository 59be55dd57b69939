#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

#include <chrono>
#include <optional>

namespace kovalin::kits {

/// The delay that the header "Retry-After" asks for: a count of seconds, or a date in one of the three forms of HTTP, seen from
/// `now`, in milliseconds since 1970. Zero for a date that has passed; absent for anything else. Any thread.
[[nodiscard]] std::optional<std::chrono::milliseconds> retryAfterIn(const QByteArray& value, qint64 now);

} // namespace kovalin::kits
