#pragma once

#include <QtCore/Qt>

namespace kovalin::platform {

[[nodiscard]] inline bool isReturnKey(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

/// What presses the control that has the focus.
[[nodiscard]] inline bool isPressKey(int key)
{
    return key == Qt::Key_Space || isReturnKey(key);
}

[[nodiscard]] inline bool isArrowKey(int key)
{
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

/// Whether the focus came by the keyboard, so that a control shows that it has it.
[[nodiscard]] inline bool isKeyboardReason(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
}

} // namespace kovalin::platform
