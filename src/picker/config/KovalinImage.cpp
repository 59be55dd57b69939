#include "picker/config/KovalinImage.h"

#include "picker/config/KovalinResources.h"

#include <QtCore/QHash>

namespace {

using kovalin::platform::VectorImage;
using Pictures = QHash<QString, VectorImage>;

Pictures readPictures()
{
    const QString folder = QStringLiteral("pictures");
    const QString suffix = QStringLiteral(".svg");
    Pictures pictures;
    for (const QString& fileName : kovalinResourceNames(folder)) {
        pictures.insert(fileName.chopped(suffix.size()), VectorImage::fromSvg(kovalinResource(folder, fileName)));
    }
    return pictures;
}

/// All of them, 8 KB of SVG.
const Pictures& allPictures()
{
    // Never destroyed: threads may still ask while the process ends.
    static const auto& pictures = *new Pictures(readPictures());
    return pictures;
}

} // namespace

VectorImage kovalinImageNamed(const QString& name)
{
    return allPictures().value(name);
}

QStringList kovalinImageNames()
{
    QStringList names = allPictures().keys();
    names.sort();
    return names;
}
