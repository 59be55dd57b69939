#pragma once

#include "platform/ui/View.h"

#include <QtCore/QMarginsF>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QFont>

#include <functional>

namespace kovalin::platform {

/// One line of text that the user edits, by keys, by an input method, with selection and clipboard. Thread and lifetime
/// as of `View`. Where Qt Quick's modules are missing it keeps its text and shows nothing.
///
/// It is first responder while keys go to it, and stays so while its window, or an application's popup, only has
/// another one in front of it. It resigns when the focus moves, on escape, and when it is hidden or leaves its window.
/// While an input method composes, return, escape and the arrows are the input method's.
///
/// Of a text that is too long the place of the caret shows, and while it isn't first responder the beginning. The caret
/// begins where a tap puts it, else at the end.
///
/// Handlers are called on the main thread when the change is made, and may do anything, such as letting go of the
/// field.
class TextField : public View {
    Q_OBJECT

public:
    /// What is longer is cut off, in UTF-16 units: no one types so much, and a paste of megabytes takes no time.
    static constexpr int maxLength = 1000;

    TextField();
    ~TextField() override;

    /// What the user sees: what an input method composes is in it, line breaks and control characters are spaces. Empty
    /// without text, whatever the placeholder is.
    [[nodiscard]] QString text() const;
    /// Ends a composition without taking it over.
    void setText(const QString& text);

    /// Stands where there is no text, and is what assistive tools call the field.
    [[nodiscard]] QString placeholder() const;
    void setPlaceholder(const QString& placeholder);
    void setPlaceholderColor(const QColor& color);
    /// Of text and placeholder, as of a label's.
    void setFont(const QFont& font);
    void setTextColor(const QColor& color);
    /// Of the caret, and behind what is selected. Black at first.
    void setTintColor(const QColor& color);

    /// Stands always before the text, where a line begins, in its own size and in the middle of the height. It only
    /// adorns: a tap on it is one on the field. Null for none.
    void setLeftView(const std::shared_ptr<View>& view);
    /// Between the field's edges, or the left view, and the text; 0 at first.
    void setTextInsets(const QMarginsF& insets);

    // What input methods are asked for.

    /// Whether words may be completed and corrected; true at first.
    void setAutocorrects(bool autocorrects);
    /// Whether sentences begin in upper case; true at first.
    void setAutocapitalizes(bool autocapitalizes);
    /// What the return key of a virtual keyboard says; default at first.
    void setReturnKeyType(Qt::EnterKeyType type);

    // Focus

    [[nodiscard]] bool isFirstResponder() const;
    /// False where it can't be: hidden, disabled or in no window. In a window that isn't active it becomes it with the
    /// window.
    bool becomeFirstResponder();
    void resignFirstResponder();
    /// For a key that was pressed elsewhere and that nobody wants: where it writes a character, the field becomes first
    /// responder and takes it at the end of its text, as the user's edit. A space writes nothing here, since it presses
    /// what has the focus. False, and nothing done, if the key isn't for it.
    bool acceptKeyPress(const QKeyEvent& event);

    // Handlers

    /// The user made `text()` another one: by typing, deleting, pasting, composing. `setText` is no such edit.
    void setOnEditingChanged(std::function<void()> handler);
    void setOnBeginEditing(std::function<void()> handler);
    /// Nothing composes any more, and `isFirstResponder()` is false.
    void setOnEndEditing(std::function<void()> handler);
    /// The return key.
    void setOnReturn(std::function<void()> handler);

    void layoutSubviews() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void didMoveToWindow() override;
    void visibilityDidChange() override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    struct State;

    void shownTextDidChange();
    void activeFocusDidChange();
    void focusDidGoElsewhere();
    void beginEditing();
    void endEditing();
    void endComposition(const QString& commit);

    [[nodiscard]] bool isComposing() const;
    bool handleKeyPress(const QKeyEvent& event);
    void deliver(QEvent* event);
    void showText();
    void showBeginning();
    void moveCaretToEnd();
    void tellEdit();
    void applyHints();

    const std::unique_ptr<State> _field;
};

} // namespace kovalin::platform
