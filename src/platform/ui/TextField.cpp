#include "platform/ui/TextField.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/QuickComponents.h"
#include "platform/ui/TextFieldState.h"

#include <QtCore/QScopedValueRollback>
#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kovalin::platform {

namespace {

/// Relative luminance at which black and white stand out equally, by the contrast that accessibility guidelines measure.
constexpr double middleLuminance = 0.179;

QString limited(const QString& text)
{
    const bool isCutInPair = text.size() > TextField::maxLength && text.at(TextField::maxLength - 1).isHighSurrogate();
    return text.left(isCutInPair ? TextField::maxLength - 1 : TextField::maxLength);
}

/// As it is drawn: on one line.
QString asShown(QString text)
{
    const auto breaks = [](QChar character) {
        return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
               character == QChar::ParagraphSeparator || character == QChar::ObjectReplacementCharacter;
    };
    std::replace_if(text.begin(), text.end(), breaks, u' ');
    return text;
}

QColor legibleOn(const QColor& background)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    const double luminance =
        0.2126 * linear(background.redF()) + 0.7152 * linear(background.greenF()) + 0.0722 * linear(background.blueF());
    return luminance > middleLuminance ? Qt::black : Qt::white;
}

bool isRightToLeft()
{
    return QGuiApplication::layoutDirection() == Qt::RightToLeft;
}

} // namespace

TextField::TextField()
    : _field(std::make_unique<State>())
{
    addSubview(_field->area);
    setAcceptedMouseButtons(Qt::LeftButton);
    setCursor(Qt::IBeamCursor);
    QuickItem& input = _field->input();
    input.set(QuickProperty::VerticalAlignment, int(Qt::AlignVCenter));
    input.set(QuickProperty::MaximumLength, maxLength);
    setTextColor(Qt::black);
    setTintColor(Qt::black);
    showText();
    QuickComponents::shared().setAccessibleIgnored(*_field->area->placeholder);

    if (QQuickItem* const item = _field->item()) {
        item->setCursor(Qt::IBeamCursor);
        item->setActiveFocusOnTab(true);
        item->installEventFilter(this);
        QuickComponents::shared().setAccessibleRole(*item, QAccessible::EditableText);
        input.observe(QuickProperty::DisplayText, [this] { shownTextDidChange(); });
        connect(item, &QQuickItem::activeFocusChanged, this, &TextField::activeFocusDidChange);
        connect(item, &QQuickItem::focusChanged, this, &TextField::focusDidGoElsewhere);
        // Assistive tools see the item, and find it by the same identifier.
        connect(this, &QObject::objectNameChanged, item, [item](const QString& name) { item->setObjectName(name); });
    }
}

TextField::~TextField()
{
    disconnect(_field->windowFocus);
    // Somebody else may still hold the area.
    if (QQuickItem* const item = _field->item()) {
        item->removeEventFilter(this);
        item->disconnect(this);
    }
    _field->input() = {};
}

// Text

QString TextField::text() const
{
    return _field->shownText;
}

void TextField::setText(const QString& text)
{
    assertOnMainThread();
    const QScopedValueRollback isSetting(_field->isSettingText, true);
    if (!_field->item()) {
        _field->shownText = asShown(limited(text));
        return;
    }
    endComposition({});
    _field->input().set(QuickProperty::Text, limited(text));
    if (!_field->isEditing) {
        showBeginning();
    }
    showText();
}

void TextField::showBeginning()
{
    _field->input().set(QuickProperty::CursorPosition, 0);
}

void TextField::showText()
{
    if (_field->item()) {
        _field->shownText = asShown(_field->input().get(QuickProperty::DisplayText).toString());
    }
    _field->area->placeholder->setHidden(!_field->shownText.isEmpty());
}

QString TextField::placeholder() const
{
    return _field->area->placeholder->text();
}

void TextField::setPlaceholder(const QString& placeholder)
{
    _field->area->placeholder->setText(placeholder);
    if (QQuickItem* const item = _field->item()) {
        QuickComponents::shared().setAccessibleName(*item, placeholder);
    }
}

// Look

void TextField::setPlaceholderColor(const QColor& color)
{
    _field->area->placeholder->setTextColor(color);
}

void TextField::setFont(const QFont& font)
{
    _field->area->placeholder->setFont(font);
    _field->input().set(QuickProperty::Font, _field->area->placeholder->font());
}

void TextField::setTextColor(const QColor& color)
{
    assertOnMainThread();
    _field->input().set(QuickProperty::Color, color);
}

void TextField::setTintColor(const QColor& color)
{
    assertOnMainThread();
    _field->input().set(QuickProperty::SelectionColor, color);
    _field->input().set(QuickProperty::SelectedTextColor, legibleOn(color));
}

void TextField::setLeftView(const std::shared_ptr<View>& view)
{
    assertOnMainThread();
    if (const auto former = std::exchange(_field->leftView, view)) {
        former->removeFromSuperview();
    }
    if (view) {
        insertSubview(view, 0);
        QuickComponents::shared().setAccessibleIgnored(*view);
    }
    setNeedsLayout();
}

void TextField::setTextInsets(const QMarginsF& insets)
{
    assertOnMainThread();
    if (insets != _field->insets) {
        _field->insets = insets;
        setNeedsLayout();
    }
}

void TextField::layoutSubviews()
{
    QRectF area = bounds();
    if (const auto& view = _field->leftView) {
        QRectF place(QPointF(), view->frame().size());
        place.moveTop(std::round((area.height() - place.height()) / 2));
        place.moveLeft(isRightToLeft() ? area.right() - place.width() : area.left());
        view->setFrame(place);
        isRightToLeft() ? area.setRight(place.left()) : area.setLeft(place.right());
    }
    _field->area->setFrame(area.marginsRemoved(_field->insets));
    // Text of either direction begins where the placeholder stood.
    const bool isMirrored = isRightToLeft();
    _field->area->placeholder->setTextAlignment(isMirrored ? TextAlignment::Right : TextAlignment::Left);
    _field->input().set(QuickProperty::HorizontalAlignment, int(isMirrored ? Qt::AlignRight : Qt::AlignLeft));
}

// Input methods

void TextField::setAutocorrects(bool autocorrects)
{
    assertOnMainThread();
    _field->autocorrects = autocorrects;
    applyHints();
}

void TextField::setAutocapitalizes(bool autocapitalizes)
{
    assertOnMainThread();
    _field->autocapitalizes = autocapitalizes;
    applyHints();
}

void TextField::applyHints()
{
    Qt::InputMethodHints hints;
    hints.setFlag(Qt::ImhNoPredictiveText, !_field->autocorrects);
    hints.setFlag(Qt::ImhNoAutoUppercase, !_field->autocapitalizes);
    _field->input().set(QuickProperty::InputMethodHints, QVariant::fromValue(hints));
}

void TextField::setReturnKeyType(Qt::EnterKeyType type)
{
    assertOnMainThread();
    if (QQuickItem* const item = _field->item()) {
        QuickComponents::shared().setEnterKeyType(*item, type);
    }
}

// Handlers

void TextField::setOnEditingChanged(std::function<void()> handler)
{
    assertOnMainThread();
    _field->onEditingChanged = std::move(handler);
}

void TextField::setOnBeginEditing(std::function<void()> handler)
{
    assertOnMainThread();
    _field->onBeginEditing = std::move(handler);
}

void TextField::setOnEndEditing(std::function<void()> handler)
{
    assertOnMainThread();
    _field->onEndEditing = std::move(handler);
}

void TextField::setOnReturn(std::function<void()> handler)
{
    assertOnMainThread();
    _field->onReturn = std::move(handler);
}

} // namespace kovalin::platform
