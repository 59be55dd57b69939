#pragma once

#include "platform/ui/Label.h"

#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtGui/QColor>

class QXSDKKovalinStickerPickerTheme;

/// A pill: the text of a tag on a rounded ground, with a crisp rim that is heavier at the foot. Thread and lifetime as of
/// `View`.
///
/// It takes no presses itself, so that what lies below can be tapped and scrolled: the view that it lies in takes them,
/// and tells it by `setIsTouched`.
class QXSDKKovalinTagView final : public kovalin::platform::Label {
    Q_OBJECT

public:
    QXSDKKovalinTagView();
    ~QXSDKKovalinTagView() override;

    /// The colours of pills' texts and shadows.
    void applyTheme(const QXSDKKovalinStickerPickerTheme& theme);

    /// What the pill is filled with; transparent where it is none. It is set as of any view.
    [[nodiscard]] QColor backgroundColor() const;

    /// Of a pill with this text, in points: 24 high and 20 wider than the text.
    [[nodiscard]] static QSizeF sizeForText(const QString& text);
    /// The pill's own size, whatever `size` is.
    [[nodiscard]] QSizeF sizeThatFits(const QSizeF& size) const override;
    /// Takes that size, without rounding it; keeps the origin.
    void sizeToFit();

    /// Whether it is being pressed, and shows it; false at first.
    [[nodiscard]] bool isTouched() const;
    void setIsTouched(bool isTouched);

    void layoutSubviews() override;

private:
    void _adjustCorners();

    bool _isTouched = false;
};
