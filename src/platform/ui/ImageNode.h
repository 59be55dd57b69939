#pragma once

#include <QtGui/QImage>
#include <QtQuick/QSGImageNode>
#include <QtQuick/QSGNode>

QT_BEGIN_NAMESPACE
class QQuickWindow;
QT_END_NAMESPACE

namespace kovalin::platform {

/// One picture in one place, more or less opaque. Render thread only.
class PictureNode final : public QSGOpacityNode {
public:
    /// The texture is made anew only if the picture is another one. A null picture draws nothing.
    void update(QQuickWindow& window, const QImage& image, const QRectF& rect, double opacity);

private:
    QSGImageNode* _node = nullptr;
    qint64 _shown = 0;
};

/// A picture, and during a dissolve the former one below it. Render thread only.
class ImageNode final : public QSGTransformNode {
public:
    ImageNode();

    [[nodiscard]] PictureNode& former() { return *_former; }
    [[nodiscard]] PictureNode& current() { return *_current; }

private:
    PictureNode* const _former;
    PictureNode* const _current;
};

} // namespace kovalin::platform
