#pragma once

#include "platform/ui/View.h"

#include <QtCore/QMarginsF>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QImage>

#include <functional>

namespace kovalin::platform {

/// A picture, a title or both, to be pressed by mouse, touch, the space and return keys, or an assistive tool. Thread and
/// lifetime as of `View`. A disabled button (`setEnabled(false)`) takes nothing.
///
/// Handlers are called on the main thread, and may do anything, such as letting go of the button.
class Button : public View {
    Q_OBJECT

public:
    Button();
    ~Button() override;

    [[nodiscard]] QString title() const;
    void setTitle(const QString& title);
    /// Takes the title's place while the button is disabled; empty for none then.
    void setTitleWhileDisabled(const QString& title);
    void setTitleFont(const QFont& font);
    void setTitleColor(const QColor& color);
    void setImage(const QImage& image, bool isTemplate = false);
    /// Of a template picture.
    void setTintColor(const QColor& color);
    /// Around picture and title, in points; 0 at first.
    void setContentInsets(const QMarginsF& insets);
    /// How opaque picture and title are while pressed: 0.5 at first, 1 for buttons that show it otherwise.
    void setHighlightedAlpha(double alpha);

    /// Whether it is being pressed, and would act if let go.
    [[nodiscard]] bool isHighlighted() const;

    /// The press begins.
    void setOnTouchDown(std::function<void()> handler);
    /// The press ends in the button: what a button is for. Keys and assistive tools lead here too.
    void setOnTouchUpInside(std::function<void()> handler);
    /// The press ends outside, or is taken away, as by scrolling.
    void setOnTouchCancel(std::function<void()> handler);

    [[nodiscard]] QSizeF sizeThatFits(const QSizeF& size) const override;
    void layoutSubviews() override;

    /// As when it is tapped. Does nothing while disabled.
    Q_INVOKABLE void press();

protected:
    /// `isHighlighted()` is different.
    virtual void highlightedDidChange();
    /// The press begins; before the handler of that.
    virtual void pressDidBegin();
    /// The press ends, however it does; before the handler of that.
    virtual void pressDidEnd();

    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    struct State;

    void begin();
    void end(bool isInside);
    void setHighlighted(bool isHighlighted);
    void applyTitle();
    void showFocus(bool isShown);

    const std::unique_ptr<State> _button;
};

} // namespace kovalin::platform
