#include "platform/ui/Button.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/ImageView.h"
#include "platform/ui/Keys.h"
#include "platform/ui/Label.h"
#include "platform/ui/QuickComponents.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>
#include <QtQuick/QQuickWindow>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace kovalin::platform {

namespace {

/// Points between picture and title.
constexpr double contentSpacing = 8;
/// Points from the button's edge to the outer edge of the ring that shows the keyboard's focus, and that ring's width.
constexpr double focusRingDistance = 3;
constexpr double focusRingWidth = 2;

} // namespace

struct Button::State {
    std::shared_ptr<ImageView> image = makeView<ImageView>();
    std::shared_ptr<Label> label = makeView<Label>();
    std::shared_ptr<View> focusRing = makeView<View>();

    QString title;
    std::optional<QString> titleWhileDisabled;
    QMarginsF insets;
    double highlightedAlpha = 0.5;

    bool isPressed = false;
    bool isHighlighted = false;

    std::function<void()> onTouchDown;
    std::function<void()> onTouchUpInside;
    std::function<void()> onTouchCancel;

    [[nodiscard]] double spacing() const
    {
        return image->image().isNull() || label->text().isEmpty() ? 0 : contentSpacing;
    }
};

Button::Button()
    : _button(std::make_unique<State>())
{
    _button->label->setTextAlignment(TextAlignment::Center);
    _button->focusRing->setBorder(focusRingWidth, QGuiApplication::palette().color(QPalette::Highlight));
    _button->focusRing->setHidden(true);
    addSubview(_button->image);
    addSubview(_button->label);
    addSubview(_button->focusRing);

    setAcceptedMouseButtons(Qt::LeftButton);
    setActiveFocusOnTab(true);
    setAccessibilityRole(QAccessible::Button);
    QuickComponents::shared().connectAccessiblePress(*this, "press()");
    connect(this, &QQuickItem::enabledChanged, this, &Button::applyTitle);
}

Button::~Button() = default;

QString Button::title() const
{
    return _button->title;
}

void Button::setTitle(const QString& title)
{
    assertOnMainThread();
    _button->title = title;
    setAccessibilityLabel(title);
    applyTitle();
}

void Button::setTitleWhileDisabled(const QString& title)
{
    assertOnMainThread();
    _button->titleWhileDisabled = title;
    applyTitle();
}

void Button::applyTitle()
{
    const bool isUsual = isEnabled() || !_button->titleWhileDisabled;
    _button->label->setText(isUsual ? _button->title : *_button->titleWhileDisabled);
    setNeedsLayout();
}

void Button::setTitleFont(const QFont& font)
{
    _button->label->setFont(font);
    setNeedsLayout();
}

void Button::setTitleColor(const QColor& color)
{
    _button->label->setTextColor(color);
}

void Button::setImage(const QImage& image, bool isTemplate)
{
    _button->image->setImage(image, isTemplate);
    setNeedsLayout();
}

void Button::setTintColor(const QColor& color)
{
    _button->image->setTintColor(color);
}

void Button::setContentInsets(const QMarginsF& insets)
{
    assertOnMainThread();
    _button->insets = insets;
    setNeedsLayout();
}

void Button::setHighlightedAlpha(double alpha)
{
    assertOnMainThread();
    _button->highlightedAlpha = alpha;
}

bool Button::isHighlighted() const
{
    return _button->isHighlighted;
}

void Button::setOnTouchDown(std::function<void()> handler)
{
    assertOnMainThread();
    _button->onTouchDown = std::move(handler);
}

void Button::setOnTouchUpInside(std::function<void()> handler)
{
    assertOnMainThread();
    _button->onTouchUpInside = std::move(handler);
}

void Button::setOnTouchCancel(std::function<void()> handler)
{
    assertOnMainThread();
    _button->onTouchCancel = std::move(handler);
}

// Layout

QSizeF Button::sizeThatFits(const QSizeF& size) const
{
    const QSizeF image = _button->image->sizeThatFits(size);
    const QSizeF label = _button->label->sizeThatFits(size);
    const QSizeF content(image.width() + _button->spacing() + label.width(), std::max(image.height(), label.height()));
    return content.grownBy(_button->insets).boundedTo(size);
}

void Button::layoutSubviews()
{
    const QRectF area = bounds().marginsRemoved(_button->insets);
    const QSizeF image = _button->image->sizeThatFits(area.size()).boundedTo(area.size());
    QSizeF label = _button->label->sizeThatFits(area.size());
    label.setWidth(std::clamp(area.width() - image.width() - _button->spacing(), 0.0, label.width()));

    const double width = image.width() + _button->spacing() + label.width();
    const double left = std::round(area.center().x() - width / 2);
    const auto place = [&](const QSizeF& size, double x) {
        const double inDirection =
            QGuiApplication::layoutDirection() == Qt::RightToLeft ? 2 * left + width - x - size.width() : x;
        return QRectF(QPointF(inDirection, std::round(area.center().y() - size.height() / 2)), size);
    };
    _button->image->setFrame(place(image, left));
    _button->label->setFrame(place(label, left + width - label.width()));

    constexpr double distance = focusRingDistance;
    _button->focusRing->setFrame(bounds().adjusted(-distance, -distance, distance, distance));
    _button->focusRing->setCornerRadius(layerStyle().cornerRadius + distance);
}

// Pressing

void Button::begin()
{
    const auto self = weak_from_this().lock();
    if (!self) {
        return;
    }
    _button->isPressed = true;
    setHighlighted(true);
    pressDidBegin();
    if (const auto handler = _button->onTouchDown) {
        handler();
    }
}

void Button::end(bool isInside)
{
    // The handler may let the last reference go.
    const auto self = weak_from_this().lock();
    _button->isPressed = false;
    if (!self) {
        return; // taken away by its own end
    }
    setHighlighted(false);
    pressDidEnd();
    if (const auto handler = isInside ? _button->onTouchUpInside : _button->onTouchCancel) {
        handler();
    }
}

void Button::setHighlighted(bool isHighlighted)
{
    if (isHighlighted == _button->isHighlighted) {
        return;
    }
    _button->isHighlighted = isHighlighted;
    const double alpha = isHighlighted ? _button->highlightedAlpha : 1;
    _button->image->setAlpha(alpha);
    _button->label->setAlpha(alpha);
    highlightedDidChange();
}

void Button::highlightedDidChange() {}

void Button::pressDidBegin() {}

void Button::pressDidEnd() {}

void Button::press()
{
    assertOnMainThread();
    const auto self = weak_from_this().lock();
    if (isEnabled() && !_button->isPressed) {
        begin();
        // The handler of the beginning may have ended it, as by disabling the button.
        if (_button->isPressed) {
            end(true);
        }
    }
}

void Button::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    begin();
}

void Button::mouseMoveEvent(QMouseEvent* event)
{
    if (_button->isPressed) {
        setHighlighted(contains(event->position()));
    }
}

void Button::mouseReleaseEvent(QMouseEvent* event)
{
    if (_button->isPressed) {
        end(contains(event->position()));
    }
}

void Button::mouseUngrabEvent()
{
    // It also comes after each release.
    if (_button->isPressed) {
        end(false);
    }
}

void Button::keyPressEvent(QKeyEvent* event)
{
    if (!isPressKey(event->key())) {
        View::keyPressEvent(event);
    } else if (!event->isAutoRepeat() && !_button->isPressed) {
        begin();
    }
}

void Button::keyReleaseEvent(QKeyEvent* event)
{
    if (!isPressKey(event->key())) {
        View::keyReleaseEvent(event);
    } else if (!event->isAutoRepeat() && _button->isPressed) {
        end(true);
    }
}

void Button::focusInEvent(QFocusEvent* event)
{
    View::focusInEvent(event);
    showFocus(isKeyboardReason(event->reason()));
}

void Button::focusOutEvent(QFocusEvent* event)
{
    View::focusOutEvent(event);
    showFocus(false);
    if (_button->isPressed) {
        end(false);
    }
}

void Button::showFocus(bool isShown)
{
    _button->focusRing->setHidden(!isShown);
}

} // namespace kovalin::platform
