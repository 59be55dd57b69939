#include "platform/ui/Label.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/QuickComponents.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kovalin::platform {

namespace {

// As Qt Quick's Text numbers them.
constexpr int plainText = Qt::PlainText;
constexpr int styledText = 4;
constexpr int noWrap = 0;
constexpr int wrapAtWords = 4; // anywhere, where a word is wider than the line

int elideMode(TextElide elide)
{
    switch (elide) {
    case TextElide::None:
        return Qt::ElideNone;
    case TextElide::Left:
        return Qt::ElideLeft;
    case TextElide::Middle:
        return Qt::ElideMiddle;
    case TextElide::Right:
        return Qt::ElideRight;
    }
    return Qt::ElideNone;
}

QString markupOf(const QList<TextRun>& runs)
{
    QString markup;
    for (const TextRun& run : runs) {
        const QString escaped = run.text.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>"));
        markup += run.isBold ? QStringLiteral("<b>") + escaped + QStringLiteral("</b>") : escaped;
    }
    return markup;
}

} // namespace

struct Label::State {
    QuickItem item;
    QString text;
    QList<TextRun> runs;
    QFont font;
    QColor color = Qt::black;
    TextAlignment alignment = TextAlignment::Natural;
    int lines = 1;
};

Label::Label()
    : _label(std::make_unique<State>())
{
    auto& item = _label->item;
    item = QuickComponents::shared().create(QuickType::Text, *this);
    item.set(QuickProperty::TextFormat, plainText);
    item.set(QuickProperty::VerticalAlignment, int(Qt::AlignVCenter));
    item.set(QuickProperty::Color, _label->color);
    setElide(TextElide::Right);
    setNumberOfLines(1);
    setAccessibilityRole(QAccessible::StaticText);
}

Label::~Label() = default;

QString Label::text() const
{
    return _label->text;
}

void Label::setText(const QString& text)
{
    assertOnMainThread();
    if (text != _label->text || !_label->runs.isEmpty()) {
        _label->text = text;
        _label->runs.clear();
        applyText();
    }
}

void Label::setTextRuns(const QList<TextRun>& runs)
{
    assertOnMainThread();
    _label->runs = runs;
    _label->text.clear();
    for (const TextRun& run : runs) {
        _label->text += run.text;
    }
    applyText();
}

void Label::applyText()
{
    const bool isPlain = _label->runs.isEmpty();
    _label->item.set(QuickProperty::TextFormat, isPlain ? plainText : styledText);
    _label->item.set(QuickProperty::Text, isPlain ? _label->text : markupOf(_label->runs));
    setAccessibilityLabel(_label->text);
}

QFont Label::font() const
{
    return _label->font;
}

void Label::setFont(const QFont& font)
{
    assertOnMainThread();
    _label->font = font;
    if (font.pixelSize() <= 0) {
        _label->font.setPixelSize(std::max(qRound(font.pointSizeF()), 1));
    }
    _label->item.set(QuickProperty::Font, _label->font);
}

QColor Label::textColor() const
{
    return _label->color;
}

void Label::setTextColor(const QColor& color)
{
    assertOnMainThread();
    _label->color = color;
    _label->item.set(QuickProperty::Color, color);
}

TextAlignment Label::textAlignment() const
{
    return _label->alignment;
}

void Label::setTextAlignment(TextAlignment alignment)
{
    assertOnMainThread();
    _label->alignment = alignment;
    switch (alignment) {
    case TextAlignment::Natural:
        _label->item.reset(QuickProperty::HorizontalAlignment);
        break;
    case TextAlignment::Left:
        _label->item.set(QuickProperty::HorizontalAlignment, int(Qt::AlignLeft));
        break;
    case TextAlignment::Center:
        _label->item.set(QuickProperty::HorizontalAlignment, int(Qt::AlignHCenter));
        break;
    case TextAlignment::Right:
        _label->item.set(QuickProperty::HorizontalAlignment, int(Qt::AlignRight));
        break;
    }
}

int Label::numberOfLines() const
{
    return _label->lines;
}

void Label::setNumberOfLines(int lines)
{
    assertOnMainThread();
    _label->lines = std::max(lines, 0);
    _label->item.set(QuickProperty::WrapMode, _label->lines == 1 ? noWrap : wrapAtWords);
    _label->item.set(QuickProperty::MaximumLineCount,
                     _label->lines == 0 ? std::numeric_limits<int>::max() : _label->lines);
}

void Label::setElide(TextElide elide)
{
    assertOnMainThread();
    _label->item.set(QuickProperty::Elide, elideMode(elide));
}

QSizeF Label::sizeThatFits(const QSizeF& size) const
{
    assertOnMainThread();
    QQuickItem* const item = _label->item.item();
    if (!item || _label->text.isEmpty()) {
        return {0, 0};
    }
    // The item measures at once; it has its own size back before anything is drawn.
    const QSizeF shown = item->size();
    item->setSize({std::max(size.width(), 0.0), std::max(size.height(), 0.0)});
    const QSizeF content(_label->item.get(QuickProperty::ContentWidth).toDouble(),
                         _label->item.get(QuickProperty::ContentHeight).toDouble());
    item->setSize(shown);
    return QSizeF(std::ceil(content.width()), std::ceil(content.height())).boundedTo(size);
}

void Label::presentedSizeDidChange(const QSizeF& size)
{
    if (QQuickItem* const item = _label->item.item()) {
        item->setSize(size);
    }
}

} // namespace kovalin::platform
