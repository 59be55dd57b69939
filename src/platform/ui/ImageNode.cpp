#include "platform/ui/ImageNode.h"

#include <QtQuick/QQuickWindow>

#include <utility>

namespace kovalin::platform {

void PictureNode::update(QQuickWindow& window, const QImage& image, const QRectF& rect, double opacity)
{
    if (image.isNull() || rect.isEmpty() || opacity <= 0) {
        if (_node) {
            removeChildNode(_node);
            delete std::exchange(_node, nullptr);
        }
        return;
    }
    const bool isNew = !_node;
    if (isNew) {
        _node = window.createImageNode();
        _node->setOwnsTexture(true);
        _node->setFiltering(QSGTexture::Linear);
    }
    if (isNew || image.cacheKey() != _shown) {
        _shown = image.cacheKey();
        _node->setTexture(window.createTextureFromImage(image));
        _node->setSourceRect(QRectF(QPointF(), QSizeF(image.size())));
    }
    _node->setRect(rect);
    setOpacity(opacity);
    if (isNew) {
        appendChildNode(_node);
    }
}

ImageNode::ImageNode()
    : _former(new PictureNode)
    , _current(new PictureNode)
{
    appendChildNode(_former);
    appendChildNode(_current);
}

} // namespace kovalin::platform
