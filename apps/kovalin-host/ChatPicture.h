#pragma once

#include <QtCore/QVariant>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtQuick/QQuickPaintedItem>

namespace kovalin::host {

/// A picture in a message, as large as there is room. Main thread.
class ChatPicture : public QQuickPaintedItem {
    Q_OBJECT
    /// A QImage; anything else for nothing to show.
    Q_PROPERTY(QVariant image READ image WRITE setImage NOTIFY imageChanged)

public:
    using QQuickPaintedItem::QQuickPaintedItem;

    [[nodiscard]] QVariant image() const { return _image; }
    void setImage(const QVariant& image)
    {
        _image = image.value<QImage>();
        update();
        Q_EMIT imageChanged();
    }

    void paint(QPainter* painter) override
    {
        if (_image.isNull()) {
            return;
        }
        QRectF frame(QPointF(), QSizeF(_image.size()).scaled(size(), Qt::KeepAspectRatio));
        frame.moveCenter(boundingRect().center());
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->drawImage(frame, _image);
    }

Q_SIGNALS:
    void imageChanged();

private:
    QImage _image;
};

} // namespace kovalin::host
