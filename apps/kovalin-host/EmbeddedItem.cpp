#include "kovalin-host/EmbeddedItem.h"

namespace kovalin::host {

EmbeddedItem::EmbeddedItem(QQuickItem* parent)
    : QQuickItem(parent)
    , _frame(new QQuickItem(this))
{
    _frame->setClip(true);
}

void EmbeddedItem::setContent(QQuickItem* content)
{
    if (_content && _content != content) {
        _content->setParentItem(nullptr);
    }
    _content = content;
    if (_content) {
        _content->setParentItem(_frame);
    }
    layOut();
}

void EmbeddedItem::cutTo(const std::optional<QSizeF>& size)
{
    _cut = size;
    layOut();
}

void EmbeddedItem::setFrameHidden(bool isHidden)
{
    _frame->setVisible(!isHidden);
}

void EmbeddedItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    layOut();
}

void EmbeddedItem::layOut()
{
    _frame->setSize(_cut.value_or(size()));
    if (_content) {
        _content->setPosition({});
        _content->setSize(size());
    }
}

} // namespace kovalin::host
