#pragma once

#include <QtCore/QByteArray>

#include <optional>

namespace kovalin::platform {

enum class ImageFormat { Png, Jpeg, Gif, WebP, Svg };

/// As Qt's plugins are asked for it, such as "png".
[[nodiscard]] const char* nameOf(ImageFormat format);

/// By the first bytes alone; absent if they begin none of these. Any thread.
[[nodiscard]] std::optional<ImageFormat> imageFormatOf(const QByteArray& bytes);

/// False for a picture of `format` that was cut off, where its reader would make up the rest; true where the reader finds out
/// itself, and for a GIF whose first frame is whole. Any thread.
[[nodiscard]] bool isWhole(const QByteArray& bytes, ImageFormat format);

} // namespace kovalin::platform
