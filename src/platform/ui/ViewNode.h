#pragma once

#include "platform/ui/LayerStyle.h"
#include "platform/ui/RoundedPanel.h"

#include <QtQuick/QSGImageNode>
#include <QtQuick/QSGNode>
#include <QtQuick/QSGRectangleNode>
#include <QtQuick/QSGTexture>

#include <array>
#include <memory>

QT_BEGIN_NAMESPACE
class QQuickWindow;
QT_END_NAMESPACE

namespace kovalin::platform {

// These derive from QSGTransformNode, and transform nothing: below a plain QSGNode the software renderer draws what is added later
// at the window's origin.

/// Draws a panel as up to nine pieces of one texture. Render thread only.
class PanelNode final : public QSGTransformNode {
public:
    /// Draws `panel`, moved by `origin`. The texture is made anew only if its picture is another one.
    void update(QQuickWindow& window, const RoundedPanel& panel, const QPointF& origin);

private:
    void setTexture(QQuickWindow& window, const PanelPicture& picture);

    PanelPicture::Key _key;
    /// Shared by the pieces, and so owned here. Qt's own nine-patch node would leak it or delete it, by version and renderer.
    std::unique_ptr<QSGTexture> _texture;
    std::array<QSGImageNode*, 9> _pieces{};
};

/// What a view draws: its shadow, its background with corners and border, its content. Render thread only.
class ViewNode final : public QSGTransformNode {
public:
    void update(QQuickWindow& window, const QSizeF& size, const QColor& background, const LayerStyle& style);

    [[nodiscard]] QSGNode* content() const { return _content; }
    /// Takes over `content`. Another one, or null, takes the place of the former, which is deleted.
    void setContent(QSGNode* content);

private:
    void updateShadow(QQuickWindow& window, const QSizeF& size, const LayerStyle& style, double ratio);
    void updateRectangle(QQuickWindow& window, const QSizeF& size, const QColor& color);
    void updatePanel(QQuickWindow& window, const RoundedPanel& panel);
    /// Puts the nodes that there are into their order.
    void arrange();

    PanelNode* _shadow = nullptr;
    QSGRectangleNode* _rectangle = nullptr;
    PanelNode* _panel = nullptr;
    QSGNode* _content = nullptr;
};

} // namespace kovalin::platform
