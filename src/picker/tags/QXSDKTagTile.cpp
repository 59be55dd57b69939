#include "picker/tags/QXSDKTagTile.h"

#include "platform/foundation/Color.h"

#include <QtGui/QRgba64>

using kovalin::platform::colorsEqual;

QXSDKTagTile::QXSDKTagTile(const QString& text, const QColor& color)
    : _text(text)
    , _color(color)
{
}

bool QXSDKTagTile::isEqual(const QXSDKTagTile& other) const
{
    return this == &other || (_text == other._text && colorsEqual(_color, other._color));
}

std::size_t QXSDKTagTile::hash() const
{
    // By what is shown, since equal colours may be made in different models.
    return qHash(_text) ^ qHash(quint64(_color.rgba64()));
}

std::shared_ptr<QXSDKTagTile> QXSDKTagTile::copy() const
{
    return std::make_shared<QXSDKTagTile>(*this);
}
