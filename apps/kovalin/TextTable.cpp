#include "kovalin/TextTable.h"

#include <QtCore/QChar>
#include <QtCore/QTextBoundaryFinder>

#include <algorithm>
#include <array>

namespace kovalin::cli {

namespace {

constexpr int maxCellWidth = 60; // columns: with the others beside it a row fits most terminals

struct Range {
    char32_t first;
    char32_t last;
};

/// The blocks whose characters take two columns, roughly: East Asian letters and pictographs.
constexpr std::array<Range, 10> wideRanges{{{0x1100, 0x115F},
                                            {0x2E80, 0x303E},
                                            {0x3041, 0xA4CF},
                                            {0xAC00, 0xD7A3},
                                            {0xF900, 0xFAFF},
                                            {0xFE30, 0xFE6F},
                                            {0xFF00, 0xFF60},
                                            {0xFFE0, 0xFFE6},
                                            {0x1F300, 0x1FAFF},
                                            {0x20000, 0x3FFFD}}};
constexpr char16_t pictureSelector = 0xFE0F; // shows the character before it as a pictograph

bool takesNoColumn(char32_t character)
{
    const auto category = QChar::category(character);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing || category == QChar::Other_Format;
}

/// The columns of one character as a reader sees it, marks and joined parts included.
int widthOfCluster(QStringView cluster)
{
    const char32_t first = cluster.size() > 1 && cluster[0].isHighSurrogate()
                               ? QChar::surrogateToUcs4(cluster[0], cluster[1])
                               : cluster[0].unicode();
    if (takesNoColumn(first)) {
        return 0;
    }
    const bool isWide = std::ranges::any_of(
        wideRanges, [first](const Range& range) { return first >= range.first && first <= range.last; });
    return isWide || cluster.contains(QChar(pictureSelector)) ? 2 : 1;
}

struct Measure {
    int width = 0;        // in columns
    qsizetype length = 0; // in UTF-16 units
};

/// As much of the text's beginning as fits into so many columns.
Measure measure(const QString& text, int maxWidth)
{
    Measure fitting;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype end = finder.toNextBoundary(); end != -1; end = finder.toNextBoundary()) {
        const int width = widthOfCluster(QStringView(text).sliced(fitting.length, end - fitting.length));
        if (fitting.width + width > maxWidth) {
            break;
        }
        fitting = {fitting.width + width, end};
    }
    return fitting;
}

QString elided(const QString& text)
{
    if (measure(text, maxCellWidth).length == text.size()) {
        return text;
    }
    return text.first(measure(text, maxCellWidth - 1).length) + QStringLiteral("…");
}

} // namespace

TextTable::TextTable(const QList<Column>& columns)
{
    QStringList titles;
    for (const Column& column : columns) {
        _alignments.append(column.align);
        titles.append(column.title);
    }
    addRow(titles);
}

void TextTable::addRow(const QStringList& cells)
{
    QStringList row;
    for (const QString& cell : cells) {
        row.append(elided(printable(cell)));
    }
    _rows.append(row);
}

QString TextTable::toString() const
{
    const auto widthOf = [](const QString& cell) {
        return measure(cell, maxCellWidth).width;
    };
    QList<int> widths(_alignments.size(), 0);
    for (const QStringList& row : _rows) {
        for (qsizetype i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], widthOf(row[i]));
        }
    }
    QString text;
    for (const QStringList& row : _rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i) {
            const QString padding(widths[i] - widthOf(row[i]), u' ');
            line += QStringLiteral("  ") + (_alignments[i] == Align::Right ? padding + row[i] : row[i] + padding);
        }
        while (line.endsWith(u' ')) {
            line.chop(1);
        }
        text += line + u'\n';
    }
    return text;
}

QString TextTable::printable(const QString& text)
{
    QString printable = text;
    for (qsizetype i = 0; i < printable.size(); ++i) {
        if (printable[i].isHighSurrogate() && i + 1 < printable.size() && printable[i + 1].isLowSurrogate()) {
            ++i;
            continue;
        }
        const auto category = printable[i].category();
        if (category == QChar::Other_Control || category == QChar::Other_Surrogate ||
            category == QChar::Separator_Line || category == QChar::Separator_Paragraph) {
            printable[i] = QChar::ReplacementCharacter;
        }
    }
    return printable;
}

} // namespace kovalin::cli
