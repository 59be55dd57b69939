#include "search/SearchWords.h"

#include <QtCore/QChar>

#include <array>

namespace {

bool hasSeparatorCategory(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Punctuation_Connector:
    case QChar::Punctuation_Dash:
    case QChar::Punctuation_Open:
    case QChar::Punctuation_Close:
    case QChar::Punctuation_InitialQuote:
    case QChar::Punctuation_FinalQuote:
    case QChar::Punctuation_Other:
    case QChar::Separator_Space:
        return true;
    default:
        return character == U'\t';
    }
}

bool isSeparator(char32_t character)
{
    static const auto isAsciiSeparator = [] {
        std::array<bool, 0x80> table{};
        for (char32_t c = 0; c < table.size(); ++c) {
            table.at(c) = hasSeparatorCategory(c);
        }
        return table;
    }();
    return character < isAsciiSeparator.size() ? isAsciiSeparator[character] : hasSeparatorCategory(character);
}

// Unicode's "cased" and "case-ignorable", as far as they matter beside a sigma.
bool isCased(QChar c)
{
    return c.isLower() || c.isUpper() || c.isTitleCase();
}

bool isCaseIgnorable(QChar c)
{
    switch (c.category()) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
    case QChar::Letter_Modifier:
    case QChar::Symbol_Modifier:
        return true;
    default:
        return QStringView(u"'.:\u00B7\u2018\u2019").contains(c);
    }
}

bool endsWord(QStringView text, qsizetype sigma)
{
    qsizetype before = sigma - 1;
    while (before >= 0 && isCaseIgnorable(text[before])) {
        --before;
    }
    qsizetype after = sigma + 1;
    while (after < text.size() && isCaseIgnorable(text[after])) {
        ++after;
    }
    return before >= 0 && isCased(text[before]) && (after == text.size() || !isCased(text[after]));
}

// QString maps each character by itself, but a capital sigma has a form of its own at the end of a word.
QString lowerCased(const QString& text)
{
    constexpr QChar capitalSigma(u'\u03A3');
    constexpr QChar finalSigma(u'\u03C2');
    qsizetype sigma = text.indexOf(capitalSigma);
    if (sigma < 0) {
        return text.toLower();
    }
    QString prepared = text;
    for (; sigma >= 0; sigma = text.indexOf(capitalSigma, sigma + 1)) {
        if (endsWord(text, sigma)) {
            prepared[sigma] = finalSigma;
        }
    }
    return prepared.toLower();
}

} // namespace

SearchWords::SearchWords(const QString& text)
    : _text(lowerCased(text))
{
    _text.remove(u'\'');

    const QStringView view(_text);
    qsizetype start = 0;
    qsizetype position = 0;
    const auto endWord = [&](qsizetype separatorLength) {
        if (position > start) {
            _words.append(view.sliced(start, position - start));
        }
        position += separatorLength;
        start = position;
    };
    while (position < view.size()) {
        const QChar unit = view[position];
        if (unit.isHighSurrogate() && position + 1 < view.size() && view[position + 1].isLowSurrogate()) {
            if (isSeparator(QChar::surrogateToUcs4(unit, view[position + 1]))) {
                endWord(2);
            } else {
                position += 2;
            }
        } else if (isSeparator(unit.unicode())) {
            endWord(1);
        } else {
            ++position;
        }
    }
    endWord(0);
}

QStringList SearchWords::toStringList() const
{
    QStringList list;
    list.reserve(_words.size());
    for (const QStringView word : _words) {
        list.append(word.toString());
    }
    return list;
}
