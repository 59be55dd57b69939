#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtGui/QImage>

namespace kovalin::platform {

/// The picture that `bytes` encode: PNG, JPEG, GIF, WebP and SVG, told apart by their content; of an animated one the first
/// frame. As the views draw it: upright, 32 bits a pixel, with premultiplied alpha if it has any. Any thread; it takes
/// milliseconds, so not the main one.
///
/// Null for anything else, and then `problem`, unless null, is given a sentence that names what is wrong:
/// - what is damaged or cut off, as far as the format tells;
/// - what says of itself that it has more than 16 megapixels, which is found out before any of it is decoded;
/// - a format whose plugin isn't installed: WebP and SVG come with packages of their own;
/// - an SVG that isn't plain drawing: see `defectOfSvg`.
[[nodiscard]] QImage decodeImage(const QByteArray& bytes, QString* problem = nullptr);

} // namespace kovalin::platform
