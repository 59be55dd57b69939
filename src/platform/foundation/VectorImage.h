#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSizeF>
#include <QtGui/QColor>
#include <QtGui/QImage>

namespace kovalin::platform {

/// A picture made of lines and areas, drawn anew for each size and pixel ratio and so sharp at all of them; or null, no picture.
/// A value, cheap to copy. Any thread, several at once too.
///
/// A view draws it at its window's pixel ratio and keeps the result until size, ratio or tint change: drawing takes a
/// fraction of a millisecond for an icon.
class VectorImage final {
public:
    /// A null picture.
    VectorImage() = default;

    /// The picture that an SVG document draws; null if it is none or has no size. It must come from within the program: what comes
    /// from outside may make Qt's reader open files, and goes through `decodeImage`.
    [[nodiscard]] static VectorImage fromSvg(const QByteArray& svg);

    [[nodiscard]] bool isNull() const { return _svg.isNull(); }

    /// The size that it was drawn for, in points; empty if it is null.
    [[nodiscard]] QSizeF size() const { return _size; }

    /// Whether only its alpha counts, and the colour comes from the view: false for a picture just made.
    [[nodiscard]] bool isTemplate() const { return _isTemplate; }

    /// The same picture as a template.
    [[nodiscard]] VectorImage asTemplate() const;

    /// The picture at `size` points, stretched if that has another shape than its own, for a window of `pixelRatio`, which the
    /// image's own ratio is set to. 32 bits a pixel with premultiplied alpha. `tint` is the colour of a template and has no
    /// effect on others; its alpha counts too.
    ///
    /// Null for a null picture, a size or ratio that isn't above 0, and for more than 16 megapixels.
    [[nodiscard]] QImage image(const QSizeF& size, qreal pixelRatio, const QColor& tint = Qt::black) const;

    /// Whether two pictures show the same for all sizes.
    friend bool operator==(const VectorImage&, const VectorImage&) = default;

private:
    QByteArray _svg;
    QSizeF _size;
    bool _isTemplate = false;
};

} // namespace kovalin::platform
