#pragma once

#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QImage>

// The picker's own pictures, drawn once for each size, ratio and colour that is in use and shared by all views: a grid
// has dozens of tiles, and each shows them again whenever it is used again. Main thread only.

/// The picture `name` in its own size and colours, for windows of `pixelRatio`. Null for an unknown name.
[[nodiscard]] QImage drawnPicture(const QString& name, double pixelRatio);

/// The same in the colour `tint`.
[[nodiscard]] QImage drawnTemplatePicture(const QString& name, double pixelRatio, const QColor& tint);
/// The same as large as fits into `bounds` points whole, or in its own size if those are empty.
[[nodiscard]] QImage drawnTemplatePicture(const QString& name, const QSizeF& bounds, double pixelRatio,
                                          const QColor& tint);
