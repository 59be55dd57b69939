#pragma once

#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QImage>

// The pictures that tiles show beside stickers, drawn once for each size, ratio and colour that is in use and shared by
// all tiles: a grid has dozens of tiles, and each shows them again whenever it is used again. Main thread only.

/// The picture `name` in the colour `tint`, as large as fits into `bounds` points whole, or in its own size if those
/// are empty, for windows of `pixelRatio`. Null for an unknown name.
[[nodiscard]] QImage templateTilePicture(const QString& name, const QSizeF& bounds, double pixelRatio,
                                         const QColor& tint);

/// The picture `name` in its own size and colours. Null for an unknown name.
[[nodiscard]] QImage tilePicture(const QString& name, double pixelRatio);
