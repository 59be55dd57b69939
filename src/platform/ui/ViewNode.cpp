#include "platform/ui/ViewNode.h"

#include <QtQuick/QQuickWindow>

#include <initializer_list>
#include <utility>

namespace kovalin::platform {

namespace {

bool isDrawn(const QColor& color)
{
    return color.isValid() && color.alpha() > 0;
}

template <class Node>
void remove(QSGNode& parent, Node*& node)
{
    if (node) {
        parent.removeChildNode(node);
        delete std::exchange(node, nullptr);
    }
}

} // namespace

void PanelNode::update(QQuickWindow& window, const RoundedPanel& panel, const QPointF& origin)
{
    const PanelPicture picture = PanelPicture::of(panel);
    if (!_texture || !(picture.key == _key)) {
        setTexture(window, picture);
    }
    const auto pieces = panelPieces(picture, panel);
    for (size_t index = 0; index < pieces.size(); ++index) {
        auto*& node = _pieces[index];
        const PanelPiece& piece = pieces[index];
        if (piece.target.isEmpty()) {
            remove(*this, node);
            continue;
        }
        if (!node) {
            node = window.createImageNode();
            node->setTexture(_texture.get());
            node->setFiltering(QSGTexture::Linear);
            appendChildNode(node);
        }
        node->setSourceRect(piece.source);
        node->setRect(piece.target.translated(origin));
    }
}

void PanelNode::setTexture(QQuickWindow& window, const PanelPicture& picture)
{
    _key = picture.key;
    // The former texture goes only when no piece refers to it any more.
    const auto former =
        std::exchange(_texture, std::unique_ptr<QSGTexture>(window.createTextureFromImage(picture.image())));
    for (QSGImageNode* piece : _pieces) {
        if (piece) {
            piece->setTexture(_texture.get());
        }
    }
}

void ViewNode::update(QQuickWindow& window, const QSizeF& size, const QColor& background, const LayerStyle& style)
{
    const double ratio = window.effectiveDevicePixelRatio();
    updateShadow(window, size, style, ratio);

    const bool hasBorder = style.borderWidth > 0 && isDrawn(style.borderColor);
    const bool isEmpty = size.isEmpty() || (!isDrawn(background) && !hasBorder);
    const bool isPlain = style.cornerRadius <= 0 && !hasBorder;
    if (!isEmpty && isPlain) {
        remove(*this, _panel);
        updateRectangle(window, size, background);
    } else if (!isEmpty) {
        remove(*this, _rectangle);
        updatePanel(window, {.size = size,
                             .cornerRadius = style.cornerRadius,
                             .color = background,
                             .borderWidth = hasBorder ? style.borderWidth : 0,
                             .borderColor = style.borderColor,
                             .devicePixelRatio = ratio});
    } else {
        remove(*this, _rectangle);
        remove(*this, _panel);
    }
    arrange();
}

void ViewNode::updateShadow(QQuickWindow& window, const QSizeF& size, const LayerStyle& style, double ratio)
{
    const LayerShadow& shadow = style.shadow;
    const QRectF caster = shadow.path.value_or(QRectF(QPointF(), size));
    if (!isDrawn(shadow.color) || caster.isEmpty()) {
        remove(*this, _shadow);
        return;
    }
    if (!_shadow) {
        _shadow = new PanelNode;
    }
    _shadow->update(window,
                    {.size = caster.size(),
                     .cornerRadius = shadow.path ? shadow.pathCornerRadius : style.cornerRadius,
                     .color = shadow.color,
                     .blurRadius = shadow.radius,
                     .devicePixelRatio = ratio},
                    caster.topLeft() + shadow.offset);
}

void ViewNode::updateRectangle(QQuickWindow& window, const QSizeF& size, const QColor& color)
{
    if (!_rectangle) {
        _rectangle = window.createRectangleNode();
    }
    _rectangle->setRect(QRectF(QPointF(), size));
    _rectangle->setColor(color);
}

void ViewNode::updatePanel(QQuickWindow& window, const RoundedPanel& panel)
{
    if (!_panel) {
        _panel = new PanelNode;
    }
    _panel->update(window, panel, {});
}

void ViewNode::setContent(QSGNode* content)
{
    if (content != _content) {
        remove(*this, _content);
        _content = content;
        arrange();
    }
}

void ViewNode::arrange()
{
    const std::initializer_list<QSGNode*> order = {_shadow, _rectangle, _panel, _content};
    QSGNode* above = firstChild();
    for (QSGNode* const node : order) {
        if (!node) {
            continue;
        }
        if (node == above) {
            above = above->nextSibling();
        } else if (node->parent() != this && above) {
            insertChildNodeBefore(node, above);
        } else if (node->parent() != this) {
            appendChildNode(node);
        }
    }
}

} // namespace kovalin::platform
