#pragma once

#include "platform/ui/Label.h"
#include "platform/ui/QuickComponents.h"
#include "platform/ui/TextField.h"

#include <algorithm>

namespace kovalin::platform {

/// What the text is cut off at.
class TextArea final : public View {
public:
    TextArea()
    {
        setClipsToBounds(true);
        addSubview(placeholder);
        input = QuickComponents::shared().create(QuickType::TextInput, *this); // above, for the caret
    }

    void layoutSubviews() override { placeholder->setFrame({QPointF(caretWidth / 2, 0), textSize(bounds().size())}); }

    QuickItem input;
    const std::shared_ptr<Label> placeholder = makeView<Label>();

protected:
    void presentedSizeDidChange(const QSizeF& size) override
    {
        if (QQuickItem* const item = input.item()) {
            item->setPosition({caretWidth / 2, 0});
            item->setSize(textSize(size));
        }
    }

private:
    /// The caret stands half before and half behind its place, also at both ends of a text that fills the line.
    static constexpr double caretWidth = 2;

    static QSizeF textSize(const QSizeF& size) { return {std::max(size.width() - caretWidth, 0.0), size.height()}; }
};

/// What a text field knows.
struct TextField::State {
    std::shared_ptr<TextArea> area = makeView<TextArea>();
    std::shared_ptr<View> leftView;
    QMarginsF insets;
    bool autocorrects = true;
    bool autocapitalizes = true;

    /// Without an item the text itself.
    QString shownText;
    bool isSettingText = false;
    bool isInEvent = false;

    bool isEditing = false;
    bool isFocusPassing = false;
    bool isFocusFromMouse = false;
    QMetaObject::Connection windowFocus;

    std::function<void()> onEditingChanged;
    std::function<void()> onBeginEditing;
    std::function<void()> onEndEditing;
    std::function<void()> onReturn;

    [[nodiscard]] QuickItem& input() const { return area->input; }
    [[nodiscard]] QQuickItem* item() const { return area->input.item(); }
};

} // namespace kovalin::platform
