// What comes from the user: focus, keys, input methods.

#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/Keys.h"
#include "platform/ui/TextFieldState.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QScopedValueRollback>
#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethod>
#include <QtQuick/QQuickWindow>

#include <utility>

namespace kovalin::platform {

namespace {

/// The window is only not in front any more; the focus comes back with it.
bool isPassing(Qt::FocusReason reason)
{
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
}

/// Whether the key writes something visible. Some characters come with Alt, or with Ctrl and Alt; Ctrl or Meta alone
/// commands.
bool writesCharacter(const QKeyEvent& event)
{
    const bool isCommand = event.modifiers().testFlag(Qt::MetaModifier) ||
                           (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == Qt::ControlModifier;
    const QString text = event.text();
    return !isCommand && !text.isEmpty() && !text.at(0).isSpace() && (text.at(0).isPrint() || text.at(0).isSurrogate());
}

} // namespace

// Focus

bool TextField::isFirstResponder() const
{
    return _field->isEditing;
}

bool TextField::becomeFirstResponder()
{
    assertOnMainThread();
    QQuickItem* const item = _field->item();
    if (!item || !window() || !isVisible() || !isEnabled()) {
        return false;
    }
    const auto self = weak_from_this().lock();
    item->forceActiveFocus(Qt::OtherFocusReason);
    return item->hasFocus();
}

void TextField::resignFirstResponder()
{
    assertOnMainThread();
    const auto self = weak_from_this().lock();
    if (QQuickItem* const item = _field->item()) {
        item->setFocus(false, Qt::OtherFocusReason);
    }
}

void TextField::activeFocusDidChange()
{
    if (_field->item()->hasActiveFocus()) {
        _field->isFocusPassing = false;
        beginEditing();
    } else if (!_field->isFocusPassing) {
        endEditing();
    }
}

void TextField::focusDidGoElsewhere()
{
    // While the window isn't active nobody has the active focus, but the focus in it may still move.
    const QQuickItem* const item = _field->item();
    const QQuickItem* const active = window() ? window()->activeFocusItem() : nullptr;
    if (!item->hasActiveFocus() && (!item->hasFocus() || active)) {
        endEditing();
    }
}

void TextField::beginEditing()
{
    const auto self = weak_from_this().lock();
    if (!self || std::exchange(_field->isEditing, true)) {
        return;
    }
    if (!_field->isFocusFromMouse) {
        moveCaretToEnd();
    }
    if (const auto handler = _field->onBeginEditing) {
        handler();
    }
}

void TextField::endEditing()
{
    const auto self = weak_from_this().lock();
    if (!self || !std::exchange(_field->isEditing, false)) {
        return;
    }
    _field->isFocusPassing = false;
    // What the user sees stays. An input method of the platform has done this itself by now.
    endComposition(_field->input().get(QuickProperty::PreeditText).toString());
    showBeginning();
    if (const auto handler = _field->onEndEditing) {
        handler();
    }
}

void TextField::moveCaretToEnd()
{
    _field->input().set(QuickProperty::CursorPosition, _field->input().get(QuickProperty::Text).toString().size());
}

void TextField::didMoveToWindow()
{
    disconnect(_field->windowFocus);
    if (window()) {
        _field->windowFocus =
            connect(window(), &QQuickWindow::activeFocusItemChanged, this, &TextField::focusDidGoElsewhere);
    } else {
        resignFirstResponder();
    }
}

void TextField::visibilityDidChange()
{
    if (!isVisible()) {
        resignFirstResponder();
    }
}

void TextField::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    if (QQuickItem* const item = _field->item()) {
        item->forceActiveFocus(Qt::OtherFocusReason); // the tap isn't in the text
    }
}

// Keys

bool TextField::acceptKeyPress(const QKeyEvent& event)
{
    assertOnMainThread();
    const auto self = weak_from_this().lock();
    if (event.type() != QEvent::KeyPress || !writesCharacter(event) || !becomeFirstResponder() ||
        !_field->item()->hasActiveFocus()) {
        return false;
    }
    moveCaretToEnd();
    QKeyEvent forItem(event.type(), event.key(), event.modifiers(), event.text(), event.isAutoRepeat(),
                      quint16(event.count()));
    QCoreApplication::sendEvent(_field->item(), &forItem);
    return true;
}

bool TextField::handleKeyPress(const QKeyEvent& event)
{
    if (isComposing() && (isReturnKey(event.key()) || isArrowKey(event.key()) || event.key() == Qt::Key_Escape)) {
        return true; // an input method that left it to us doesn't use it
    }
    if (event.key() == Qt::Key_Escape) {
        resignFirstResponder();
        return true;
    }
    if (!isReturnKey(event.key())) {
        return false;
    }
    if (const auto handler = _field->onReturn; handler && !event.isAutoRepeat()) {
        handler();
    }
    return true;
}

bool TextField::eventFilter(QObject* watched, QEvent* event)
{
    const auto self = weak_from_this().lock();
    if (!self || watched != _field->item()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::FocusIn:
        _field->isFocusFromMouse = static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason;
        return false;
    case QEvent::FocusOut:
        _field->isFocusPassing = isPassing(static_cast<QFocusEvent*>(event)->reason());
        return false;
    case QEvent::ShortcutOverride:
        // Before a shortcut of the host's that closes the window.
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            event->accept();
            return true;
        }
        return false;
    case QEvent::KeyPress:
        if (handleKeyPress(*static_cast<QKeyEvent*>(event))) {
            event->accept();
            return true;
        }
        [[fallthrough]];
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        deliver(event);
        return true;
    default:
        return false;
    }
}

// Edits

void TextField::deliver(QEvent* event)
{
    const bool isOutermost = !std::exchange(_field->isInEvent, true);
    // Held, since what the event leads to may let go of the field.
    const auto self = weak_from_this().lock();
    QObject* const item = _field->item();
    item->event(event);
    if (isOutermost) {
        _field->isInEvent = false;
        if (!_field->isSettingText) {
            tellEdit();
        }
    }
}

bool TextField::isComposing() const
{
    return !_field->input().get(QuickProperty::PreeditText).toString().isEmpty();
}

void TextField::endComposition(const QString& commit)
{
    if (!isComposing()) {
        return;
    }
    QQuickItem* const item = _field->item();
    if (commit.isEmpty() && item->hasActiveFocus()) {
        QGuiApplication::inputMethod()->reset();
    }
    QInputMethodEvent end;
    end.setCommitString(commit);
    QCoreApplication::sendEvent(item, &end);
}

void TextField::shownTextDidChange()
{
    // In the midst of an event the item isn't done yet.
    if (!_field->isInEvent && !_field->isSettingText) {
        tellEdit();
    }
}

void TextField::tellEdit()
{
    const auto self = weak_from_this().lock();
    const QString before = _field->shownText;
    showText();
    if (!self || _field->shownText == before) {
        return;
    }
    if (const auto handler = _field->onEditingChanged) {
        handler();
    }
}

} // namespace kovalin::platform
