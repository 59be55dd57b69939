#pragma once

#include <QtCore/QStringView>
#include <QtGui/QColor>

namespace kovalin::platform {

/// The opaque colour that a hexadecimal text such as "#1A2B3C" names. Any thread.
///
/// Every "#" is removed, wherever it stands. With fewer than 6 UTF-16 units left the colour is black. What is left is
/// read like C's strtol reads base 16 into 64 bits: leading white space, a sign and "0x" are taken, reading stops at
/// the first character that is no hexadecimal digit, no digit at all is 0, and too large a number is the largest one.
/// Bits 16 to 23 of the number are red, 8 to 15 green, 0 to 7 blue.
[[nodiscard]] QColor colorWithHexString(QStringView text);

/// Whether two colours show the same: equal red, green, blue and alpha (16 bits each), whatever colour model they were
/// made in. An invalid colour equals an invalid one only. Any thread.
[[nodiscard]] bool colorsEqual(const QColor& a, const QColor& b);

} // namespace kovalin::platform
