#pragma once

#include "platform/ui/View.h"

#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QFont>

namespace kovalin::platform {

enum class TextAlignment {
    Natural, ///< By the direction of the text.
    Left,
    Center,
    Right,
};

enum class TextElide {
    None, ///< Cut off by nothing; what is too long stands over.
    Left,
    Middle,
    Right,
};

/// A piece of a text in a weight of its own.
struct TextRun {
    QString text;
    bool isBold = false;
};

/// Text, centred vertically. It is plain: nothing in it is taken for markup. Thread and lifetime as of `View`. Where Qt Quick's
/// modules are missing a label is an empty view.
class Label : public View {
    Q_OBJECT

public:
    Label();
    ~Label() override;

    [[nodiscard]] QString text() const;
    void setText(const QString& text);
    /// One text out of pieces; `text()` is all of them. In place of `setText`.
    void setTextRuns(const QList<TextRun>& runs);

    [[nodiscard]] QFont font() const;
    /// A font without a size in pixels takes its size in points for one: points are device-independent pixels here.
    void setFont(const QFont& font);
    [[nodiscard]] QColor textColor() const;
    void setTextColor(const QColor& color);
    [[nodiscard]] TextAlignment textAlignment() const;
    void setTextAlignment(TextAlignment alignment);
    /// 1 at first; 0 is as many as there are.
    [[nodiscard]] int numberOfLines() const;
    void setNumberOfLines(int lines);
    /// Right at first.
    void setElide(TextElide elide);

    /// What the text takes, its lines no wider than `size`, rounded up to whole points; at most `size`. Empty for no text.
    [[nodiscard]] QSizeF sizeThatFits(const QSizeF& size) const override;

protected:
    void presentedSizeDidChange(const QSizeF& size) override;

private:
    struct State;

    void applyText();

    const std::unique_ptr<State> _label;
};

} // namespace kovalin::platform
