#include "picker/views/DrawnPictures.h"

#include "picker/config/KovalinImage.h"
#include "platform/dispatch/ThreadCheck.h"

#include <QtCore/QCache>

#include <QtGui/QRgba64>

using namespace kovalin::platform;

namespace {

/// Enough for the grids and bars of two pickers in windows of different ratios, and for some sizes on the way while a
/// window is being resized.
constexpr qsizetype keptPictures = 32;

struct Drawing {
    QString name;
    QSize pixels;
    double pixelRatio = 1;
    quint64 tint = 0;

    friend bool operator==(const Drawing&, const Drawing&) = default;
};

size_t qHash(const Drawing& drawing, size_t seed = 0)
{
    return qHashMulti(seed, drawing.name, drawing.pixels.width(), drawing.pixels.height(), drawing.pixelRatio,
                      drawing.tint);
}

QImage drawn(const QString& name, const VectorImage& picture, const QSizeF& size, double pixelRatio, const QColor& tint)
{
    assertOnMainThread();
    // Never destroyed, since views may still be laid out while the process ends.
    static auto& pictures = *new QCache<Drawing, QImage>(keptPictures);
    const Drawing key{name, (size * pixelRatio).toSize(), pixelRatio, quint64(tint.rgba64())};
    if (const QImage* const known = pictures.object(key)) {
        return *known;
    }
    const QImage image = picture.image(size, pixelRatio, tint);
    pictures.insert(key, new QImage(image));
    return image;
}

} // namespace

QImage drawnPicture(const QString& name, double pixelRatio)
{
    const VectorImage picture = kovalinImageNamed(name);
    return drawn(name, picture, picture.size(), pixelRatio, {});
}

QImage drawnTemplatePicture(const QString& name, double pixelRatio, const QColor& tint)
{
    return drawnTemplatePicture(name, {}, pixelRatio, tint);
}

QImage drawnTemplatePicture(const QString& name, const QSizeF& bounds, double pixelRatio, const QColor& tint)
{
    const VectorImage picture = kovalinImageNamed(name).asTemplate();
    const QSizeF size = bounds.isEmpty() ? picture.size() : picture.size().scaled(bounds, Qt::KeepAspectRatio);
    return drawn(name, picture, size, pixelRatio, tint);
}
