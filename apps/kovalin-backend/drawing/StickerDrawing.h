#pragma once

#include "kovalin-backend/drawing/StickerTemplates.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtGui/QImage>

#include <optional>

/// The pictures that the development server hands out. Any thread; a QGuiApplication has to be there, for the font of
/// characters that the lettering doesn't have. The same arguments give the same picture.
namespace kovalin::drawing {

inline constexpr int usualSize = 320; // pixels
inline constexpr int smallestSize = 16;
inline constexpr int largestSize = 1024;

/// A sticker of `size` by `size` pixels, transparent around its white edge, with nothing cut off at the borders. A size out of
/// range counts as the nearest one in it. `friendAvatarId` is for templates for two alone; absent, the second figure has the
/// look of the empty id.
[[nodiscard]] QImage drawSticker(const StickerTemplate& sticker, const QString& avatarId,
                                 const std::optional<QString>& friendAvatarId = std::nullopt, int size = usualSize);

/// The avatar's head on a disc.
[[nodiscard]] QImage drawAvatarIcon(const QString& avatarId, int size = usualSize);

/// What the server answers: the sticker of that template as a PNG file; nothing when there is no such template.
[[nodiscard]] std::optional<QByteArray> stickerPng(const StickerTemplates& templates, const QString& templateId,
                                                   const QString& avatarId,
                                                   const std::optional<QString>& friendAvatarId = std::nullopt,
                                                   int size = usualSize);

} // namespace kovalin::drawing
