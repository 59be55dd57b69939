#pragma once

#include "platform/ui/View.h"

#include <QtGui/QMatrix4x4>

#include <optional>

namespace kovalin::platform {

/// Applies a view's transform as it is on screen, about the centre that is on screen.
class PresentedTransform final : public QQuickTransform {
public:
    explicit PresentedTransform(QQuickItem* item)
        : QQuickTransform(item)
        , _item(item)
    {
        appendToItem(item);
    }

    [[nodiscard]] const ViewTransform& value() const { return _value; }

    void setValue(const ViewTransform& value)
    {
        _value = value;
        update();
    }

    void centerDidMove() { update(); }

    void applyTo(QMatrix4x4* matrix) const override
    {
        const auto centerX = static_cast<float>(_item->width() / 2);
        const auto centerY = static_cast<float>(_item->height() / 2);
        matrix->translate(centerX + static_cast<float>(_value.translateX),
                          centerY + static_cast<float>(_value.translateY));
        matrix->scale(static_cast<float>(_value.scaleX), static_cast<float>(_value.scaleY));
        matrix->translate(-centerX, -centerY);
    }

private:
    const QQuickItem* const _item;
    ViewTransform _value;
};

/// What a view knows.
struct View::State {
    QList<std::shared_ptr<View>> subviews;
    /// Takes itself out when it goes.
    View* superview = nullptr;

    QRectF frame;
    double alpha = 1;
    ViewTransform transform;
    QColor backgroundColor;
    bool isHidden = false;
    LayerStyle layerStyle;
    std::optional<QMarginsF> safeAreaInsets;

    /// On screen; position, size and opacity are the item's own, and the transform is a child object of it.
    QColor presentedBackgroundColor = Qt::transparent;
    PresentedTransform* presentedTransform = nullptr;
    double presentedDissolve = 1;
    /// The item's geometry changes since this view changes it.
    bool isPresentingFrame = false;

    bool needsLayout = false;
    bool isInLayout = false;
    bool hasHadSize = false;
    bool drawsContent = false;

    /// What the view was told last. Only compared, never followed.
    const QQuickItem* toldParent = nullptr;
    const QQuickWindow* toldWindow = nullptr;
    bool toldVisible = true;
    double toldDevicePixelRatio = 0;
};

} // namespace kovalin::platform
