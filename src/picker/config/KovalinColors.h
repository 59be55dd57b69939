#pragma once

#include <QtGui/QColor>

// The fixed colours of the picker, all opaque and in RGB. Any thread.
//
// QColor keeps a channel in 16 bits, and a hue in hundredths of a degree: what is read back lies within 1/65535 of the number
// that a colour is defined by, which is far below a step of the 8 bits that are shown.

/// Red 0.1, green 0.61, blue 0.99: #1A9CFC. Nothing in the library uses it.
[[nodiscard]] QColor kovalinBlue();

/// Hue 0.4305, saturation 0.72, brightness 0.79: #38C98D.
[[nodiscard]] QColor kovalinGreen();

/// Hue 0.4305, saturation 0.72, brightness 0.56: #288F64. The green of what is pressed.
[[nodiscard]] QColor kovalinDarkGreen();

/// Red 0.9059, green 0.298, blue 0.2353: #E74C3C.
[[nodiscard]] QColor kovalinErrorRed();

/// Red 0.5, green 0.51, blue 0.53: #808287.
[[nodiscard]] QColor kovalinGreyTextColor();

/// Red, green and blue 0.85: #D9D9D9.
[[nodiscard]] QColor kovalinBorderColor();

/// #858E98.
[[nodiscard]] QColor kovalinNavIconColor();
